#include "convert/storage_analysis.h"

#include <gtest/gtest.h>

namespace orv::convert {
namespace {

TEST(Efficiency, RoundsRecordsPerValueBeforeItDivides) {
  EXPECT_EQ(Efficiency(1000, 10), 99);
  EXPECT_EQ(Efficiency(1000, 1000), 0);
  EXPECT_EQ(Efficiency(1000, 600), 50);
  EXPECT_EQ(Efficiency(1000, 400), 50);  // 2.5 becomes 2
  EXPECT_EQ(Efficiency(1000, 300), 67);
  EXPECT_EQ(Efficiency(7, 2), 75);  // 3.5 becomes 4
}

TEST(Efficiency, OfEqualValuesGrowsWithTheRecords) {
  EXPECT_EQ(Efficiency(1, 1), 0);
  EXPECT_EQ(Efficiency(100, 1), 99);
  EXPECT_EQ(Efficiency(101, 1), 100);
  EXPECT_EQ(Efficiency(2'000'000'000, 1), 100);
}

TEST(Efficiency, OfNoRecordsIsZero) { EXPECT_EQ(Efficiency(0, 0), 0); }

}  // namespace
}  // namespace orv::convert
