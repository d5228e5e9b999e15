// Matrices in cells: creation, nesting, the top-level matrix, blocks of values.
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "support/container_bytes.h"
#include "support/hex_text.h"
#include "support/structure_walk.h"
#include "support/styled_file.h"

namespace orv {
namespace {

using test::ContainerBytes;
using test::Driver;

class NestedMatricesTest : public testing::Test {
 protected:
  void SetUp() override {
    db_.Fresh("root");
    db_.AddFields(L"", 2, 1);
    db_.AddRecords(L"", 3, 1);
  }
  void ExpectSound() {
    db_.CloseAll();
    EXPECT_EQ(test::WalkStructures(db_.Bytes()).Text(), "");
  }
  std::wstring PutAndReturnTitle(int r, int f, std::wstring title) {
    std::wstring path = db_.Path();
    std::int32_t record = r;
    auto field = static_cast<std::int16_t>(f);
    db_.engine.PutMatrix(path, record, field, title);
    return title;
  }

  Driver db_;
};

TEST_F(NestedMatricesTest, AMatrixInAnEmptyCell) {
  db_.Put(L"", 2, 1, "nested");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_TRUE(db_.HoldsMatrix(L"", 2, 1));
  EXPECT_EQ(db_.Get(L"", 2, 1), "nested");
  EXPECT_EQ(db_.Title(L"/[2,1]"), "nested");
  EXPECT_EQ(db_.Records(L"/[2,1]"), 0);
  EXPECT_EQ(db_.Fields(L"/[2,1]"), 0);
  EXPECT_FALSE(db_.HoldsMatrix(L"", 1, 1));
  ExpectSound();
}

TEST_F(NestedMatricesTest, AnEmptyTitleTakesTheCellsText) {
  db_.Set(L"", 2, 1, "text of the cell");
  EXPECT_EQ(PutAndReturnTitle(2, 1, L""), L"text of the cell");
  EXPECT_EQ(db_.Title(L"/[2,1]"), "text of the cell");
  EXPECT_EQ(PutAndReturnTitle(1, 1, L""), L"") << "an empty cell has no text to give";
  EXPECT_EQ(db_.Title(L"/[1,1]"), "");
  EXPECT_EQ(PutAndReturnTitle(3, 1, L"given"), L"given");
}

TEST_F(NestedMatricesTest, AMatrixInPlaceOfAnotherIsNewAndTouchesNoNeighbour) {
  db_.Put(L"", 1, 1, "left");
  db_.Put(L"", 2, 1, "old");
  db_.Put(L"", 3, 1, "right");
  db_.AddFields(L"/[2,1]", 5, 1);
  db_.AddFields(L"/[3,1]", 1, 1);
  db_.Put(L"", 2, 1, std::string(1000, 'n'));
  EXPECT_EQ(db_.Fields(L"/[2,1]"), 0);
  EXPECT_EQ(db_.Title(L"/[2,1]"), std::string(1000, 'n'));
  EXPECT_EQ(db_.Title(L"/[1,1]"), "left");
  EXPECT_EQ(db_.Title(L"/[3,1]"), "right");
  EXPECT_EQ(db_.Fields(L"/[3,1]"), 1);
  ExpectSound();
}

TEST_F(NestedMatricesTest, TheTypeNumberOfCellOrFieldIsKeptNegative) {
  db_.SetType(L"", 2, 1, "unit", "km");
  const int type = db_.Id(L"", 2, 1);
  ASSERT_GT(type, 1);
  db_.Put(L"", 2, 1, "nested");
  EXPECT_EQ(db_.Id(L"", 2, 1), -type);
  db_.SetType(L"", -2, 2, "unit", "kg");
  const int fieldType = db_.Id(L"", -2, 2);
  db_.Put(L"", 1, 2, "nested");
  EXPECT_EQ(db_.Id(L"", 1, 2), -fieldType);
}

TEST_F(NestedMatricesTest, WhatPutMatrixRefuses) {
  db_.CloseAll();
  const std::string before = db_.Bytes();
  db_.Put(L"", 4, 1, "x");
  EXPECT_EQ(db_.Error(), 9);
  db_.Put(L"", 0, 1, "x");
  EXPECT_NE(db_.Error(), 0);
  db_.Put(L"", 1, 3, "x");
  EXPECT_EQ(db_.Error(), 9);
  db_.Put(L"/[1,1]", 1, 1, "x");
  EXPECT_EQ(db_.Error(), 19);
  db_.Put(L"/#", 1, 1, "x");
  EXPECT_EQ(db_.Error(), 255);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), before);
}

