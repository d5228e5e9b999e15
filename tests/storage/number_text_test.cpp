#include "storage/number_text.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace orv::storage {
namespace {

TEST(NumberTextTest, ADoubleHasFifteenDigits) {
  EXPECT_EQ(NumberText(3.5), "3.5");
  EXPECT_EQ(NumberText(10.0 / 3), "3.33333333333333");
  EXPECT_EQ(NumberText(2.0 / 3), "0.666666666666667");
  EXPECT_EQ(NumberText(0.1 + 0.2), "0.3");
  EXPECT_EQ(NumberText(-1.25), "-1.25");
}

TEST(NumberTextTest, ASingleHasSevenDigits) {
  EXPECT_EQ(NumberText(7.0F / 2), "3.5");
  EXPECT_EQ(NumberText(10.0F / 3), "3.333333");
  EXPECT_EQ(NumberText(0.1F), "0.1");
  EXPECT_EQ(NumberText(1234567.0F), "1234567");
  EXPECT_EQ(NumberText(16777216.0F), "1.677722E+07");
}

TEST(NumberTextTest, GreatAndSmallNumbersHaveAnExponent) {
  EXPECT_EQ(NumberText(1e14), "100000000000000");
  EXPECT_EQ(NumberText(999999999999999.0), "999999999999999");
  EXPECT_EQ(NumberText(1e15), "1E+15");
  EXPECT_EQ(NumberText(-1.5e300), "-1.5E+300");
  EXPECT_EQ(NumberText(0.0001), "0.0001");
  EXPECT_EQ(NumberText(0.00001), "1E-05");
  EXPECT_EQ(NumberText(1e7F), "1E+07");
}

TEST(NumberTextTest, MinusZeroIsZero) {
  EXPECT_EQ(NumberText(-0.0), "0");
  EXPECT_EQ(NumberText(-0.0F), "0");
}

TEST(NumberTextTest, WholeNumbers) {
  EXPECT_EQ(NumberText(std::int32_t{0}), "0");
  EXPECT_EQ(NumberText(std::numeric_limits<std::int32_t>::min()), "-2147483648");
  EXPECT_EQ(NumberText(std::numeric_limits<std::int32_t>::max()), "2147483647");
}

TEST(NumberTextTest, AgreesWithTheLibraryFormattingOnRandomNumbers) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> mantissa(-10, 10);
  std::uniform_int_distribution<int> exponent(-30, 30);
  for (int i = 0; i < 100000; ++i) {
    const double value = mantissa(random) * std::pow(10.0, exponent(random));
    char expected[64];
    std::snprintf(expected, sizeof expected, "%.15G", value);
    ASSERT_EQ(NumberText(value), expected);
    std::snprintf(expected, sizeof expected, "%.7G",
                  static_cast<double>(static_cast<float>(value)));
    ASSERT_EQ(NumberText(static_cast<float>(value)), expected);
  }
}

TEST(LeadingNumberTest, ReadsTheNumberATextBeginsWith) {
  EXPECT_EQ(LeadingNumber("12"), 12);
  EXPECT_EQ(LeadingNumber("  -3.25abc"), -3.25);
  EXPECT_EQ(LeadingNumber("+7,5"), 7);
  EXPECT_EQ(LeadingNumber(".5"), 0.5);
  EXPECT_EQ(LeadingNumber("5."), 5);
  EXPECT_EQ(LeadingNumber("1e3"), 1000);
  EXPECT_EQ(LeadingNumber("1E-2x"), 0.01);
  EXPECT_EQ(LeadingNumber("12 34"), 12);
}

TEST(LeadingNumberTest, AnUnfinishedExponentIsNotPartOfTheNumber) {
  EXPECT_EQ(LeadingNumber("2e"), 2);
  EXPECT_EQ(LeadingNumber("2E+"), 2);
  EXPECT_EQ(LeadingNumber("2Ex"), 2);
}

