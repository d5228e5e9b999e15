#include "convert/style_request.h"

#include <gtest/gtest.h>

#include "convert/field_conversion.h"
#include "support/raises.h"

namespace orv::convert {
namespace {

TEST(StyleRequest, TellsItsFiveParts) {
  const StyleRequest fixed = ParseStyleRequest(
      "\x02"
      "12   "
      "+-"
      "\x0B");
  EXPECT_EQ(fixed.freeSize, 1);
  EXPECT_EQ(fixed.cellSize, 12);
  EXPECT_TRUE(fixed.fixedType);
  EXPECT_FALSE(fixed.unique);
  EXPECT_EQ(fixed.dataType, 10);

  const StyleRequest dictionary = ParseStyleRequest(
      "\x0C"
      "0    "
      "-+"
      "\x01");
  EXPECT_EQ(dictionary.freeSize, 11);
  EXPECT_EQ(dictionary.cellSize, 0);
  EXPECT_FALSE(dictionary.fixedType);
  EXPECT_TRUE(dictionary.unique);
  EXPECT_EQ(dictionary.dataType, 0);
}

TEST(StyleRequest, ReadsTheCellSizeLeniently) {
  const auto sizeOf = [](std::string text) {
    text.resize(5, ' ');
    return ParseStyleRequest("\x02" + text + "--\x01").cellSize;
  };
  EXPECT_EQ(sizeOf("2.5"), 2);  // halves to even
  EXPECT_EQ(sizeOf("3.5"), 4);
  EXPECT_EQ(sizeOf("7 cm"), 7);
  EXPECT_EQ(sizeOf("wide"), 0);
  EXPECT_EQ(sizeOf("-5"), -5);
  EXPECT_EQ(sizeOf("32767"), 32767);
  EXPECT_RAISES(6, sizeOf("40000"));
}

TEST(StyleRequest, NeedsNineCharacters) {
  EXPECT_RAISES(5, ParseStyleRequest(""));
  EXPECT_RAISES(5, ParseStyleRequest("\x02"
                                     "1    --"));
  EXPECT_RAISES(5, ParseStyleRequest("\x02"
                                     "1    --\x01\x01"));
}

TEST(FieldConversion, BinaryModeIsTheTextItself) {
  EXPECT_EQ(FieldConversion::ToBinaryMode(L"текст"), Value(std::wstring(L"текст")));
  EXPECT_EQ(FieldConversion::ToBinaryMode(L""), Value(std::wstring()));
}

}  // namespace
}  // namespace orv::convert
