// Fields: added, deleted, named, styled.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "engine/component.h"
#include "support/container_bytes.h"
#include "support/structure_walk.h"
#include "support/styled_file.h"

namespace orv {
namespace {

using test::ContainerBytes;
using test::Driver;

using Names = std::vector<std::string>;

class FieldMembersTest : public testing::Test {
 protected:
  void SetUp() override { db_.Fresh(); }
  /// Fields with these names and one record of the same texts.
  void Make(const Names& names) {
    db_.AddFields(L"", static_cast<int>(names.size()), 1);
    db_.AddRecords(L"", 1, 1);
    for (std::size_t i = 0; i < names.size(); ++i) {
      db_.Set(L"", 0, static_cast<int>(i) + 1, names[i]);
      db_.Set(L"", 1, static_cast<int>(i) + 1, names[i]);
    }
  }
  Names Read(int record) {
    Names names;
    for (int f = 1; f <= db_.Fields(); ++f) names.push_back(db_.Get(L"", record, f));
    return names;
  }
  void ExpectFields(const Names& names) {
    EXPECT_EQ(Read(0), names);
    EXPECT_EQ(Read(1), names) << "the cells follow their fields";
    db_.CloseAll();
    EXPECT_EQ(Read(0), names) << "after reopening";
    db_.CloseAll();
    EXPECT_EQ(test::WalkStructures(db_.Bytes()).Text(), "");
  }
  int IdByName(const std::string& name) {
    return engine::Component::Instance().storage.fields.GetFieldIdByName(db_.Path(), name);
  }

  Driver db_;
};

TEST_F(FieldMembersTest, ThreeAtTwoOfThree) {
  Make({"A", "B", "C"});
  db_.AddFields(L"", 3, 2);
  EXPECT_EQ(db_.Error(), 0);
  ExpectFields({"A", "", "", "", "B", "C"});
}

TEST_F(FieldMembersTest, AtZeroAndBelowIsAtTheFront) {
  Make({"A", "B"});
  db_.AddFields(L"", 1, 0);
  ExpectFields({"", "A", "B"});
  db_.AddFields(L"", 1, -7);
  ExpectFields({"", "", "A", "B"});
}

TEST_F(FieldMembersTest, AboveTheCountIsAppended) {
  Make({"A", "B"});
  db_.AddFields(L"", 2, 99);
  ExpectFields({"A", "B", "", ""});
}

TEST_F(FieldMembersTest, AtTheLastFieldThatFieldIsMadeAnew) {
  Make({"A", "B", "C"});
  db_.AddFields(L"", 1, 3);
  ExpectFields({"A", "B", "", ""});
}

TEST_F(FieldMembersTest, SeveralAtTheLastFieldAllHaveDescriptors) {
  Make({"A"});
  db_.AddFields(L"", 3, 1);
  ExpectFields({"", "", "", ""});
  for (int f = 1; f <= 4; ++f) {
    db_.Set(L"", 0, f, "name");
    EXPECT_EQ(db_.Error(), 0) << f;
  }
}

TEST_F(FieldMembersTest, ACountBelowOneDoesNothing) {
  Make({"A"});
  db_.CloseAll();
  const std::string before = db_.Bytes();
  for (const int count : {0, -1, -32768}) {
    db_.AddFields(L"", count, 1);
    EXPECT_EQ(db_.Error(), 0);
  }
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), before);
}

TEST_F(FieldMembersTest, DeletedFieldsCloseUpAndTheirSlotIsUsedAgain) {
  Make({"A", "B", "C"});
  db_.DeleteField(L"", 2);
  EXPECT_EQ(db_.Error(), 0);
  ExpectFields({"A", "C"});
  db_.DeleteField(L"", 2);
  ExpectFields({"A"});
  const auto before = static_cast<std::int64_t>(db_.Bytes().size());
  db_.AddFields(L"", 1, 2);
  ExpectFields({"A", ""});
  EXPECT_EQ(static_cast<std::int64_t>(db_.Bytes().size()), before + 22)
      << "a descriptor, no new slot";
}

TEST_F(FieldMembersTest, WhatCannotBeDeletedIs255) {
  Make({"A"});
  for (const int f : {0, -1, 2, 32767}) {
    db_.DeleteField(L"", f);
    EXPECT_EQ(db_.Error(), 255) << f;
  }
  db_.DeleteField(L"", 1);
  EXPECT_EQ(db_.Fields(), 0);
  db_.DeleteField(L"", 1);
  EXPECT_EQ(db_.Error(), 255);
}

TEST_F(FieldMembersTest, AViewOfThePathIsNeverStaleAfterAChange) {
  Make({"A", "B", "C"});
  EXPECT_EQ(db_.Get(L"", 1, 2), "B");
  db_.DeleteField(L"", 1);
  EXPECT_EQ(db_.Get(L"", 1, 2), "C");
  db_.AddFields(L"", 1, 1);
  EXPECT_EQ(db_.Get(L"", 1, 2), "B");
}