TEST(LeadingNumberTest, ATextThatBeginsWithNoNumberIsZero) {
  for (const char* text :
       {"", " ", "abc", "-", "+.", ".", "--1", "\t1", "inf", "nan", "e5", "\"5\""}) {
    EXPECT_EQ(LeadingNumber(text), 0) << text;
    EXPECT_EQ(LeadingSingle(text), 0) << text;
  }
}

TEST(LeadingNumberTest, BeyondTheRangeIsAnInfinityAndBelowItZero) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(LeadingNumber("1e400"), infinity);
  EXPECT_EQ(LeadingNumber("-1e400"), -infinity);
  EXPECT_EQ(LeadingNumber("1e-400"), 0);
  EXPECT_EQ(LeadingNumber("0." + std::string(400, '0') + "1"), 0);
  EXPECT_EQ(LeadingNumber(std::string(400, '9')), infinity);
  EXPECT_EQ(LeadingNumber("0." + std::string(400, '0') + "1e800"), infinity);
  EXPECT_EQ(LeadingNumber("1e99999999999999999999999"), infinity);
  EXPECT_EQ(LeadingNumber("1e-99999999999999999999999"), 0);
  EXPECT_EQ(LeadingSingle("1e39"), std::numeric_limits<float>::infinity());
  EXPECT_EQ(LeadingSingle("1e-60"), 0);
}

TEST(LeadingNumberTest, ASingleIsReadStraightIntoItsPrecision) {
  EXPECT_EQ(LeadingSingle("16777217"), 16777216.0F);
  EXPECT_EQ(LeadingSingle("0.1"), 0.1F);
}

TEST(LeadingNumberTest, AgreesWithTheLibraryOnRandomTexts) {
  std::mt19937_64 random(11);
  const std::string characters = "0123456789012345678901234567890123456789.-eE+ ";
  for (int i = 0; i < 200000; ++i) {
    std::string text;
    const auto length = random() % 24;
    for (std::size_t c = 0; c < length; ++c)
      text += characters[static_cast<std::size_t>(random() % characters.size())];
    const double expected = std::strtod(text.c_str(), nullptr);
    if (std::isinf(expected)) continue;
    ASSERT_EQ(LeadingNumber(text), expected) << text;
    const float single = std::strtof(text.c_str(), nullptr);
    if (std::isinf(single)) continue;
    ASSERT_EQ(LeadingSingle(text), single) << text;
  }
}

TEST(TextToNumberTest, ThePointOrTheCommaIsTheDecimalSign) {
  EXPECT_EQ(TextToNumber("3,5"), 3.5F);
  EXPECT_EQ(TextToNumber("3.5"), 3.5F);
  EXPECT_EQ(TextToNumber("-12,345 r"), -12.345F);
  EXPECT_EQ(TextToNumber(""), 0);
  EXPECT_EQ(TextToNumber("abc"), 0);
  EXPECT_EQ(TextToNumber("a,5"), 0);
}

TEST(TextToNumberTest, IsSinglePrecision) {
  EXPECT_EQ(TextToNumber("16777217"), 16777216.0F);
  EXPECT_EQ(TextToNumber("123456789"), 123456792.0F);
}

TEST(RoundToInt32Test, HalvesGoToEven) {
  EXPECT_EQ(RoundToInt32(2.5), 2);
  EXPECT_EQ(RoundToInt32(3.5), 4);
  EXPECT_EQ(RoundToInt32(-2.5), -2);
  EXPECT_EQ(RoundToInt32(2.500001), 3);
}

TEST(RoundToInt32Test, NothingOutside32Bits) {
  EXPECT_EQ(RoundToInt32(2147483647.4), 2147483647);
  EXPECT_EQ(RoundToInt32(2147483647.5), std::nullopt);
  EXPECT_EQ(RoundToInt32(-2147483648.5), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(RoundToInt32(-2147483649.0), std::nullopt);
  EXPECT_EQ(RoundToInt32(std::numeric_limits<double>::infinity()), std::nullopt);
  EXPECT_EQ(RoundToInt32(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
}

}  // namespace
}  // namespace orv::storage
