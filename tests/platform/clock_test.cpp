#include "platform/clock.h"

#include <ctime>

#include <gtest/gtest.h>

namespace orv::platform {
namespace {

LocalTime Evening() { return {2024, 2, 9, 23 * 3600 + 5 * 60 + 7.75}; }
LocalTime LastMoment() { return {1999, 12, 31, 86399.9999}; }

class ClockTest : public testing::Test {
 protected:
  void TearDown() override { SetClock(nullptr); }
};

TEST_F(ClockTest, TextsOfAReplacedClock) {
  SetClock(Evening);
  EXPECT_EQ(DateText(), "09.02.2024");
  EXPECT_EQ(TimeText(), "23:05:07");
  EXPECT_EQ(SecondsSinceMidnight(), 83107.75F);
}

TEST_F(ClockTest, TheLastMomentStaysWithinItsDay) {
  SetClock(LastMoment);
  EXPECT_LT(SecondsSinceMidnight(), 86400.0F);
  EXPECT_EQ(TimeText(), "23:59:59");
}

TEST_F(ClockTest, TheSystemClockIsTheLocalTime) {
  const auto seconds = [] {
    const std::time_t now = std::time(nullptr);
    const std::tm parts = *std::localtime(&now);
    return parts.tm_hour * 3600 + parts.tm_min * 60 + parts.tm_sec;
  };
  const int before = seconds();
  const float stamp = SecondsSinceMidnight();
  const int after = seconds();
  if (after < before) GTEST_SKIP() << "midnight has just passed";
  EXPECT_GE(stamp, static_cast<float>(before) - 1);
  EXPECT_LE(stamp, static_cast<float>(after) + 1);
}

}  // namespace
}  // namespace orv::platform
