// Texts written into cells and read back, next to neighbours that must keep theirs.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "engine/component.h"
#include "support/container_bytes.h"
#include "support/structure_walk.h"
#include "support/styled_file.h"

namespace orv {
namespace {

using test::Driver;
namespace styled = test::styled;

const std::vector<std::size_t> kLengths = {0, 1, 254, 255, 256, 257, 65536, 1000000};

std::string TextOf(std::size_t length, char first) {
  std::string text(length, first);
  for (std::size_t i = 0; i < length; ++i)
    text[i] = static_cast<char>(first + static_cast<char>(i % 23));
  return text;
}

class CellRoundTripTest : public testing::Test {
 protected:
  void SetUp() override {
    db_.Fresh();
    db_.AddFields(L"", 2, 1);
    db_.AddRecords(L"", 3, 1);
  }
  void ExpectSound() {
    db_.CloseAll();
    EXPECT_EQ(test::WalkStructures(db_.Bytes()).Text(), "");
  }

  Driver db_;
};

class LengthPairTest : public CellRoundTripTest, public testing::WithParamInterface<std::size_t> {};
INSTANTIATE_TEST_SUITE_P(From, LengthPairTest, testing::ValuesIn(kLengths));

TEST_P(LengthPairTest, TextsOfEveryLengthOverOneAnother) {
  const std::string first = TextOf(GetParam(), 'a');
  for (const std::size_t length : kLengths) {
    SetUp();
    const std::string second = TextOf(length, 'A');
    db_.Set(L"", 1, 1, "left");
    db_.Set(L"", 2, 1, first);
    db_.Set(L"", 3, 1, "right");
    ASSERT_EQ(db_.Get(L"", 2, 1), first);
    for (const std::string& text : {second, first, second}) {
      db_.Set(L"", 2, 1, text);
      ASSERT_EQ(db_.Error(), 0);
      ASSERT_TRUE(db_.Get(L"", 2, 1) == text) << GetParam() << " and " << length;
      ASSERT_EQ(db_.Get(L"", 1, 1), "left");
      ASSERT_EQ(db_.Get(L"", 3, 1), "right");
    }
    ExpectSound();
    ASSERT_TRUE(db_.Get(L"", 2, 1) == second) << "after reopening";
  }
}

TEST_P(LengthPairTest, TextsOverTitlesAndNames) {
  const std::string text = TextOf(GetParam(), 'a');
  db_.SetTitle(L"", text);
  EXPECT_EQ(db_.Error(), 0);
  db_.Set(L"", 0, 1, text);
  EXPECT_EQ(db_.Error(), 0);
  db_.Set(L"", 0, 2, "neighbour");
  EXPECT_TRUE(db_.Title() == text);
  EXPECT_TRUE(db_.Get(L"", 0, 1) == text);
  db_.Set(L"", 0, 1, "short");
  db_.SetTitle(L"", "short title");
  EXPECT_EQ(db_.Title(), "short title");
  EXPECT_EQ(db_.Get(L"", 0, 1), "short");
  EXPECT_EQ(db_.Get(L"", 0, 2), "neighbour");
  ExpectSound();
}

TEST_P(LengthPairTest, TextsOverACellThatHoldsAMatrixChangeItsTitleOnly) {
  const std::string text = TextOf(GetParam(), 'a');
  db_.Put(L"", 2, 1, "nested");
  db_.AddFields(L"/[2,1]", 1, 1);
  db_.AddRecords(L"/[2,1]", 1, 1);
  db_.Set(L"/[2,1]", 1, 1, "inside");
  db_.Set(L"", 2, 1, text);
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_TRUE(db_.Get(L"", 2, 1) == text);
  EXPECT_TRUE(db_.HoldsMatrix(L"", 2, 1));
  EXPECT_TRUE(db_.Title(L"/[2,1]") == text);
  EXPECT_EQ(db_.Get(L"/[2,1]", 1, 1), "inside");
  EXPECT_EQ(db_.Id(L"", 2, 1), -1);
  ExpectSound();
}

TEST_F(CellRoundTripTest, EveryByteValue) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text = std::string("<") + static_cast<char>(byte) + ">";
    db_.Set(L"", 1, 1, text);
    ASSERT_EQ(db_.Get(L"", 1, 1), text) << byte;
    const std::string alone(1, static_cast<char>(byte));
    db_.Set(L"", 2, 1, alone);
    ASSERT_EQ(db_.Get(L"", 2, 1), alone) << byte;
  }
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all.push_back(static_cast<char>(byte));
  db_.Set(L"", 1, 1, all);
  db_.SetTitle(L"", all);
  db_.Set(L"", 0, 2, all);
  EXPECT_EQ(db_.Get(L"", 1, 1), all);
  EXPECT_EQ(db_.Title(), all);
  EXPECT_EQ(db_.Get(L"", 0, 2), all);
}

