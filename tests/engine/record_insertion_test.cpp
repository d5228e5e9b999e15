// Records inserted at every position of small tables, in every storage style.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/container_bytes.h"
#include "support/structure_walk.h"
#include "support/styled_file.h"

namespace orv {
namespace {

using test::Driver;
namespace styled = test::styled;

/// What a record of each style holds in these tests.
std::vector<std::string> Record(int number) {
  const std::string n = std::to_string(number);
  return {"free " + n, "t" + n, n, "-" + n + "00000", number % 2 == 0 ? "even" : "odd"};
}
const std::vector<std::string> kEmptyRecord = {"", "", "0", "0", ""};

using Table = std::vector<std::vector<std::string>>;

Table ReadTable(Driver& db) {
  Table table;
  for (int r = 1; r <= db.Records(); ++r) {
    table.emplace_back();
    for (int f = 1; f <= styled::kFields; ++f) table.back().push_back(db.Get(L"", r, f));
  }
  return table;
}

void Fill(Driver& db, int records) {
  MakeStyledFile(db);
  db.AddRecords(L"", records, 1);
  for (int r = 1; r <= records; ++r) {
    for (int f = 1; f <= styled::kFields; ++f) {
      db.Set(L"", r, f, Record(r)[static_cast<std::size_t>(f - 1)]);
      ASSERT_EQ(db.Error(), 0) << r << "," << f;
    }
  }
}

void Insert(Table& table, int quantity, int position) {
  const int n = static_cast<int>(table.size());
  // At position n itself nothing moves: the new records follow record n.
  const int at = position < n ? position - 1 : n;
  table.insert(table.begin() + at, static_cast<std::size_t>(quantity), kEmptyRecord);
}

class RecordInsertionTest : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(TablesOf, RecordInsertionTest, testing::Values(0, 1, 2, 3, 5));

TEST_P(RecordInsertionTest, AtEveryPosition) {
  const int n = GetParam();
  for (int position = 1; position <= n + 2; ++position) {
    for (const int quantity : {1, 2, 7}) {
      Driver db;
      Fill(db, n);
      Table expected = ReadTable(db);
      ASSERT_EQ(static_cast<int>(expected.size()), n);
      db.AddRecords(L"", quantity, position);
      ASSERT_EQ(db.Error(), 0);
      Insert(expected, quantity, position);
      ASSERT_EQ(ReadTable(db), expected) << quantity << " at " << position;
      db.CloseAll();
      ASSERT_EQ(ReadTable(db), expected) << "after reopening";
      db.CloseAll();
      ASSERT_EQ(test::WalkStructures(db.Bytes()).Text(), "");
    }
  }
}

TEST_P(RecordInsertionTest, TwiceAndThenWritten) {
  const int n = GetParam();
  for (int position = 1; position <= n + 1; ++position) {
    Driver db;
    Fill(db, n);
    Table expected = ReadTable(db);
    for (const int at : {position, 1}) {
      db.AddRecords(L"", 1, at);
      Insert(expected, 1, at);
    }
    for (int r = 1; r <= n + 2; ++r) {
      for (int f = 1; f <= styled::kFields; ++f) {
        const std::string text = Record(100 + r)[static_cast<std::size_t>(f - 1)];
        db.Set(L"", r, f, text);
        ASSERT_EQ(db.Error(), 0);
        expected[static_cast<std::size_t>(r - 1)][static_cast<std::size_t>(f - 1)] = text;
      }
      ASSERT_EQ(ReadTable(db), expected);
    }
    db.CloseAll();
    ASSERT_EQ(test::WalkStructures(db.Bytes()).Text(), "");
  }
}

class InsertRecordsTest : public testing::Test {
 protected:
  Driver db_;
};

TEST_F(InsertRecordsTest, TwoAtOneOfThreeMoveAllOfThem) {
  Fill(db_, 3);
  db_.AddRecords(L"", 2, 1);
  EXPECT_EQ(ReadTable(db_), (Table{kEmptyRecord, kEmptyRecord, Record(1), Record(2), Record(3)}));
}

TEST_F(InsertRecordsTest, OneAtThreeOfThreeFollowsThem) {
  Fill(db_, 3);
  db_.AddRecords(L"", 1, 3);
  EXPECT_EQ(ReadTable(db_), (Table{Record(1), Record(2), Record(3), kEmptyRecord}));
}

TEST_F(InsertRecordsTest, APositionBelowOneIs255AndChangesNothing) {
  Fill(db_, 2);
  db_.CloseAll();
  const std::string before = db_.Bytes();
  for (const int row : {0, -1, INT32_MIN}) {
    db_.AddRecords(L"", 1, row);
    EXPECT_EQ(db_.Error(), 255);
  }
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), before);
}

TEST_F(InsertRecordsTest, AQuantityBelowOneDoesNothing) {
  Fill(db_, 2);
  db_.CloseAll();
  const std::string before = db_.Bytes();
  for (const int quantity : {0, -1, INT32_MIN}) {
    db_.AddRecords(L"", quantity, 1);
    EXPECT_EQ(db_.Error(), 0);
  }
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), before);
}

