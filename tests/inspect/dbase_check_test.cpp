// Damaged dBASE III tables.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspecting.h"
#include "support/container_bytes.h"
#include "support/real_data.h"

namespace orv {
namespace {

using inspect::Damage;
using test::ContainerBytes;
using testing::HasSubstr;

/// Two fields of 3 and 5 characters, three records.
std::string Table() {
  const auto field = [](const std::string& name, char width) {
    std::string bytes = name;
    bytes.resize(11, '\0');
    bytes += "C" + std::string(4, '\0') + width;
    bytes.resize(32, '\0');
    return bytes;
  };
  std::string table("\x03\x7e\x01\x01\x03\0\0\0\x61\0\x09\0", 12);
  table.resize(32, '\0');
  table += field("CODE", 3) + field("NAME", 5) + "\r";
  return table + " 001one  *002two   003three\x1a";
}

class DbaseCheckTest : public testing::Test {
 protected:
  /// The one finding's kind and words.
  void ExpectOnly(Damage damage, const std::string& what) const {
    const inspect::Inspection inspection = test::InspectBytes(table_.bytes());
    ASSERT_EQ(inspection.findings.listed().size(), 1U) << test::FindingText(inspection);
    const inspect::Finding& finding = inspection.findings.listed().front();
    EXPECT_EQ(inspect::DamageName(finding.damage), inspect::DamageName(damage));
    EXPECT_THAT(finding.what, HasSubstr(what));
  }

  ContainerBytes table_{Table()};
};

TEST_F(DbaseCheckTest, AWholeTableIsClean) {
  const inspect::Inspection inspection = test::InspectBytes(table_.bytes());
  EXPECT_EQ(inspection.kind, inspect::FileKind::kDbase);
  EXPECT_EQ(test::FindingText(inspection), "");
  EXPECT_EQ(inspection.fields, 2);
  EXPECT_EQ(inspection.records, 3);
  EXPECT_EQ(inspection.cells, 6);
  EXPECT_EQ(inspection.DeadBytes(), 0);
}

TEST_F(DbaseCheckTest, TheEndMarkMayBeMissing) {
  const std::string cut = table_.bytes().substr(0, table_.bytes().size() - 1);
  EXPECT_EQ(test::FindingText(test::InspectBytes(cut)), "");
}

TEST_F(DbaseCheckTest, ACutFile) {
  table_ = ContainerBytes(table_.bytes().substr(0, 97 + 9 + 4));
  ExpectOnly(Damage::kTableRecords, "3 records are counted, the file ends behind 1");
}

TEST_F(DbaseCheckTest, ACountThatIsTooSmallOrNegative) {
  table_.PutInt32(5, 1);
  ExpectOnly(Damage::kTableRecords, "2 more seem to stand behind the last one");
  table_.PutInt32(5, -1);
  ExpectOnly(Damage::kTableHeader, "the record count is -1");
}

TEST_F(DbaseCheckTest, TheHeadersLength) {
  table_.PutInt16(9, 1000);
  ExpectOnly(Damage::kTableHeader, "the header's length is 1000 bytes");
  table_.PutInt16(9, 20);
  ExpectOnly(Damage::kTableHeader, "the header's length is 20 bytes");
}

TEST_F(DbaseCheckTest, TheTerminator) {
  table_.PutByte(97, 'x');
  ExpectOnly(Damage::kTableHeader, "no terminator");
}

TEST_F(DbaseCheckTest, TheRecordSizeAgainstTheWidths) {
  table_.PutByte(33 + 32 + 16, 6);
  ExpectOnly(Damage::kTableHeader, "9 bytes, its flag and fields take 10");
}

TEST_F(DbaseCheckTest, FieldDescriptors) {
  table_.PutByte(33, 0);
  ExpectOnly(Damage::kTableField, "no name");
  table_ = ContainerBytes(Table());
  table_.PutByte(33 + 11, 7);
  ExpectOnly(Damage::kTableField, "the byte 7");
  table_ = ContainerBytes(Table());
  table_.PutByte(33 + 16, 0);
  table_.PutByte(33 + 32 + 16, 8);  // so that the record's size is as before
  ExpectOnly(Damage::kTableField, "the field's width is 0");
}

TEST_F(DbaseCheckTest, DeletionFlags) {
  table_.PutByte(98 + 9, 'x');
  ExpectOnly(Damage::kTableRecords, "neither a blank nor");
  table_.PutByte(98 + 18, 'x');
  ExpectOnly(Damage::kTableRecords, "so do 2 records in all");
}

TEST_F(DbaseCheckTest, AFileCutAtEveryLengthIsDamagedOrMissesItsMark) {
  for (std::size_t length = 1; length + 1 < table_.bytes().size(); ++length) {
    EXPECT_FALSE(test::InspectBytes(table_.bytes().substr(0, length)).IsClean()) << length;
  }
}

TEST(RealTableCheckTest, TablesOfOtherProgramsAreClean) {
  int found = 0;
  for (const auto* name : {"ddr__tl_2019_01_place.dbf", "infused__dbase_03.dbf",
                           "infused__dbase_30.dbf", "javadbf__sids.dbf", "yortus__PYACFL.DBF"}) {
    const auto source = test::RealData(name);
    if (!source) continue;
    ++found;
    const inspect::Inspection inspection = test::InspectBytes(test::ReadBytes(source->wstring()));
    EXPECT_EQ(test::FindingText(inspection), "") << name;
    EXPECT_GT(inspection.records, 0) << name;
  }
  if (found == 0) GTEST_SKIP() << "THE REAL TABLES ARE NOT HERE";
}

}  // namespace
}  // namespace orv