TEST_F(NestedMatricesTest, AViewHasNoRecordInFrontOfItsFirst) {
  db_.Set(L"", 1, 1, "kept");
  db_.Set(L"", 2, 1, "x");
  for (int r : {0, -1}) {
    db_.Put(L"/f(1)=x", r, 1, "nested");
    EXPECT_EQ(db_.Error(), 9) << r;
  }
  EXPECT_FALSE(db_.HoldsMatrix(L"", 1, 1));
  EXPECT_EQ(db_.Get(L"", 1, 1), "kept");
}

TEST_F(NestedMatricesTest, ADeletedFieldTakesNoType) {
  db_.DeleteField(L"", 2);
  db_.CloseAll();
  const std::string before = db_.Bytes();
  for (int r : {1, 0, -2}) {
    db_.SetType(L"", r, 2, "type", "int");
    EXPECT_EQ(db_.Error(), 255) << r;
  }
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), before);
}

TEST_F(NestedMatricesTest, APropertyChangedAsATitleIsSeenAtOnce) {
  db_.SetType(L"", 1, 1, "comp", "old");
  db_.Put(L"/#/[1,3]", 1, 2, "one");
  EXPECT_EQ(db_.Type(L"", 1, 1, "comp"), "one");
  db_.SetTitle(L"/#/[1,3]/[1,2]", "two");
  EXPECT_EQ(db_.Type(L"", 1, 1, "comp"), "two");
}

TEST_F(NestedMatricesTest, FieldsOfOtherStylesAre58) {
  MakeStyledFile(db_);
  db_.AddRecords(L"", 1, 1);
  for (int f = 2; f <= test::styled::kFields; ++f) {
    db_.Put(L"", 1, f, "x");
    EXPECT_EQ(db_.Error(), 58) << f;
  }
}

TEST_F(NestedMatricesTest, ThePropertyMatrixNeedsNoField) {
  db_.Fresh("bare");
  EXPECT_EQ(db_.Records(L"/#"), -1);
  db_.Put(L"", -2, 1, "Types");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Title(L"/#"), "Types");
  EXPECT_EQ(db_.Records(L"/#"), 0) << "the remainder # counts the matrix";
  db_.CloseAll();
  const ContainerBytes file(db_.Bytes());
  EXPECT_EQ(file.Int16(file.Int32(file.Root() + 8)), -1);
}

TEST_F(NestedMatricesTest, ThirtyDeep) {
  std::wstring steps;
  for (int depth = 1; depth <= 30; ++depth) {
    db_.Put(steps, 1 + depth % 3, 1, "level " + std::to_string(depth));
    ASSERT_EQ(db_.Error(), 0) << depth;
    steps += L"/[" + std::to_wstring(1 + depth % 3) + L",1]";
    db_.AddFields(steps, 1, 1);
    db_.AddRecords(steps, 3, 1);
  }
  db_.Set(steps, 3, 1, "at the bottom");
  db_.CloseAll();
  EXPECT_EQ(db_.Get(steps, 3, 1), "at the bottom");
  EXPECT_EQ(db_.Title(steps), "level 30");
  EXPECT_EQ(db_.Records(steps), 3);
  ExpectSound();
}

TEST_F(NestedMatricesTest, ThePathHoldsThirtyTwoStepsAndNotOneMore) {
  std::wstring steps;
  for (int depth = 1; depth <= 32; ++depth) {
    db_.Put(steps, 1, 1, "level " + std::to_string(depth));
    ASSERT_EQ(db_.Error(), 0) << depth;
    steps += L"/[1,1]";
    if (depth == 32) break;
    db_.AddFields(steps, 1, 1);
    db_.AddRecords(steps, 1, 1);
  }
  EXPECT_EQ(db_.Title(steps), "level 32");
  EXPECT_EQ(db_.Title(steps + L"/[1,1]"), "");
  EXPECT_EQ(db_.Error(), 10);
}

TEST_F(NestedMatricesTest, AMatrixThatContainsItselfIsWalkedAsFarAsThePathGoes) {
  db_.Put(L"", 1, 1, "nested");
  db_.CloseAll();
  ContainerBytes file(db_.Bytes());
  file.PutInt32(file.Int32(file.Descriptor(file.Root(), 1)) + 4, file.Root());
  test::WriteBytes(db_.file(), file.bytes());
  std::wstring steps;
  for (int i = 0; i < 32; ++i) steps += L"/[1,1]";
  EXPECT_EQ(db_.Title(steps), "root");
}