TEST_F(CellRoundTripTest, NamesOf300Characters) {
  const std::string longName = TextOf(300, 'n');
  db_.Set(L"", 0, 1, longName);
  EXPECT_EQ(db_.Get(L"", 0, 1), longName);
  EXPECT_EQ(db_.Id(L"", 0, 1), 1) << "the name stays in the short form";
  db_.Set(L"", 0, 1, "name");
  db_.Set(L"", 0, 1, longName + longName);
  EXPECT_EQ(db_.Get(L"", 0, 1), longName + longName);
  ExpectSound();
}

TEST_F(CellRoundTripTest, TheFormFollowsTheLengthOfANewText) {
  db_.Set(L"", 1, 1, std::string(255, 'x'));
  EXPECT_EQ(db_.Id(L"", 1, 1), 1);
  db_.Set(L"", 2, 1, std::string(256, 'x'));
  EXPECT_EQ(db_.Id(L"", 2, 1), 16381);
  EXPECT_EQ(db_.Id(L"", 3, 1), 0) << "an empty cell";
}

TEST_F(CellRoundTripTest, AShortCellTurnsLongAndStaysSo) {
  db_.Set(L"", 1, 1, "short");
  db_.Set(L"", 1, 1, std::string(256, 'x'));
  EXPECT_EQ(db_.Id(L"", 1, 1), 16381);
  db_.Set(L"", 1, 1, "short");
  EXPECT_EQ(db_.Id(L"", 1, 1), 16381);
  EXPECT_EQ(db_.Get(L"", 1, 1), "short");
}

TEST_F(CellRoundTripTest, TheEmptyTextLeavesAnEmptyCellEmpty) {
  db_.CloseAll();
  const std::string before = db_.Bytes();
  db_.Set(L"", 1, 1, "");
  EXPECT_EQ(db_.Error(), 0);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), before);
}

TEST_F(CellRoundTripTest, OverwritingWithTheSameLengthChangesNoByteElsewhere) {
  db_.Set(L"", 1, 1, "abcde");
  db_.CloseAll();
  const std::string before = db_.Bytes();
  db_.Set(L"", 1, 1, "12345");
  db_.CloseAll();
  std::string expected = before;
  expected.replace(expected.rfind("abcde"), 5, "12345");
  EXPECT_EQ(db_.Bytes(), expected);
}

TEST_F(CellRoundTripTest, RecordNumbersThatNameNoCell) {
  db_.Set(L"", -1, 1, "x");
  EXPECT_EQ(db_.Error(), 20);
  EXPECT_EQ(db_.Get(L"", -1, 1), "<Error=20>");
  EXPECT_EQ(db_.Error(), 20);
  db_.Set(L"", 4, 1, "x");
  EXPECT_EQ(db_.Error(), 9);
  EXPECT_EQ(db_.Get(L"", 4, 1), "");
  EXPECT_EQ(db_.Error(), 9);
  for (const int r : {0, -2, -3, INT32_MIN}) {
    db_.Set(L"", r, 1, "name" + std::to_string(r));
    EXPECT_EQ(db_.Error(), 0);
    EXPECT_EQ(db_.Get(L"", r, 1), "name" + std::to_string(r)) << "names are read below record 1";
    EXPECT_EQ(db_.Get(L"", 0, 1), "name" + std::to_string(r));
  }
}

