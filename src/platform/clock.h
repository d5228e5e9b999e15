// The time of day and the date, local, as texts and as seconds since midnight.
#pragma once

#include <cstdint>
#include <string>

namespace orv::platform {

/// A local point in time. Seconds run from 0 to below 86400, with their fraction.
struct LocalTime {
  std::int32_t year = 1970;
  std::int32_t month = 1;  // 1 to 12
  std::int32_t day = 1;    // 1 to 31
  double seconds = 0;      // since midnight
};

/// What the clock asks; must not throw.
using ClockFunction = LocalTime (*)();

/// Puts another clock in the place of the system's; nullptr brings the system's back. For tests.
void SetClock(ClockFunction clock) noexcept;

/// Seconds since midnight, single precision: that is about 1/128 of a second late in the day.
float SecondsSinceMidnight() noexcept;
/// The current date, dd.mm.yyyy.
std::string DateText();
/// The current time of day, hh:mm:ss.
std::string TimeText();

}  // namespace orv::platform
