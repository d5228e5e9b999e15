// The container format, byte for byte.
#include "storage/matrix.h"

#include <gtest/gtest.h>

#include "storage/cell_primitives.h"
#include "storage/chain_array.h"
#include "storage/chained_text.h"
#include "storage/layout.h"
#include "support/hex_text.h"
#include "support/raises.h"
#include "support/temp_file.h"

namespace orv::storage {
namespace {

using test::FromHex;
using test::HexDump;
using test::TempFile;

constexpr std::int32_t kRoot = 52;

// A new file titled "Towns".
constexpr std::string_view kNewFile = R"(
  01 00 01                        # 1
  34 00 00 00                     # 4: the root matrix is at 52
  "Pellox"                        # 8
  " v1.0 table engine, tables in tables"  # 14
  00 00                           # 50: the gap
  ff ff                           # 52: cell code -1
  44 00 00 00                     # 54: the title is at 68
  01 00                           # 58: header word
  00 00 00 00                     # 60: no property matrix
  00 00 00 00                     # 64: no field table
  05 00 00 00 "Towns" 00 00 00 00 # 68: title
)";

TEST(ContainerFormatTest, ANewFile) {
  TempFile file;
  CreateContainer(*file, "Towns");
  EXPECT_EQ(HexDump(file.Bytes()), HexDump(FromHex(kNewFile)));
  EXPECT_TRUE(CheckOwnFormat(*file));
  EXPECT_FALSE(CheckDbaseFormat(*file));
}

TEST(ContainerFormatTest, ANewFileIs75BytesAndTheTitle) {
  for (const std::size_t length : {0U, 1U, 255U, 256U, 70000U}) {
    TempFile file;
    CreateContainer(*file, std::string(length, 't'));
    EXPECT_EQ(file->Length(), static_cast<std::int64_t>(75 + length));
    EXPECT_EQ(file->Int32At(4), kRoot);
    EXPECT_EQ(file->Int16At(52), -1);
  }
}

TEST(ContainerFormatTest, AnEmptyTitleStillHasAPiece) {
  TempFile file;
  CreateContainer(*file, "");
  EXPECT_EQ(HexDump(file->View(68, 100)), HexDump(FromHex("00 00 00 00  00 00 00 00")));
}

TEST(ContainerFormatTest, AFieldTableOfThreeFields) {
  TempFile file(FromHex(kNewFile));
  const auto end = static_cast<std::int32_t>(file->Length() + 1);
  CreateFieldTable(*file, kRoot, 3);
  EXPECT_EQ(file->Int32At(kRoot + 12), end);
  EXPECT_EQ(HexDump(file->View(end, 100)), HexDump(FromHex(R"(
      00 00 00 00            # records
      03 00                  # fields
      03 00 00 00  00*12     # three empty slots
      00 00 00 00            # no next block
  )")));
  EXPECT_EQ(ContainerFieldCount(*file, kRoot), 3);
  EXPECT_EQ(ContainerRecordCount(*file, kRoot), 0);
}

TEST(ContainerFormatTest, ANewDescriptorIsTwentyTwoBytes) {
  TempFile file(FromHex(kNewFile));
  ErrorCode error;
  CreateFieldTable(*file, kRoot, 2);
  const auto end = static_cast<std::int32_t>(file->Length() + 1);
  CreateFieldDescriptor(*file, kRoot, 2, error);
  EXPECT_FALSE(error.IsSet());
  EXPECT_EQ(HexDump(file->View(end, 100)), HexDump(FromHex(R"(
      00 00 00 00            # no data
      00 00 00 00
      01                     # style: free
      00 00                  # cell size
      00 00                  # data type
      01 00                  # cell code of the field
      01 00                  # cell code of the title cell
      00  00 00 00 00        # an empty name
  )")));
  EXPECT_EQ(FindFieldDescriptor(*file, kRoot, 2), end);
  EXPECT_EQ(FindFieldDescriptor(*file, kRoot, 1), 0);
}

TEST(ContainerFormatTest, AnExistingDescriptorIsWrittenAnewInPlace) {
  TempFile file(FromHex(kNewFile));
  ErrorCode error;
  CreateFieldTable(*file, kRoot, 1);
  CreateFieldDescriptor(*file, kRoot, 1, error);
  const std::string fresh = file.Bytes();
  const std::int32_t descriptor = FindFieldDescriptor(*file, kRoot, 1);
  file->WriteInt32(descriptor, 77);
  file->WriteByte(descriptor + 8, 5);
  file->WriteByte(descriptor + 17, 9);
  CreateFieldDescriptor(*file, kRoot, 1, error);
  EXPECT_EQ(HexDump(file.Bytes()), HexDump(fresh));
}

TEST(ContainerFormatTest, DescriptorsThatCannotBe) {
  TempFile file(FromHex(kNewFile));
  ErrorCode error;
  EXPECT_RAISES(5, CreateFieldDescriptor(*file, kRoot, 1, error)) << "no field table";
  CreateFieldTable(*file, kRoot, 1);
  const std::string before = file.Bytes();
  CreateFieldDescriptor(*file, kRoot, 0, error);
  EXPECT_EQ(error.value(), 255);
  EXPECT_RAISES(9, CreateFieldDescriptor(*file, kRoot, 2, error));
  EXPECT_RAISES(9, CreateFieldDescriptor(*file, kRoot, -1, error));
  EXPECT_EQ(HexDump(file.Bytes()), HexDump(before));
}

TEST(ContainerFormatTest, ANestedHeaderIsTheCellThatHoldsIt) {
  TempFile file(FromHex(kNewFile));
  const auto at = static_cast<std::int32_t>(file->Length() + 1);
  CreateMatrixHeader(*file, at, -16381, "Streets", 1);
  const auto title = static_cast<char>(at + 16);
  std::string expected = FromHex("03 c0");
  expected += title;
  expected +=
      FromHex("00 00 00  01 00  00 00 00 00  00 00 00 00  07 00 00 00 \"Streets\" 00 00 00 00");
  EXPECT_EQ(HexDump(file->View(at, 100)), HexDump(expected));
  std::int16_t code = 0;
  std::string buffer;
  EXPECT_EQ(GetCell(at, *file, code, buffer), "Streets");
  EXPECT_EQ(code, -16381);
}

TEST(ContainerFormatTest, RecordCounts) {
  TempFile file(FromHex(kNewFile));
  EXPECT_EQ(ContainerRecordCount(*file, 0), -1);
  EXPECT_EQ(ContainerRecordCount(*file, kRoot), 0);
  EXPECT_RAISES(9, SetRecordCount(*file, kRoot, 5));
  CreateFieldTable(*file, kRoot, 1);
  SetRecordCount(*file, kRoot, 70000);
  EXPECT_EQ(ContainerRecordCount(*file, kRoot), 70000);
  EXPECT_EQ(ContainerFieldCount(*file, kRoot), 1);
}

TEST(ContainerFormatTest, AMatrixWithoutFieldTableHasNoFields) {
  TempFile file(FromHex(kNewFile));
  EXPECT_EQ(ContainerFieldCount(*file, kRoot), 0);
  EXPECT_RAISES(9, FieldChain(*file, kRoot));
  EXPECT_RAISES(9, FindFieldDescriptor(*file, kRoot, 1));
}

TEST(ContainerFormatTest, AFieldTablePointerOutsideTheFileIsDamage) {
  TempFile file(FromHex(kNewFile));
  for (const std::int32_t table : {-1, INT32_MIN, INT32_MAX, 77, 81}) {
    file->WriteInt32(kRoot + 12, table);
    EXPECT_RAISES(9, FindFieldDescriptor(*file, kRoot, 1)) << table;
  }
}

struct FormatCase {
  std::string_view bytes;
  bool own;
  bool dbase;
};

TEST(FormatDetectionTest, TheFirstByteAndTheMagicWordDecide) {
  const FormatCase cases[] = {
      {"", false, false},
      {"01", false, false},
      {"03", false, true},
      {"30", false, true},
      {"\"0 is how this plain text begins\"", false, true},
      {"83", false, false},
      {"01 00 01 34 00 00 00 \"Pellox\"", true, false},
      {"01 ff ff ff ff ff ff \"Pellox\"", true, false},
      {"02 00 01 34 00 00 00 \"Pellox\"", false, false},
      {"03 00 01 34 00 00 00 \"Pellox\"", false, true},
      {"01 00 01 34 00 00 00 \"pellox\"", false, false},
      {"01 00 01 34 00 00 00 \"Pello\"", false, false},
  };
  for (const FormatCase& c : cases) {
    const TempFile file(FromHex(c.bytes));
    EXPECT_EQ(CheckOwnFormat(*file), c.own) << c.bytes;
    EXPECT_EQ(CheckDbaseFormat(*file), c.dbase) << c.bytes;
  }
}

}  // namespace
}  // namespace orv::storage
