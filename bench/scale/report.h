// The figures as tables and as JSON.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "scale/plot.h"

namespace orv::bench {

struct MeasuredPlot {
  Plot plot;
  std::vector<Figure> figures;
};

/// A Markdown table: a line for each x, a column for each curve.
void PrintTable(std::FILE* out, const MeasuredPlot& measured);

/// An object `plots`: for each its name, title, axes (title, logarithmic) and curves; for each of
/// these its name and points (x, median, least, greatest).
void WriteJson(const std::string& file, const std::vector<MeasuredPlot>& plots);

}  // namespace orv::bench
