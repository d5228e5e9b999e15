#include "support/timing.h"

#include <algorithm>
#include <cstddef>
#include <ctime>

namespace orv::bench {

double Now(TimeKind kind) {
  constexpr double kNanoseconds = 1e9;
  std::timespec now{};
  clock_gettime(kind == TimeKind::kWall ? CLOCK_MONOTONIC : CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * kNanoseconds + static_cast<double>(now.tv_nsec);
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  if (values.size() % 2 == 1) return values[middle];
  return (values[middle - 1] + values[middle]) / 2;
}

}  // namespace orv::bench
