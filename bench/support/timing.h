// Clocks and medians.
#pragma once

#include <vector>

namespace orv::bench {

/// What a pass's time is: the wall's, or on a busy machine the processor time of this process.
enum class TimeKind { kWall, kProcessor };

/// The present moment of that kind of time, in nanoseconds.
double Now(TimeKind kind);

/// Of at least one value.
double Median(std::vector<double> values);

}  // namespace orv::bench