TEST_F(NestedMatricesTest, ANewTopMatrixHoldsTheOldOne) {
  db_.Set(L"", 2, 2, "inside");
  db_.InsertTop();
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Title(), "First");
  EXPECT_EQ(db_.Fields(), 1);
  EXPECT_EQ(db_.Records(), 1);
  EXPECT_TRUE(db_.HoldsMatrix(L"", 1, 1));
  EXPECT_EQ(db_.Title(L"/[1,1]"), "root");
  EXPECT_EQ(db_.Get(L"/[1,1]", 2, 2), "inside");
  ExpectSound();
  db_.InsertTop();
  EXPECT_EQ(db_.Get(L"/[1,1]/[1,1]", 2, 2), "inside");
  ExpectSound();
}

TEST_F(NestedMatricesTest, ANewTopMatrixNeedsAFilePartInQuotes) {
  db_.CloseAll();
  const std::string before = db_.Bytes();
  for (std::wstring path :
       {db_.file(), std::wstring(), std::wstring(L"\""), std::wstring(L"\"a")}) {
    db_.engine.InsFirstLvlMtx(path);
    EXPECT_EQ(db_.Error(), 10);
  }
  EXPECT_EQ(db_.Bytes(), before);
}

TEST_F(NestedMatricesTest, ANewTopMatrixIsPutAboveTheRootWhateverStepsFollow) {
  db_.Put(L"", 1, 1, "nested");
  std::wstring path = db_.Path(L"/[1,1]");
  db_.engine.InsFirstLvlMtx(path);
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Title(L"/[1,1]"), "root");
  EXPECT_EQ(db_.Title(L"/[1,1]/[1,1]"), "nested");
}

TEST_F(NestedMatricesTest, CopyCellChangesNothing) {
  db_.Get(L"", 9, 9);
  const int code = db_.Error();
  db_.engine.CloseAll();
  const std::string before = db_.Bytes();
  std::wstring from = db_.Path();
  std::wstring to = db_.Path();
  std::int32_t r1 = 1;
  std::int32_t r2 = 2;
  std::int16_t f1 = 1;
  std::int16_t f2 = 2;
  Boolean what = Boolean::kTrue;
  Boolean nested = Boolean::kTrue;
  db_.engine.CopyCell(from, r1, f1, to, r2, f2, what, nested);
  EXPECT_EQ(db_.Error(), code);
  EXPECT_EQ(db_.Bytes(), before);
}

class ValueMatrixTest : public NestedMatricesTest {
 protected:
  void SetUp() override {
    NestedMatricesTest::SetUp();
    for (int f = 1; f <= 2; ++f) {
      for (int r = 0; r <= 3; ++r) db_.Set(L"", r, f, std::to_string(r) + ":" + std::to_string(f));
    }
  }
  /// Calls the member; `last_` is what came back of `r2`.
  TextMatrix Read(std::int32_t r1, std::int32_t r2, Bounds fields, Bounds records,
                  std::wstring_view steps = {}) {
    TextMatrix m(fields, records);
    std::wstring path = db_.Path(steps);
    Boolean frml = Boolean::kFalse;
    last_ = r2;
    db_.engine.ValueMatrix(m, path, r1, last_, frml);
    return m;
  }

  std::int32_t last_ = 0;
};

TEST_F(ValueMatrixTest, RecordsGoToTheElementsOfTheirNumbers) {
  const TextMatrix m = Read(2, 3, {1, 2}, {2, 3});
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(last_, 3);
  EXPECT_EQ(m.At(1, 2), L"2:1");
  EXPECT_EQ(m.At(2, 2), L"2:2");
  EXPECT_EQ(m.At(2, 3), L"3:2");
}

TEST_F(ValueMatrixTest, RecordZeroIsTheHeaderRow) {
  const TextMatrix m = Read(0, 1, {1, 2}, {0, 1});
  EXPECT_EQ(m.At(1, 0), L"0:1");
  EXPECT_EQ(m.At(2, 0), L"0:2");
  EXPECT_EQ(m.At(1, 1), L"1:1");
}

TEST_F(ValueMatrixTest, BeyondTheLastRecordTheCallEndsOneBehindIt) {
  const TextMatrix m = Read(1, 10, {1, 2}, {1, 10});
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(last_, 4);
  EXPECT_EQ(m.At(2, 3), L"3:2");
  EXPECT_EQ(m.At(1, 4), L"");
  Read(7, 10, {1, 2}, {1, 10});
  EXPECT_EQ(last_, 7) << "the record that exceeds the count";
}