TEST_F(InsertRecordsTest, AMatrixWithoutFieldsIs5AndChangesNothing) {
  db_.Fresh();
  db_.AddRecords(L"", 1, 1);
  EXPECT_EQ(db_.Error(), 5);
  EXPECT_EQ(db_.Records(), 0);
  db_.AddFields(L"", 1, 1);
  db_.DeleteField(L"", 1);
  db_.AddRecords(L"", 1, 1);
  EXPECT_EQ(db_.Error(), 5);
  EXPECT_EQ(db_.Records(), 0);
}

TEST_F(InsertRecordsTest, MoreThanAFileHoldsIs6AndChangesNoRecord) {
  Fill(db_, 2);
  for (const int quantity : {INT32_MAX, INT32_MAX - 2, 1000000000}) {
    db_.AddRecords(L"", quantity, 1);
    EXPECT_EQ(db_.Error(), 6) << quantity;
    EXPECT_EQ(ReadTable(db_), (Table{Record(1), Record(2)}));
  }
}

TEST_F(InsertRecordsTest, AMatrixOf32767FieldsTakesRecordsToo) {
  db_.Fresh();
  db_.AddFields(L"", 32767, 1);
  ASSERT_EQ(db_.Fields(), 32767);
  db_.AddRecords(L"", 1, 1);
  EXPECT_EQ(db_.Error(), 0);
  db_.Set(L"", 1, 32767, "last");
  EXPECT_EQ(db_.Get(L"", 1, 32767), "last");
  db_.AddFields(L"", 1, 1);
  EXPECT_EQ(db_.Error(), 6);
  EXPECT_EQ(db_.Fields(), 32767);
}

TEST_F(InsertRecordsTest, AFieldAddedLaterReadsEmptyAndIsGivenRoomByTheFirstWriting) {
  db_.Fresh();
  db_.AddFields(L"", 1, 1);
  db_.AddRecords(L"", 4, 1);
  db_.Set(L"", 4, 1, "x");
  db_.AddFields(L"", 1, 2);
  EXPECT_EQ(db_.Get(L"", 4, 2), "");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Get(L"", 5, 2), "");
  EXPECT_EQ(db_.Error(), 9);
  db_.Set(L"", 3, 2, "late");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Get(L"", 3, 2), "late");
  EXPECT_EQ(db_.Get(L"", 4, 2), "");
  EXPECT_EQ(db_.Get(L"", 4, 1), "x");
}

TEST_F(InsertRecordsTest, AnInsertionAllocatesTheDataOfALateFieldWithNothingToMove) {
  db_.Fresh();
  db_.AddFields(L"", 1, 1);
  db_.AddRecords(L"", 5, 1);
  db_.Set(L"", 5, 1, "x");
  db_.AddFields(L"", 1, 2);
  db_.AddRecords(L"", 1, 2);
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Get(L"", 6, 1), "x");
  for (int r = 1; r <= 6; ++r) EXPECT_EQ(db_.Get(L"", r, 2), "");
  db_.Set(L"", 6, 2, "late");
  EXPECT_EQ(db_.Get(L"", 6, 2), "late");
  db_.AddRecords(L"", 1, 1);
  EXPECT_EQ(db_.Get(L"", 7, 2), "late");
  db_.CloseAll();
  EXPECT_EQ(test::WalkStructures(db_.Bytes()).Text(), "");
}

TEST_F(InsertRecordsTest, RecordsWithNestedMatricesMoveWithThem) {
  db_.Fresh();
  db_.AddFields(L"", 1, 1);
  db_.AddRecords(L"", 3, 1);
  db_.Put(L"", 2, 1, "nested");
  db_.AddFields(L"/[2,1]", 1, 1);
  db_.AddRecords(L"", 2, 1);
  EXPECT_EQ(db_.Title(L"/[4,1]"), "nested");
  EXPECT_EQ(db_.Fields(L"/[4,1]"), 1);
  EXPECT_EQ(db_.Title(L"/[2,1]"), "");
  EXPECT_EQ(db_.Error(), 19);
}

TEST_F(InsertRecordsTest, ADbaseTableIs70) {
  db_.Use(L"t.dbf");
  test::WriteBytes(db_.file(), std::string(200, '\x03'));
  db_.AddRecords(L"", 1, 1);
  EXPECT_EQ(db_.Error(), 70);
}

TEST_F(InsertRecordsTest, NoLocationIs255) {
  db_.Fresh();
  db_.AddRecords(L"/#", 1, 1);
  EXPECT_EQ(db_.Error(), 255);
}

TEST_F(InsertRecordsTest, ACountThatDamageMadeHugeGrowsNothing) {
  Fill(db_, 2);
  db_.CloseAll();
  test::ContainerBytes file(db_.Bytes());
  file.PutInt32(file.FieldTable(file.Root()), 2000000000);
  test::WriteBytes(db_.file(), file.bytes());
  db_.AddRecords(L"", 1, 1);
  EXPECT_EQ(db_.Error(), 9);
  db_.Set(L"", 1000000, 1, "x");
  EXPECT_EQ(db_.Error(), 9);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes().size(), file.bytes().size());
}

}  // namespace
}  // namespace orv