TEST_F(FieldMembersTest, NamesAreFoundInAnyLetterCaseAndTrimmedOnOneSideOnly) {
  Make({"  Town ", "\xC3\xEE\xF0\xEE\xE4", "town"});
  EXPECT_EQ(IdByName("TOWN"), 1) << "the first of equal names";
  EXPECT_EQ(IdByName(" town"), -1);
  EXPECT_EQ(IdByName("town "), -1);
  EXPECT_EQ(IdByName("\xE3\xCE\xD0\xCE\xC4"), 2);
  EXPECT_EQ(IdByName("nothing"), -1);
}

TEST_F(FieldMembersTest, MoreThanAHundredFieldsGoThroughTheirCache) {
  db_.AddFields(L"", 250, 1);
  for (int f = 1; f <= 250; ++f) db_.Set(L"", 0, f, "name " + std::to_string(f));
  for (int round = 0; round < 2; ++round) {
    for (int f = 250; f >= 1; --f) ASSERT_EQ(db_.Get(L"", 0, f), "name " + std::to_string(f));
  }
}

struct StyleCase {
  int code;
  int freeSize;
  int cellSize;
  bool fixedType;
  bool unique;
};

class FieldStyleTest : public FieldMembersTest {};

TEST_F(FieldStyleTest, EveryStyleCode) {
  constexpr int kPassedIn = 77;
  const StyleCase cases[] = {
      {1, 0, kPassedIn, false, false},
      {2, 0, kPassedIn, false, true},
      {3, 0, kPassedIn, true, false},
      {4, 0, kPassedIn, true, true},
      {5, 1, 300, true, false},
      {6, 1, 300, true, true},
      {7, 2, kPassedIn, true, false},
      {8, kPassedIn, kPassedIn, true, true},
      {9, kPassedIn, kPassedIn, true, false},
      {10, kPassedIn, kPassedIn, true, true},
      {11, 11, 300, true, false},
  };
  db_.AddFields(L"", 1, 1);
  for (const StyleCase& c : cases) {
    db_.CloseAll();
    ContainerBytes file(db_.Bytes());
    const std::int64_t descriptor = file.Descriptor(file.Root(), 1);
    file.PutByte(descriptor + 8, c.code);
    file.PutInt16(descriptor + 9, 300);
    file.PutInt16(descriptor + 11, 4);
    test::WriteBytes(db_.file(), file.bytes());

    std::wstring path = db_.Path();
    std::int16_t field = 1;
    std::int16_t freeSize = kPassedIn;
    std::int16_t cellSize = kPassedIn;
    std::int16_t dataType = kPassedIn;
    Boolean fixedType = Boolean::kFalse;
    Boolean unique = Boolean::kFalse;
    db_.engine.GetFldStyle(path, field, freeSize, cellSize, fixedType, unique, dataType);
    EXPECT_EQ(db_.Error(), 0) << c.code;
    EXPECT_EQ(freeSize, c.freeSize) << c.code;
    EXPECT_EQ(cellSize, c.cellSize) << c.code;
    EXPECT_EQ(IsTrue(fixedType), c.fixedType) << c.code;
    EXPECT_EQ(IsTrue(unique), c.unique) << c.code;
    EXPECT_EQ(dataType, 4) << c.code;
  }
}

TEST_F(FieldStyleTest, CompressedCellsReadEmptyAndAreNotWritten) {
  db_.AddFields(L"", 1, 1);
  db_.AddRecords(L"", 1, 1);
  db_.CloseAll();
  ContainerBytes file(db_.Bytes());
  file.PutByte(file.Descriptor(file.Root(), 1) + 8, 7);
  test::WriteBytes(db_.file(), file.bytes());
  EXPECT_EQ(db_.Get(L"", 1, 1), "");
  EXPECT_EQ(db_.Error(), 0);
  db_.Set(L"", 1, 1, "x");
  EXPECT_NE(db_.Error(), 0);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), file.bytes());
}

TEST_F(FieldStyleTest, AnIntFieldOfThreeBytesHoldsTextsAndNewCellsAreBlank) {
  db_.Fresh();
  db_.AddFields(L"", 1, 1);
  db_.AddRecords(L"", 1, 1);
  db_.SetType(L"", -2, 1, "type", "int");
  db_.SetStyle(L"", 1, 1, 3);
  db_.AddRecords(L"", 1, 2);
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Get(L"", 1, 1), "");
  EXPECT_EQ(db_.Get(L"", 2, 1), "");
}

class TypePropertyTest : public FieldMembersTest {
 protected:
  void SetUp() override {
    FieldMembersTest::SetUp();
    db_.AddFields(L"", 2, 1);
    db_.AddRecords(L"", 2, 1);
    db_.Set(L"", 1, 1, "one");
  }
};

TEST_F(TypePropertyTest, NamesAreFoundInAnyLetterCase) {
  db_.SetType(L"", 1, 1, "Unit", "km");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Type(L"", 1, 1, "uNIT"), "km");
  EXPECT_EQ(db_.Get(L"/#/[1,3]", 1, 1), "unit") << "stored in lower case";
}

