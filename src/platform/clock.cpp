#include "platform/clock.h"

#include <array>
#include <chrono>
#include <cstdio>

#include <time.h>

namespace orv::platform {
namespace {

constexpr std::int32_t kFirstTmYear = 1900;
constexpr int kSecondsPerHour = 3600;
constexpr int kSecondsPerMinute = 60;
constexpr float kLastStampOfDay = 86399.992F;

struct Instant {
  time_t seconds = 0;
  double fraction = 0;
};

// A stamp resolves 1/128 of a second, so the cheap clock that ticks a few milliseconds apart is
// enough; every member call takes a stamp.
Instant Now() noexcept {
#ifdef CLOCK_REALTIME_COARSE
  timespec now{};
  clock_gettime(CLOCK_REALTIME_COARSE, &now);
  return {now.tv_sec, static_cast<double>(now.tv_nsec) * 1e-9};
#else
  using namespace std::chrono;
  const auto ticks = duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
  constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
  return {static_cast<time_t>(ticks / kNanosecondsPerSecond),
          static_cast<double>(ticks % kNanosecondsPerSecond) * 1e-9};
#endif
}

tm BrokenDown(time_t seconds) noexcept {
  tm parts{};
#ifdef _WIN32
  localtime_s(&parts, &seconds);
#else
  localtime_r(&seconds, &parts);
#endif
  return parts;
}

// Time zones change their offset at whole quarters of an hour, so within one quarter the local time
// follows from its start by addition; breaking the time down costs several times a cell read.
struct Quarter {
  static constexpr time_t kLength = 900;
  time_t index = -1;
  time_t start = 0;
  LocalTime local;
};

LocalTime SystemClock() noexcept {
  thread_local Quarter quarter;
  const Instant now = Now();
  if (quarter.index != now.seconds / Quarter::kLength) {
    quarter.index = now.seconds / Quarter::kLength;
    quarter.start = quarter.index * Quarter::kLength;
    const tm parts = BrokenDown(quarter.start);
    quarter.local = {parts.tm_year + kFirstTmYear, parts.tm_mon + 1, parts.tm_mday,
                     static_cast<double>(parts.tm_hour * kSecondsPerHour +
                                         parts.tm_min * kSecondsPerMinute + parts.tm_sec)};
  }
  LocalTime local = quarter.local;
  local.seconds += static_cast<double>(now.seconds - quarter.start) + now.fraction;
  return local;
}

ClockFunction currentClock = nullptr;

LocalTime Local() noexcept { return currentClock != nullptr ? currentClock() : SystemClock(); }

}  // namespace

void SetClock(ClockFunction clock) noexcept { currentClock = clock; }

float SecondsSinceMidnight() noexcept {
  // Rounding to single precision must not carry the last moments of a day over to 86400.
  const auto stamp = static_cast<float>(Local().seconds);
  return stamp > kLastStampOfDay ? kLastStampOfDay : stamp;
}

std::string DateText() {
  const LocalTime now = Local();
  std::array<char, 40> text{};
  const int length =
      std::snprintf(text.data(), text.size(), "%02d.%02d.%04d", static_cast<int>(now.day),
                    static_cast<int>(now.month), static_cast<int>(now.year));
  return {text.data(), static_cast<std::size_t>(length)};
}

std::string TimeText() {
  const auto seconds = static_cast<int>(Local().seconds);
  std::array<char, 40> text{};
  const int length =
      std::snprintf(text.data(), text.size(), "%02d:%02d:%02d", seconds / kSecondsPerHour,
                    seconds % kSecondsPerHour / kSecondsPerMinute, seconds % kSecondsPerMinute);
  return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace orv::platform