TEST_F(CellRoundTripTest, FieldNumbersThatNameNoField) {
  for (const int f : {0, -1, 3, 32767, -32768}) {
    db_.Set(L"", 1, f, "x");
    EXPECT_NE(db_.Error(), 0) << f;
    EXPECT_EQ(db_.Get(L"", 1, f), "");
    EXPECT_NE(db_.Error(), 0) << f;
  }
  db_.DeleteField(L"", 2);
  EXPECT_EQ(db_.Get(L"", 1, 2), "");
  EXPECT_EQ(db_.Error(), 255) << "a slot without descriptor";
}

TEST_F(CellRoundTripTest, PathsThatLeadNowhere) {
  EXPECT_EQ(db_.Get(L"/#", 1, 1), "");
  EXPECT_EQ(db_.Error(), 255);
  db_.Set(L"/#", 1, 1, "x");
  EXPECT_EQ(db_.Error(), 255);
  EXPECT_EQ(db_.Get(L"/[1,1]", 1, 1), "");
  EXPECT_EQ(db_.Error(), 19);
  EXPECT_FALSE(db_.HoldsMatrix(L"/[1,1]", 1, 1));
}

TEST_F(CellRoundTripTest, ReBitSwitchesTheFormAndKeepsTextAndType) {
  for (const std::size_t length : {1U, 200U, 255U, 256U, 70000U}) {
    const std::string text = TextOf(length, 'a');
    db_.Set(L"", 1, 1, text);
    db_.SetType(L"", 1, 1, "unit", "km");
    const int type = db_.Id(L"", 1, 1) % 16380;
    db_.ReBit(L"", 1, 1, 4);
    EXPECT_EQ(db_.Error(), 0);
    EXPECT_EQ(db_.Id(L"", 1, 1), 16380 + type);
    EXPECT_TRUE(db_.Get(L"", 1, 1) == text);
    db_.ReBit(L"", 1, 1, 1);
    EXPECT_EQ(db_.Id(L"", 1, 1), type);
    EXPECT_TRUE(db_.Get(L"", 1, 1) == text) << length;
  }
  ExpectSound();
}

TEST_F(CellRoundTripTest, WhatReBitRefusesAndLeavesAlone) {
  db_.Set(L"", 1, 1, "text");
  db_.Put(L"", 2, 1, "nested");
  db_.CloseAll();
  const std::string before = db_.Bytes();
  db_.ReBit(L"", 1, 1, 2);
  EXPECT_EQ(db_.Error(), 26);
  db_.ReBit(L"", 0, 1, 4);
  EXPECT_EQ(db_.Error(), 20);
  db_.ReBit(L"", 1, 0, 4);
  EXPECT_EQ(db_.Error(), 21);
  db_.ReBit(L"", 0, 0, 4);
  EXPECT_EQ(db_.Error(), 20);
  db_.ReBit(L"/#", 1, 1, 4);
  EXPECT_EQ(db_.Error(), 255);
  db_.ReBit(L"", 2, 1, 1);  // a matrix
  EXPECT_EQ(db_.Error(), 0);
  db_.ReBit(L"", 3, 1, 4);  // an empty cell
  EXPECT_EQ(db_.Error(), 0);
  db_.ReBit(L"", 1, 1, 1);  // short already
  EXPECT_EQ(db_.Error(), 0);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), before);
}

TEST_F(CellRoundTripTest, ReBitOfARecordOutsideTheMatrixIs9) {
  db_.ReBit(L"", 4, 1, 4);
  EXPECT_EQ(db_.Error(), 9);
}

TEST_F(CellRoundTripTest, ACellBehindAShortDataChainIsAnEmptyCell) {
  // Field 3 is given data by the insertion of two records only; records 4 and 5 lie behind it.
  db_.AddFields(L"", 1, 3);
  db_.AddRecords(L"", 2, 1);
  db_.ReBit(L"", 5, 3, 4);
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Id(L"", 5, 3), 0);
  EXPECT_EQ(db_.Error(), 0);
  db_.SetType(L"", 5, 3, "unit", "km");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Type(L"", 5, 3, "Unit"), "km");
  db_.Put(L"", 4, 3, "nested");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Title(L"/[4,3]"), "nested");
  ExpectSound();
}

