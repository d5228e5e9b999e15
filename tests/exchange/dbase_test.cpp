// dBASE III tables through the members: what is read, what is overwritten in place, and tables
// whose headers lie.
#include <algorithm>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "support/dbase_bytes.h"
#include "support/driver.h"

namespace orv {
namespace {

using test::DbaseBytes;

class DbaseTest : public testing::Test {
 protected:
  void SetUp() override { db_.Use(L"table.dbf"); }

  void Store(const DbaseBytes& table) {
    db_.CloseAll();
    test::WriteBytes(db_.file(), table.bytes());
  }
  /// Two fields and three records.
  static DbaseBytes Towns() {
    DbaseBytes table({{"NAME", 8}, {"NUMBER", 3}});
    table.Add({" Moscow", "1"}).Add({"\x8A\xA8\xA5\xA2 \xF0\xF1", "22"}).Add({"", "333"});
    return table;
  }
  std::string FieldSize(int f) {
    std::wstring path = db_.Path();
    auto field = static_cast<std::int16_t>(f);
    const Value size = db_.engine.dBASEFldSize(path, field);
    return size.Int16() == nullptr ? "none" : std::to_string(*size.Int16());
  }

  test::Driver db_;
};

TEST_F(DbaseTest, ItsCountsNamesWidthsAndCells) {
  Store(Towns());
  EXPECT_EQ(db_.Kind(), 2);
  EXPECT_EQ(db_.Records(), 3);
  EXPECT_EQ(db_.Fields(), 2);
  EXPECT_EQ(db_.Get(L"", 0, 2), "NUMBER");
  EXPECT_EQ(FieldSize(1), "8");
  EXPECT_EQ(FieldSize(2), "3");
  EXPECT_EQ(db_.Get(L"", 1, 1), "Moscow");
  EXPECT_EQ(db_.Get(L"", 2, 1), "\xCA\xE8\xE5\xE2 \xF0\xF1") << "letters of code page 866 as 1251";
  EXPECT_EQ(db_.Get(L"", 3, 1), "");
  EXPECT_EQ(db_.Get(L"", 3, 2), "333");
  EXPECT_EQ(db_.Type(L"", 1, 2, "lenght"), "3") << "spelled so by its hosts";
  EXPECT_EQ(db_.Type(L"", 1, 2, "LENGHT"), "3");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Type(L"", 1, 2, "type"), "");
  EXPECT_EQ(db_.Error(), 4);
}

TEST_F(DbaseTest, ATableMayBeginWithTheDigitZero) {
  std::string bytes = Towns().bytes();
  bytes[0] = '0';
  test::WriteBytes(db_.file(), bytes);
  EXPECT_EQ(db_.Kind(), 2);
  EXPECT_EQ(db_.Get(L"", 1, 1), "Moscow");
}

TEST_F(DbaseTest, ANameOfElevenBytesIsNeitherTrimmedNorConverted) {
  DbaseBytes table({{"\x80"
                     "BCDEFGHIJ ",
                     2},
                    {"\x80 ", 2}});
  Store(table.Add({"a", "b"}));
  EXPECT_EQ(db_.Get(L"", 0, 1),
            "\x80"
            "BCDEFGHIJ ");
  EXPECT_EQ(db_.Get(L"", 0, 2), "\xC0");
}

TEST_F(DbaseTest, ACellIsOverwrittenInPlaceCutOrPadded) {
  Store(Towns());
  const std::string before = Towns().bytes();
  db_.Set(L"", 1, 1, "Novosibirsk");
  db_.Set(L"", 2, 2, "x");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Get(L"", 1, 1), "Novosibi");
  EXPECT_EQ(db_.Get(L"", 2, 2), "x");
  db_.CloseAll();
  std::string expected = before;
  expected.replace(97 + 1, 8, "Novosibi");
  expected.replace(97 + 12 + 1 + 8, 3, "x  ");
  EXPECT_EQ(db_.Bytes(), expected);
}

TEST_F(DbaseTest, WritingOutsideTheTableIs70Or9AndWritesNothing) {
  Store(Towns());
  for (const int r : {0, -2, -9}) {
    db_.Set(L"", r, 1, "x");
    EXPECT_EQ(db_.Error(), 70) << r;
  }
  for (const auto& [r, f] : {std::pair{4, 1}, {1, 3}, {1, 0}, {1, -1}, {1000000, 1}}) {
    db_.Set(L"", r, f, "x");
    EXPECT_EQ(db_.Error(), 9) << r << ", " << f;
  }
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), Towns().bytes());
}

TEST_F(DbaseTest, ARecordThatTheHeaderClaimsAndTheFileLacksReadsEmptyAndIsNotWritten) {
  Store(Towns().ClaimRecords(10));
  EXPECT_EQ(db_.Records(), 10);
  EXPECT_EQ(db_.Get(L"", 9, 1), "");
  EXPECT_EQ(db_.Error(), 0);
  db_.Set(L"", 9, 1, "x");
  EXPECT_EQ(db_.Error(), 9);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes().size(), Towns().bytes().size());
}

