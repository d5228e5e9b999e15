#include "cli/progress_line.h"

#include <gtest/gtest.h>

namespace orv::cli {
namespace {

using std::chrono::duration;

constexpr ProgressState kHalf{L"Загрузка...", 500, 1000, duration<double>(2)};

TEST(ProgressLine, ShowsLabelBarShareCountsRateAndRemainingTime) {
  EXPECT_EQ(ProgressLine(kHalf, 80),
            "Загрузка... [############------------]  50 %  500/1000  250/s  2 s left");
}

// Columns, not bytes: every character of these texts takes one.
std::size_t Columns(const std::string& line) {
  std::size_t columns = 0;
  for (const char byte : line) columns += (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
  return columns;
}

TEST(ProgressLine, FitsEveryWidth) {
  for (std::size_t columns = 0; columns <= 100; columns++) {
    EXPECT_LE(Columns(ProgressLine(kHalf, columns)), columns);
  }
}

TEST(ProgressLine, SaysNothingOfARateThatCannotBeMeasuredYet) {
  EXPECT_EQ(ProgressFigures({L"", 0, 1000, duration<double>(5)}), "  0 %  0/1000");
  EXPECT_EQ(ProgressFigures({L"", 10, 1000, duration<double>(0.1)}), "  1 %  10/1000");
}

TEST(ProgressLine, EndsWithTheRateAndIsDoneWhenThereIsNothingToDo) {
  EXPECT_EQ(ProgressFigures({L"", 10, 10, duration<double>(1)}), "100 %  10/10  10/s");
  EXPECT_EQ(ProgressFigures({L"", 0, 0, duration<double>(1)}), "100 %  0/0");
}

TEST(DurationText, NamesTheTwoGreatestUnits) {
  EXPECT_EQ(DurationText(duration<double>(0.2)), "1 s");
  EXPECT_EQ(DurationText(duration<double>(59)), "59 s");
  EXPECT_EQ(DurationText(duration<double>(125)), "2 min 5 s");
  EXPECT_EQ(DurationText(duration<double>(12000)), "3 h 20 min");
}

}  // namespace
}  // namespace orv::cli