TEST_F(ValueMatrixTest, OneArrayServesBlockAfterBlock) {
  TextMatrix m = Read(1, 2, {1, 2}, {1, 2});
  const std::wstring* const first = &m.At(1, 1);
  m.StartRecordsAt(2);
  EXPECT_EQ(m.records(), (Bounds{2, 3}));
  EXPECT_EQ(&m.At(1, 2), first) << "the texts stay where they are";
  EXPECT_EQ(m.At(1, 2), L"1:1");
  std::wstring path = db_.Path();
  std::int32_t from = 2;
  std::int32_t to = 3;
  Boolean frml = Boolean::kFalse;
  db_.engine.ValueMatrix(m, path, from, to, frml);
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(m.At(1, 2), L"2:1");
  EXPECT_EQ(m.At(2, 3), L"3:2");
  EXPECT_FALSE(m.Contains(1, 1));
}

TEST(TextMatrixTest, RecordsAreNotNumberedBeyondTheGreatestNumber) {
  constexpr std::int32_t kGreatest = std::numeric_limits<std::int32_t>::max();
  TextMatrix m({1, 1}, {0, 2});
  m.StartRecordsAt(kGreatest - 2);
  EXPECT_EQ(m.records(), (Bounds{kGreatest - 2, kGreatest}));
  m.StartRecordsAt(kGreatest - 1);
  EXPECT_EQ(m.records(), (Bounds{kGreatest - 2, kGreatest})) << "they keep their numbers";
  m.StartRecordsAt(-5);
  EXPECT_EQ(m.records(), (Bounds{-5, -3}));
}

TEST(TextMatrixTest, AnArrayWithoutRecordsStaysWithoutThem) {
  TextMatrix m({1, 3}, {1, 0});
  m.StartRecordsAt(10);
  EXPECT_EQ(m.records(), (Bounds{1, 0}));
}

TEST_F(ValueMatrixTest, AnElementOutsideTheArrayIs20) {
  for (const auto& [fields, records] :
       {std::pair{Bounds{1, 1}, Bounds{1, 3}}, std::pair{Bounds{1, 2}, Bounds{2, 3}},
        std::pair{Bounds{1, 2}, Bounds{1, 2}}, std::pair{Bounds{}, Bounds{}}}) {
    Read(1, 3, fields, records);
    EXPECT_EQ(db_.Error(), 20);
  }
}

TEST_F(ValueMatrixTest, NegativeRecordsFillNothing) {
  const TextMatrix m = Read(-1, 3, {1, 2}, {1, 3});
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(m.At(1, 1), L"");
  Read(1, -3, {1, 2}, {1, 3});
  EXPECT_EQ(last_, -3);
}

TEST_F(ValueMatrixTest, APathThatDoesNotResolveKeepsItsCode) {
  Read(1, 3, {1, 2}, {1, 3}, L"/[1,1]");
  EXPECT_EQ(db_.Error(), 19);
  Read(1, 3, {1, 2}, {1, 3}, L"/x[1,1]");
  EXPECT_EQ(db_.Error(), 10);
}

TEST_F(ValueMatrixTest, CellsOfEveryStyle) {
  MakeStyledFile(db_);
  db_.AddRecords(L"", 2, 1);
  for (int f = 1; f <= test::styled::kFields; ++f) db_.Set(L"", 2, f, std::to_string(f));
  const TextMatrix m = Read(1, 2, {1, test::styled::kFields}, {1, 2});
  for (int f = 1; f <= test::styled::kFields; ++f) EXPECT_EQ(m.At(f, 2), std::to_wstring(f));
  EXPECT_EQ(m.At(test::styled::kPacked, 1), L"0");
}

TEST_F(ValueMatrixTest, ADbaseTableWithItsNames) {
  db_.Use(L"t.dbf");
  test::WriteBytes(db_.file(),
                   test::FromHex("03 7c 01 01  02 00 00 00  41 00  04 00  00*20 \"NAME\" 00*7 "
                                 "\"C\" 00*4  03  00*15  0d  20 \"abc\" 20 \" d \""));
  const TextMatrix m = Read(0, 5, {1, 1}, {0, 5});
  EXPECT_EQ(m.At(1, 0), L"NAME");
  EXPECT_EQ(m.At(1, 1), L"abc");
  EXPECT_EQ(m.At(1, 2), L"d");
  EXPECT_EQ(last_, 3);
}

}  // namespace
}  // namespace orv