TEST_F(DbaseTest, LengthsAreUnsigned) {
  Store(Towns().ClaimHeaderLength(0xFFFF).ClaimRecordLength(0xFFFF));
  EXPECT_EQ(db_.Fields(), 2046);
  EXPECT_EQ(db_.Get(L"", 1, 1), "");
  EXPECT_EQ(db_.Get(L"", 3, 2046), "");
  EXPECT_EQ(FieldSize(2046), "0") << "behind the end of the file";
}

TEST_F(DbaseTest, AHeaderShorterThanItselfHasNoFields) {
  Store(Towns().ClaimHeaderLength(0));
  EXPECT_EQ(db_.Fields(), -1);
  db_.Set(L"", 1, 1, "x");
  EXPECT_EQ(db_.Error(), 9);
  test::WriteBytes(db_.file(), "\x03");
  EXPECT_EQ(db_.Get(L"", 1, 1), "");
  EXPECT_EQ(db_.Get(L"", 0, 1), "");
}

TEST_F(DbaseTest, ViewsReadTheTablesCells) {
  Store(Towns());
  EXPECT_EQ(db_.Records(L"/f(2)=22"), 1);
  EXPECT_EQ(db_.Get(L"/f(2)=22", 1, 2), "22");
  EXPECT_EQ(db_.Records(L"/f(\"name\")=Moscow"), 1);
  EXPECT_EQ(db_.Records(L"/f(1)<>Moscow"), 2);
  EXPECT_EQ(db_.Records(L"/(val(cell(rec,2))>20)"), 2);
  EXPECT_EQ(db_.Records(L"/(rec>1)/f(2)=333"), 1);
  EXPECT_EQ(db_.Records(L"/f(2)=none"), 0);
  EXPECT_EQ(db_.Error(), 0);
}

// A header of a hundred bytes once kept a view, or an export, busy for as long as two thousand
// million records take.
TEST_F(DbaseTest, AClaimOfTwoThousandMillionRecordsKeepsNobodyBusy) {
  constexpr int kBelieved = 1000;
  Store(Towns().ClaimRecords(0x7FFFFFFF));
  EXPECT_EQ(db_.Records(), 0x7FFFFFFF) << "the header's word";
  EXPECT_EQ(db_.Records(L"/f(2)=22"), 1);
  EXPECT_EQ(db_.Records(L"/(rec>3)"), kBelieved - 3);
  db_.SaveAs(L"", L"out.txt", false, 2);
  EXPECT_EQ(db_.Error(), 0);
  const std::string text = test::ReadBytes(db_.folder().Name(L"out.txt"));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), kBelieved);
}

// The same header with two thousand fields once made an export of two gigabytes.
TEST_F(DbaseTest, AClaimOfManyRecordsOfManyFieldsExportsWhatThereIs) {
  Store(Towns().ClaimRecords(0x7FFFFFFF).ClaimHeaderLength(0xFFFF).ClaimRecordLength(0));
  db_.SaveAs(L"", L"copy.orv", false, 1);
  EXPECT_EQ(db_.Error(), 0);
  db_.Use(L"copy.orv");
  EXPECT_EQ(db_.Records(), 1000);
  EXPECT_EQ(db_.Fields(), 2046);
}

TEST_F(DbaseTest, AllRecordsThatTheFileHoldsAreGoneThrough) {
  DbaseBytes table({{"N", 4}});
  for (int r = 1; r <= 2500; ++r) table.Add({std::to_string(r)});
  Store(table);
  EXPECT_EQ(db_.Records(L"/(rec>0)"), 2500);
  EXPECT_EQ(db_.Records(L"/f(1)=2500"), 1);
  Store(table.ClaimRecords(3000));
  EXPECT_EQ(db_.Records(L"/(rec>-1)"), 2500);
}

TEST_F(DbaseTest, WhatChangesStructureIs70) {
  Store(Towns());
  const auto refused = [this](auto call) {
    call();
    return db_.Error() == 70;
  };
  EXPECT_TRUE(refused([&] { db_.AddFields(L"", 1, 1); }));
  EXPECT_TRUE(refused([&] { db_.DeleteField(L"", 1); }));
  EXPECT_TRUE(refused([&] { db_.AddRecords(L"", 1, 1); }));
  EXPECT_TRUE(refused([&] { db_.SetTitle(L"", "x"); }));
  EXPECT_TRUE(refused([&] { db_.SetType(L"", 1, 1, "type", "int"); }));
  EXPECT_TRUE(refused([&] { db_.ReBit(L"", 1, 1, 4); }));
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), Towns().bytes());
}

}  // namespace
}  // namespace orv