TEST_F(TypePropertyTest, TheFirstPropertyGivesTheCellATypeOfItsOwn) {
  db_.SetType(L"", 1, 1, "unit", "km");
  EXPECT_EQ(db_.Id(L"", 1, 1), 2) << "identifiers start at 2";
  EXPECT_EQ(db_.Get(L"", 1, 1), "one") << "the text stays";
  db_.SetType(L"", 2, 1, "unit", "kg");
  EXPECT_EQ(db_.Id(L"", 2, 1), 3);
  EXPECT_EQ(db_.Get(L"", 2, 1), "") << "an empty cell exists now, empty";
  db_.SetType(L"", 1, 1, "colour", "red");
  EXPECT_EQ(db_.Id(L"", 1, 1), 2) << "a second property belongs to the same type";
  EXPECT_EQ(db_.Type(L"", 1, 1, "colour"), "red");
  EXPECT_EQ(db_.Type(L"", 1, 1, "unit"), "km");
  EXPECT_EQ(db_.Type(L"", 2, 1, "unit"), "kg");
  EXPECT_EQ(db_.Title(L"/#"), "Types");
  EXPECT_EQ(db_.Fields(L"/#"), 3);
  EXPECT_EQ(db_.Records(L"/#"), 2);
  EXPECT_EQ(db_.Title(L"/#/[1,3]"), "Prop");
}

TEST_F(TypePropertyTest, APropertyOutlivesAChangeOfTheLengthForm) {
  db_.SetType(L"", 1, 1, "unit", "km");
  db_.Set(L"", 1, 1, std::string(1000, 'x'));
  EXPECT_EQ(db_.Id(L"", 1, 1), 16382);
  EXPECT_EQ(db_.Type(L"", 1, 1, "unit"), "km");
}

TEST_F(TypePropertyTest, GoToTheRecordThatTheViewShowsNow) {
  db_.Fresh();
  db_.AddFields(L"", 1, 1);
  db_.AddRecords(L"", 3, 1);
  for (int r = 1; r <= 3; ++r) db_.Set(L"", r, 1, r == 3 ? "y" : "x");
  ASSERT_EQ(db_.Records(L"/f(1)=x"), 2);
  db_.Set(L"", 1, 1, "z");  // stays in the view until that is built anew
  db_.SetType(L"/f(1)=x", 2, 1, "type", "int");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Id(L"", 1, 1), 1);
  EXPECT_EQ(db_.Id(L"", 2, 1), 2);
  EXPECT_EQ(db_.Id(L"", 3, 1), 1);
}

TEST_F(TypePropertyTest, TitleCellsFieldsAndKeyedEntries) {
  db_.SetType(L"", 0, 1, "hint", "name");
  EXPECT_EQ(db_.Id(L"", 0, 1), 2);
  db_.SetType(L"", -2, 1, "hint", "field");
  EXPECT_EQ(db_.Id(L"", -2, 1), 3);
  db_.SetType(L"", -8, 1, "hint", "titles");
  db_.SetType(L"", -9, 1, "hint", "matrices");
  EXPECT_EQ(db_.Type(L"", 0, 1, "hint"), "name");
  EXPECT_EQ(db_.Type(L"", -2, 1, "hint"), "field");
  EXPECT_EQ(db_.Type(L"", -8, 1, "hint"), "titles");
  EXPECT_EQ(db_.Type(L"", -9, 1, "hint"), "matrices");
  EXPECT_EQ(db_.Get(L"/#", 3, 2), "tit");
  EXPECT_EQ(db_.Get(L"/#", 4, 2), "mtx");
  db_.Set(L"", 2, 1, "new");
  EXPECT_EQ(db_.Id(L"", 2, 1), 3) << "a new cell takes its field's type";
  EXPECT_EQ(db_.Type(L"", 2, 1, "hint"), "field");
  db_.CloseAll();
  EXPECT_EQ(test::WalkStructures(db_.Bytes()).Text(), "");
}

TEST_F(TypePropertyTest, WhatIsNotThereIs4AndEmpty) {
  EXPECT_EQ(db_.Type(L"", 1, 1, "unit"), "");
  EXPECT_EQ(db_.Error(), 4);
  db_.SetType(L"", 1, 1, "unit", "km");
  EXPECT_EQ(db_.Type(L"", 1, 1, "colour"), "");
  EXPECT_EQ(db_.Error(), 4);
  EXPECT_EQ(db_.Type(L"", -8, 1, "unit"), "");
  EXPECT_EQ(db_.Error(), 4);
  EXPECT_EQ(db_.Type(L"/#", 1, 1, "unit"), "");
  EXPECT_EQ(db_.Error(), 0) << "a path that ends in # is answered at once";
}

TEST_F(TypePropertyTest, WhatIsRefused) {
  db_.CloseAll();
  const std::string before = db_.Bytes();
  db_.SetType(L"/#", 1, 1, "a", "b");
  EXPECT_EQ(db_.Error(), 54);
  for (const int r : {-1, -3, -7, -10, INT32_MIN}) {
    db_.SetType(L"", r, 1, "a", "b");
    EXPECT_EQ(db_.Error(), 255) << r;
  }
  db_.SetType(L"", 3, 1, "a", "b");
  EXPECT_EQ(db_.Error(), 9);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), before);
}

}  // namespace
}  // namespace orv
