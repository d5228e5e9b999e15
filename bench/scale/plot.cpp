#include "scale/plot.h"

#include <algorithm>
#include <cstddef>

namespace orv::bench {
namespace {

double TimeOf(const Point& point, TimeKind kind) {
  if (point.prepare) point.prepare();
  const double start = Now(kind);
  const Pass pass = point.run();
  const double took = Now(kind) - start;
  if (pass.check != point.expected) throw NotMeasured(point.curve + ": other texts than expected");
  return took / static_cast<double>(pass.operations);
}

}  // namespace

std::vector<Figure> Measure(const Plot& plot, int repetitions, TimeKind time) {
  for (const Point& point : plot.points) TimeOf(point, time);
  std::vector<std::vector<double>> times(plot.points.size());
  for (int repetition = 0; repetition < repetitions; ++repetition) {
    for (std::size_t i = 0; i < plot.points.size(); ++i) {
      times[i].push_back(TimeOf(plot.points[i], time) / plot.nanosecondsOfUnit);
    }
  }
  std::vector<Figure> figures;
  for (std::size_t i = 0; i < plot.points.size(); ++i) {
    const auto [least, greatest] = std::minmax_element(times[i].begin(), times[i].end());
    const Point& point = plot.points[i];
    figures.push_back({point.curve, point.x, Median(times[i]), *least, *greatest});
  }
  return figures;
}

}  // namespace orv::bench
