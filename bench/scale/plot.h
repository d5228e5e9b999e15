// What is measured: plots of several curves over one quantity.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "support/timing.h"
#include "support/workload.h"

namespace orv::bench {

/// One point of a curve.
struct Point {
  std::string curve;
  double x;
  std::function<Pass()> run;
  /// The check that a pass must come to, made from the rule that made the table.
  std::uint64_t expected;
  std::function<void()> prepare = {};  ///< before each pass, not timed
};

struct Axis {
  std::string title;
  bool logarithmic = false;
};

struct Plot {
  std::string name;  ///< a file name without its ending
  std::string title;
  Axis x;
  Axis y;
  double nanosecondsOfUnit = 1;  ///< of the unit that the y axis names
  std::vector<Point> points;     ///< curve by curve
};

/// Times in the unit of the y axis, an operation.
struct Figure {
  std::string curve;
  double x = 0;
  double median = 0;
  double least = 0;
  double greatest = 0;
};

/// Runs all points in turn, once untimed and then `repetitions` times, so that whatever else the
/// machine does hits all alike. Raises NotMeasured when a pass does not meet the texts expected.
std::vector<Figure> Measure(const Plot& plot, int repetitions, TimeKind time);

}  // namespace orv::bench
