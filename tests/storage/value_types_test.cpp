#include "storage/value_types.h"

#include <string>

#include <gtest/gtest.h>

namespace orv::storage {
namespace {

class ValueTypesTest : public testing::Test {
 protected:
  std::string Integer(double value, std::int32_t n) { return EncodeInteger(value, n, errorCode_); }
  std::string Fixed(const std::string& text, std::int16_t typeCode, std::int32_t n,
                    std::int32_t decimals = 0) {
    return EncodeFixed(text, typeCode, n, decimals, errorCode_);
  }
  void ExpectRefused(const std::string& bytes, std::int16_t expectedCode) {
    EXPECT_EQ(bytes, "");
    EXPECT_EQ(errorCode_.value(), expectedCode);
    errorCode_.Clear();
  }

  ErrorCode errorCode_;
};

TEST_F(ValueTypesTest, NamesAndCodesCorrespond) {
  const char* names[] = {"variant",   "integer", "number", "real",  "currency", "",
                         "date&time", "logic",   "path",   "image", "string",   "file"};
  for (std::int16_t c = 0; c <= 11; ++c) {
    EXPECT_EQ(TypeName(c), names[c]);
    if (c != 5) {
      EXPECT_EQ(TypeCode(names[c]), c);
    }
  }
  EXPECT_EQ(TypeName(-1), "");
  EXPECT_EQ(TypeName(12), "");
  EXPECT_EQ(TypeName(255), "");
}

TEST_F(ValueTypesTest, OtherNames) {
  EXPECT_EQ(TypeCode("int"), 1);
  EXPECT_EQ(TypeCode(""), 0);
  EXPECT_EQ(TypeCode("Integer"), 0);
  EXPECT_EQ(TypeCode("date"), 0);
}

TEST_F(ValueTypesTest, OneByteTakesMinus127To128) {
  EXPECT_EQ(Integer(127, 1), "\x7F");
  EXPECT_EQ(Integer(128, 1), "\x80");
  EXPECT_EQ(Integer(-127, 1), "\x81");
  EXPECT_EQ(Integer(0, 1), std::string(1, '\0'));
  EXPECT_EQ(errorCode_.value(), 0);
  ExpectRefused(Integer(-128, 1), 6);
  ExpectRefused(Integer(129, 1), 6);
}

TEST_F(ValueTypesTest, TwoBytesLeaveOutTheMostNegativeValue) {
  EXPECT_EQ(Integer(32767, 2), "\xFF\x7F");
  EXPECT_EQ(Integer(-32767, 2), "\x01\x80");
  EXPECT_EQ(errorCode_.value(), 0);
  ExpectRefused(Integer(32768, 2), 6);
  ExpectRefused(Integer(-32768, 2), 6);
}

TEST_F(ValueTypesTest, ThreeBytesLeaveOutTheMostNegativeValue) {
  EXPECT_EQ(Integer(-1, 3), "\xFF\xFF\xFF");
  EXPECT_EQ(Integer(0x123456, 3), "\x56\x34\x12");
  EXPECT_EQ(Integer(8388607, 3), "\xFF\xFF\x7F");
  EXPECT_EQ(Integer(-8388607, 3), std::string("\x01\x00\x80", 3));
  EXPECT_EQ(errorCode_.value(), 0);
  ExpectRefused(Integer(8388608, 3), 6);
  ExpectRefused(Integer(-8388608, 3), 6);
  ExpectRefused(Integer(1e30, 3), 6);
}

TEST_F(ValueTypesTest, OtherWidthsPackNothingAndAreNoError) {
  for (const std::int32_t n : {-1, 0, 4, 5, 255}) EXPECT_EQ(Integer(1, n), "") << n;
  EXPECT_EQ(errorCode_.value(), 0);
}

TEST_F(ValueTypesTest, FractionsAreRoundedHalvesToEven) {
  EXPECT_EQ(Integer(2.5, 1), "\x02");
  EXPECT_EQ(Integer(3.5, 1), "\x04");
  EXPECT_EQ(Integer(128.4, 1), "\x80");
  ExpectRefused(Integer(128.6, 1), 6);
}

TEST_F(ValueTypesTest, EveryPackedValueDecodesToItself) {
  for (std::int32_t v = -127; v <= 128; ++v) ASSERT_EQ(DecodeInteger(Integer(v, 1)), v);
  for (std::int32_t v = -32767; v <= 32767; ++v) ASSERT_EQ(DecodeInteger(Integer(v, 2)), v);
  for (std::int32_t v = -8388607; v <= 8388607; v += 41) ASSERT_EQ(DecodeInteger(Integer(v, 3)), v);
  EXPECT_EQ(DecodeInteger(Integer(8388607, 3)), 8388607);
  EXPECT_EQ(errorCode_.value(), 0);
}

TEST_F(ValueTypesTest, BytesThatNothingPacksStillDecode) {
  EXPECT_EQ(DecodeInteger(std::string("\x00\x80", 2)), -32768);
  EXPECT_EQ(DecodeInteger(std::string("\x00\x00\x80", 3)), -8388608);
  EXPECT_EQ(DecodeInteger(""), 0);
  EXPECT_EQ(DecodeInteger("abcd"), 0);
}

TEST_F(ValueTypesTest, TextsArePaddedOrCut) {
  EXPECT_EQ(Fixed("abc", type::kString, 5), "abc  ");
  EXPECT_EQ(Fixed("abc", type::kVariant, 2), "ab");
  EXPECT_EQ(Fixed("", type::kString, 2), "  ");
  EXPECT_EQ(errorCode_.value(), 0);
}

TEST_F(ValueTypesTest, IntegersOfTexts) {
  EXPECT_EQ(Fixed("258", type::kInteger, 2), "\x02\x01");
  EXPECT_EQ(Fixed("-1 apple", type::kInteger, 1), "\xFF");
  EXPECT_EQ(Fixed("none", type::kInteger, 1), std::string(1, '\0'));
  EXPECT_EQ(Fixed("1", type::kInteger, 4), "");
  EXPECT_EQ(errorCode_.value(), 0);
  ExpectRefused(Fixed("300", type::kInteger, 1), 6);
}

TEST_F(ValueTypesTest, NumbersAreScaledAndCut) {
  EXPECT_EQ(Fixed("12.345", type::kNumber, 2, 2), "\xD2\x04");
  EXPECT_EQ(Fixed("-12,349", type::kNumber, 2, 2), "\x2E\xFB");
  EXPECT_EQ(Fixed("7", type::kNumber, 1, 0), "\x07");
  EXPECT_EQ(errorCode_.value(), 0);
  ExpectRefused(Fixed("1", type::kNumber, 3, 15), 6);
  ExpectRefused(Fixed("1", type::kNumber, 3, 400), 6);
  EXPECT_EQ(Fixed("0", type::kNumber, 1, 400), std::string(1, '\0'));
}

TEST_F(ValueTypesTest, TypesThatFixedCellsDoNotHold) {
  for (const int typeCode : {3, 4, 5, 6, 7, 8, 11, 12, -1, 255}) {
    EXPECT_EQ(Fixed("1", static_cast<std::int16_t>(typeCode), 3), "") << typeCode;
  }
  EXPECT_EQ(errorCode_.value(), 0);
  ExpectRefused(Fixed("1", type::kImage, 3), 13);
}

TEST_F(ValueTypesTest, AWidthBelowOneIsRefusedBeforeAnythingElse) {
  ExpectRefused(Fixed("1", type::kInteger, 0), 5);
  ExpectRefused(Fixed("1", type::kImage, -1), 5);
}

TEST_F(ValueTypesTest, DecodingInvertsThePacking) {
  EXPECT_EQ(DecodeFixed("abc  ", type::kString, 0), "abc");
  EXPECT_EQ(DecodeFixed("  a ", type::kVariant, 0), "  a");
  EXPECT_EQ(DecodeFixed("\x80", type::kInteger, 0), "128");
  EXPECT_EQ(DecodeFixed("\x81", type::kInteger, 0), "-127");
  EXPECT_EQ(DecodeFixed("\xD2\x04", type::kNumber, 2), "12.34");
  EXPECT_EQ(DecodeFixed("\xFB\xFF", type::kNumber, 2), "-0.05");
  EXPECT_EQ(DecodeFixed("\x64", type::kNumber, 2), "1");
  EXPECT_EQ(DecodeFixed("\x01", type::kNumber, 15), "0.000000000000001");
  EXPECT_EQ(DecodeFixed("\x01", type::kNumber, 99), "0.000000000000001");
  EXPECT_EQ(DecodeFixed("\x05", type::kNumber, -2), "500");
  EXPECT_EQ(DecodeFixed(std::string(1, '\0'), type::kNumber, 3), "0");
  EXPECT_EQ(DecodeFixed(std::string(1, '\0'), type::kNumber, -400), "0");
  EXPECT_EQ(DecodeFixed("abcd", type::kInteger, 0), "");
  EXPECT_EQ(DecodeFixed("abcd", type::kNumber, 0), "");
  EXPECT_EQ(DecodeFixed("abc", type::kImage, 0), "");
}

TEST_F(ValueTypesTest, WholeNumbersSurviveTheRoundTrip) {
  for (std::int32_t v = -32767; v <= 32767; v += 7) {
    ASSERT_EQ(DecodeFixed(Fixed(std::to_string(v), type::kNumber, 2), type::kNumber, 0),
              std::to_string(v));
  }
}

TEST_F(ValueTypesTest, Int16BytesLowFirst) {
  EXPECT_EQ(Int16ToBytes(0x0102), "\x02\x01");
  EXPECT_EQ(Int16ToBytes(-1), "\xFF\xFF");
  EXPECT_EQ(Int16ToBytes(-32768), std::string("\x00\x80", 2));
}

}  // namespace
}  // namespace orv::storage