class StyledCellTest : public testing::Test {
 protected:
  void SetUp() override {
    MakeStyledFile(db_);
    db_.AddRecords(L"", 3, 1);
  }
  std::string Written(int f, std::string_view text) {
    db_.Set(L"", 2, f, text);
    return db_.Get(L"", 2, f);
  }

  Driver db_;
};

TEST_F(StyledCellTest, FixedTexts) {
  EXPECT_EQ(Written(styled::kText, "ab"), "ab");
  EXPECT_EQ(Written(styled::kText, "abcdefgh"), "abcde");
  EXPECT_EQ(Written(styled::kText, "  a  "), "a");
  EXPECT_EQ(Written(styled::kText, ""), "");
  EXPECT_EQ(Written(styled::kText, std::string("\0\t\xFF", 3)), std::string("\0\t\xFF", 3));
  EXPECT_EQ(db_.Get(L"", 1, styled::kText), "");
  EXPECT_EQ(db_.Get(L"", 3, styled::kText), "");
}

TEST_F(StyledCellTest, PackedIntegers) {
  for (const auto* number : {"0", "1", "-1", "32767", "-32767"}) {
    EXPECT_EQ(Written(styled::kPacked, number), number);
    EXPECT_EQ(db_.Error(), 0);
  }
  EXPECT_EQ(Written(styled::kPacked, "2.5"), "2");
  EXPECT_EQ(Written(styled::kPacked, "12abc"), "12");
  EXPECT_EQ(Written(styled::kPacked, "abc"), "0");
}

TEST_F(StyledCellTest, IntegersOfFourBytesTakeADecimalCommaToo) {
  MakeStyledFile(db_);
  test::ContainerBytes file(db_.Bytes());
  file.MakeFixed(file.Root(), styled::kFree, 4, 1);
  test::WriteBytes(db_.file(), file.bytes());
  db_.AddRecords(L"", 3, 1);
  for (const auto* number : {"0", "-1", "2147483647", "-2147483648"}) {
    EXPECT_EQ(Written(styled::kFree, number), number);
  }
  EXPECT_EQ(Written(styled::kFree, "3.7"), "4");
  EXPECT_EQ(Written(styled::kFree, "-3,7"), "-4");
  EXPECT_EQ(Written(styled::kFree, "16777217,2"), "16777217");
  EXPECT_EQ(db_.Error(), 0);
  db_.Set(L"", 2, styled::kFree, "2147483647,6");
  EXPECT_EQ(db_.Error(), 6);
  EXPECT_EQ(db_.Get(L"", 2, styled::kFree), "16777217");
}

TEST_F(StyledCellTest, AValueThatCannotBePackedSets6AndWritesNothing) {
  db_.Set(L"", 2, styled::kPacked, "77");
  for (const auto* number : {"32768", "-32768", "1e30"}) {
    db_.Set(L"", 2, styled::kPacked, number);
    EXPECT_EQ(db_.Error(), 6) << number;
    EXPECT_EQ(db_.Get(L"", 2, styled::kPacked), "77");
  }
}

TEST_F(StyledCellTest, IntegersByTheirProperty) {
  for (const auto* number : {"0", "-1", "2147483647", "-2147483648"}) {
    EXPECT_EQ(Written(styled::kInt, number), number);
  }
  db_.Set(L"", 2, styled::kInt, "7");
  db_.Set(L"", 2, styled::kInt, "2147483648");
  EXPECT_EQ(db_.Error(), 6);
  EXPECT_EQ(db_.Get(L"", 2, styled::kInt), "7");
}

