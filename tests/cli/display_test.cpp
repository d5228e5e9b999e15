#include "cli/display.h"

#include <gtest/gtest.h>

namespace orv::cli {
namespace {

TEST(DisplayTest, WritesControlCharactersOut) {
  EXPECT_EQ(Visible(L"a\tb\r\nc"), L"a\\tb\\r\\nc");
  EXPECT_EQ(Visible(std::wstring_view(L"\0\x1B\x7F\x98", 4)), L"\\x00\\x1B\\x7F\\x98");
  EXPECT_EQ(Visible(L"\u2028"), L"\\u2028");
  EXPECT_EQ(Visible(L"\u0416 z\u00A0"), L"\u0416 z\u00A0");
}

TEST(DisplayTest, ShortensToTheColumnsGiven) {
  EXPECT_EQ(Shortened(L"abcdef", 6), L"abcdef");
  EXPECT_EQ(Shortened(L"abcdef", 5), L"abcd\u2026");
  EXPECT_EQ(Shortened(L"abcdef", 1), L"\u2026");
  EXPECT_EQ(Shortened(L"abcdef", 0), L"abcdef");
}

TEST(DisplayTest, SetsThousandsApart) {
  EXPECT_EQ(GroupedNumber(0), "0");
  EXPECT_EQ(GroupedNumber(999), "999");
  EXPECT_EQ(GroupedNumber(1000), "1,000");
  EXPECT_EQ(GroupedNumber(-1234567), "-1,234,567");
  EXPECT_EQ(GroupedNumber(-123), "-123");
}

TEST(DisplayTest, PadsInFront) {
  EXPECT_EQ(PadLeft("7", 3), "  7");
  EXPECT_EQ(PadLeft("1234", 3), "1234");
}

}  // namespace
}  // namespace orv::cli