TEST_F(StyledCellTest, DictionaryValuesAreStoredOnce) {
  db_.Set(L"", 1, styled::kDictionary, "red");
  db_.Set(L"", 2, styled::kDictionary, "green");
  db_.Set(L"", 3, styled::kDictionary, "red");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Get(L"", 1, styled::kDictionary), "red");
  EXPECT_EQ(db_.Get(L"", 2, styled::kDictionary), "green");
  EXPECT_EQ(db_.Get(L"", 3, styled::kDictionary), "red");
  constexpr auto kDictionary = L"/#/[2,3]/[1,2]";
  EXPECT_EQ(db_.Records(kDictionary), 2);
  EXPECT_EQ(db_.Get(kDictionary, 1, 1), "red");
  EXPECT_EQ(db_.Get(kDictionary, 1, 2), "2") << "counts are kept true";
  db_.Set(L"", 1, styled::kDictionary, "green");
  EXPECT_EQ(db_.Get(kDictionary, 1, 2), "1");
  EXPECT_EQ(db_.Get(kDictionary, 2, 2), "2");
  db_.Set(L"", 1, styled::kDictionary, "");
  EXPECT_EQ(db_.Get(L"", 1, styled::kDictionary), "");
  EXPECT_EQ(db_.Get(kDictionary, 2, 2), "1");
  EXPECT_EQ(db_.Records(kDictionary), 2);
}

// Dictionary values known by text stayed behind under an opening that had ended, 70 bytes a value
// for each opening in which a cell was written.
TEST_F(StyledCellTest, ClosingAllFilesForgetsTypesAndDictionaryValues) {
  const storage::TypeTables& types = engine::Component::Instance().storage.types;
  db_.Set(L"", 1, styled::kDictionary, "red");
  EXPECT_FALSE(types.IsEmpty());
  db_.CloseAll();
  EXPECT_TRUE(types.IsEmpty());
  EXPECT_EQ(db_.Get(L"", 1, styled::kDictionary), "red");
}

TEST_F(StyledCellTest, AnIndexThatOutgrowsItsWidthIsWidened) {
  constexpr int kValues = 300;
  db_.AddRecords(L"", kValues - 3, 1);
  for (int r = 1; r <= kValues; ++r) {
    db_.Set(L"", r, styled::kDictionary, "value " + std::to_string(r));
    ASSERT_EQ(db_.Error(), 0) << r;
  }
  for (const bool reopened : {false, true}) {
    for (int r = 1; r <= kValues; ++r) {
      ASSERT_EQ(db_.Get(L"", r, styled::kDictionary), "value " + std::to_string(r)) << reopened;
    }
    db_.CloseAll();
  }
  const test::ContainerBytes file(db_.Bytes());
  EXPECT_EQ(file.Int32(file.Descriptor(file.Root(), styled::kDictionary) + 9), 2);
  EXPECT_EQ(test::WalkStructures(db_.Bytes()).Text(), "");
}

TEST_F(StyledCellTest, OtherStylesHoldNoCellsToPointAt) {
  for (int f = styled::kText; f <= styled::kFields; ++f) {
    EXPECT_EQ(db_.Id(L"", 1, f), db_.Id(L"", -2, f)) << "the field's own code";
    db_.ReBit(L"", 1, f, 4);
    EXPECT_EQ(db_.Error(), 0);
    db_.Put(L"", 1, f, "nested");
    EXPECT_EQ(db_.Error(), 58);
    EXPECT_EQ(db_.Title(L"/[1," + std::to_wstring(f) + L"]"), "");
    EXPECT_EQ(db_.Error(), 19);
  }
  db_.CloseAll();
  EXPECT_EQ(test::WalkStructures(db_.Bytes()).Text(), "");
}

TEST_F(StyledCellTest, NamesOfFieldsOfEveryStyle) {
  for (int f = 1; f <= styled::kFields; ++f) {
    db_.Set(L"", 0, f, "name " + std::to_string(f));
    EXPECT_EQ(db_.Get(L"", 0, f), "name " + std::to_string(f));
  }
}

TEST_F(StyledCellTest, CellsBeyondTheRecordCountAre9InEveryStyle) {
  for (int f = 1; f <= styled::kFields; ++f) {
    db_.Set(L"", 4, f, "1");
    EXPECT_EQ(db_.Error(), 9) << f;
    EXPECT_EQ(db_.Get(L"", 4, f), "");
    EXPECT_EQ(db_.Error(), 9) << f;
  }
}

}  // namespace
}  // namespace orv
