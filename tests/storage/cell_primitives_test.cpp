#include "storage/cell_primitives.h"

#include <gtest/gtest.h>

#include "storage/cell_code.h"
#include "storage/chain_array.h"
#include "support/hex_text.h"
#include "support/raises.h"
#include "support/temp_file.h"

namespace orv::storage {
namespace {

using test::FromHex;
using test::HexDump;
using test::TempFile;

constexpr std::int32_t kSlot = 2;

// A pointer slot at 2, then the cells that a test appends.
class FreeCellTest : public testing::Test {
 protected:
  std::string Read(std::int32_t p) {
    std::string buffer;
    code_ = 77;
    return std::string(GetCell(p, *file_, code_, buffer));
  }
  std::int32_t Put(std::int32_t p, std::int16_t tp, std::string_view text) {
    PutCell(p, tp, text, *file_, kSlot);
    code_ = tp;
    return p;
  }

  TempFile file_{std::string("x\0\0\0\0", 5)};
  std::int16_t code_ = 0;
};

TEST_F(FreeCellTest, ANewCellIsAppendedAndItsSlotWritten) {
  const std::int32_t cell = Put(0, 0, "abc");
  EXPECT_EQ(cell, 6);
  EXPECT_EQ(code_, 1);
  EXPECT_EQ(HexDump(file_.Bytes()),
            HexDump(FromHex("\"x\"  06 00 00 00  01 00  03 \"abc\" 00 00 00 00")));
  EXPECT_EQ(Read(cell), "abc");
  EXPECT_EQ(code_, 1);
}

TEST_F(FreeCellTest, FromTwoHundredFiftySixBytesOnANewCellIsLong) {
  EXPECT_EQ(Read(Put(0, 0, std::string(255, 'a'))), std::string(255, 'a'));
  EXPECT_EQ(code_, 1);
  EXPECT_EQ(Read(Put(0, 0, std::string(256, 'a'))), std::string(256, 'a'));
  EXPECT_EQ(code_, 16381);
}

TEST_F(FreeCellTest, ANewCellTakesTheCodeThatIsGiven) {
  const std::int32_t shortCell = Put(0, 7, "abc");
  EXPECT_EQ(file_->Int16At(shortCell), 7);
  const std::int32_t longCell = Put(0, 16380 + 7, "abc");
  EXPECT_EQ(HexDump(file_->View(longCell, 100)),
            HexDump(FromHex("03 40  03 00 00 00 \"abc\" 00 00 00 00")));
  EXPECT_EQ(file_->Int32At(kSlot), longCell);
}

TEST_F(FreeCellTest, ALongTextForANewShortCellMakesItAPlainLongOne) {
  const std::int32_t cell = Put(0, 7, std::string(256, 'a'));
  EXPECT_EQ(code_, 16381);
  EXPECT_EQ(file_->Int32At(kSlot), cell);
  EXPECT_EQ(Read(cell), std::string(256, 'a'));
  EXPECT_EQ(code_, 16381);
}

TEST_F(FreeCellTest, OverwritingKeepsTheCellAndItsSlot) {
  const std::int32_t cell = Put(0, 0, "abcdef");
  file_->WriteInt32(kSlot, 99);
  EXPECT_EQ(Put(cell, 0, "xyz"), cell);
  EXPECT_EQ(file_->Int32At(kSlot), 99) << "a rewriting leaves the slot alone";
  EXPECT_EQ(Read(cell), "xyz");
  EXPECT_EQ(file_->ByteAt(cell + 2), 3) << "the piece is shorter now";
  const std::int64_t end = file_->Length() + 1;
  Put(cell, 0, "abcdef");
  EXPECT_EQ(file_->Int32At(cell + 6), end) << "and the longer text spills to the end of the file";
  EXPECT_EQ(Read(cell), "abcdef");
}

TEST_F(FreeCellTest, OverwritingWithACodeReplacesIt) {
  const std::int32_t cell = Put(0, 0, "abc");
  Put(cell, 9, "xyz");
  EXPECT_EQ(Read(cell), "xyz");
  EXPECT_EQ(code_, 9);
}

TEST_F(FreeCellTest, ALongTextForAShortCellIsSwitchedInPlace) {
  const std::int32_t cell = Put(0, 0, "abc");
  const auto oldEnd = static_cast<std::int32_t>(file_->Length() + 1);
  const std::string text(300, 't');
  EXPECT_EQ(Put(cell, 0, text), cell);
  EXPECT_EQ(code_, 16381);
  EXPECT_EQ(file_->Int16At(cell), 16381);
  EXPECT_EQ(file_->Int32At(cell + 2), 300);
  EXPECT_EQ(file_->View(cell + 6, 300), text);
  EXPECT_EQ(file_->Int32At(cell + 306), 0);
  EXPECT_EQ(file_->Int32At(kSlot), oldEnd) << "the end of the file before these writes";
}

TEST_F(FreeCellTest, ACellThatHoldsAMatrixShowsAndTakesItsTitle) {
  // Header at 6, its title at 22.
  file_->Write(6, FromHex("ff ff  16 00 00 00  01 00  00*8  05 00 00 00 \"title\" 00 00 00 00"));
  EXPECT_EQ(Read(6), "title");
  EXPECT_EQ(code_, -1);
  Put(6, 0, std::string(400, 'n'));
  EXPECT_EQ(Read(6), std::string(400, 'n'));
  EXPECT_EQ(code_, -1);
  EXPECT_EQ(file_->Int16At(12), 1) << "the header is left alone";
}

TEST_F(FreeCellTest, PositionsWithoutACellReadEmptyAndLeaveTheCode) {
  Put(0, 0, "abc");
  for (const std::int32_t p : {0, -1, INT32_MIN, INT32_MAX, 17, 1000}) {
    EXPECT_EQ(Read(p), "") << p;
    EXPECT_EQ(code_, 77) << p;
  }
}

TEST_F(FreeCellTest, WritingOutsideTheFileRaises9) {
  const std::string before = file_.Bytes();
  EXPECT_RAISES(9, Put(1000, 0, "abc"));
  EXPECT_RAISES(9, Put(-1, 5, "abc"));
  EXPECT_EQ(file_.Bytes(), before);
}

TEST(CellPositionTest, ThroughTheFieldsData) {
  // A descriptor at 2 whose data at 6 has two entries.
  const TempFile file(
      FromHex("\"x\"  06 00 00 00  02 00 00 00  00 00 00 00  63 00 00 00  00 00 00 00"));
  ErrorCode error;
  std::int32_t slot = 0;
  EXPECT_EQ(GetCellPos(2, 2, *file, slot, error), 99);
  EXPECT_EQ(slot, 14);
  EXPECT_EQ(GetCellPos(2, 1, *file, slot, error), 0);
  EXPECT_EQ(slot, 10);
  EXPECT_RAISES(9, GetCellPos(2, 3, *file, slot, error));
  EXPECT_RAISES(9, GetCellPos(2, 0, *file, slot, error));
  EXPECT_FALSE(error.IsSet());
  EXPECT_EQ(GetCellPos(0, 1, *file, slot, error), 0);
  EXPECT_EQ(error.value(), 255);
}

TEST(CellCodeTest, EveryTypeFormAndFlagSurvives) {
  for (int type = 1; type <= 16379; ++type) {
    for (const bool longForm : {false, true}) {
      for (const bool matrix : {false, true}) {
        const std::int16_t word =
            EncodeCellCode({static_cast<std::int16_t>(type), longForm, matrix});
        const CellCode code = DecodeCellCode(word);
        ASSERT_EQ(code.type, type);
        ASSERT_EQ(code.longForm, longForm);
        ASSERT_EQ(code.matrix, matrix);
        ASSERT_EQ(LengthBytes(word), longForm || matrix ? 4 : 1);
      }
    }
  }
}

TEST(CellCodeTest, KnownWords) {
  EXPECT_EQ(EncodeCellCode({0, false, false}), 1) << "type 0 is stored as 1";
  EXPECT_EQ(EncodeCellCode({1, true, false}), 16381);
  EXPECT_EQ(EncodeCellCode({1, false, true}), -1);
  EXPECT_EQ(EncodeCellCode({16379, true, true}), -32759);
  EXPECT_EQ(LengthBytes(0), 1);
  EXPECT_EQ(LengthBytes(16379), 1);
  EXPECT_EQ(LengthBytes(16380), 4);
  EXPECT_EQ(LengthBytes(INT16_MIN), 4);
}

/// A block of entries of `width` bytes at position 2.
class FixedCellTest : public testing::Test {
 protected:
  static TempFile Block(int width) {
    return TempFile("x" + FromHex("02 00 00 00") +
                    std::string(static_cast<std::size_t>(2 * width), '.') + std::string(4, '\0'));
  }
  static std::string Written(int width, std::string_view value, std::string_view type) {
    TempFile file = Block(width);
    const auto size = static_cast<std::int16_t>(width);
    SetFixedData(2, 2, *file, size, value, type);
    EXPECT_EQ(file->View(6, width), std::string(static_cast<std::size_t>(width), '.'))
        << "the neighbour";
    EXPECT_EQ(file->Int32At(6 + 2 * width), 0) << "the pointer behind";
    return GetFixedData(2, 2, *file, size, type);
  }
};

TEST_F(FixedCellTest, TextsAreCutPaddedAndTrimmed) {
  EXPECT_EQ(Written(5, "ab", ""), "ab");
  EXPECT_EQ(Written(5, "abcdefg", ""), "abcde");
  EXPECT_EQ(Written(5, " ab ", ""), "ab");
  EXPECT_EQ(Written(5, "", "string"), "");
  TempFile file = Block(5);
  SetFixedData(1, 2, *file, 5, "ab", "");
  EXPECT_EQ(file->View(6, 5), "ab   ");
}

TEST_F(FixedCellTest, IntegersOfTwoBytes) {
  EXPECT_EQ(Written(2, "32767", "int"), "32767");
  EXPECT_EQ(Written(2, "-32768", "int"), "-32768");
  EXPECT_EQ(Written(2, "40000", "int"), "-27860");
  EXPECT_EQ(Written(2, "32768", "int"), "-27860");
  EXPECT_EQ(Written(2, "2.5", "int"), "2");
  EXPECT_EQ(Written(2, "3.5", "int"), "4");
  EXPECT_EQ(Written(2, "12 apples", "int"), "12");
  EXPECT_EQ(Written(2, "apples", "int"), "0");
}

TEST_F(FixedCellTest, IntegersOfFourBytes) {
  EXPECT_EQ(Written(4, "2147483647", "int"), "2147483647");
  EXPECT_EQ(Written(4, "-2147483648", "int"), "-2147483648");
  EXPECT_EQ(Written(4, "40000", "int"), "40000");
}

TEST_F(FixedCellTest, AnIntegerOfOneByteIsWrittenAsACharacterAndReadAsANumber) {
  EXPECT_EQ(Written(1, "7", "int"), "55");
  EXPECT_EQ(Written(1, "", "int"), "32");
  EXPECT_EQ(Written(1, "\xFF", "int"), "255");
}

TEST_F(FixedCellTest, IntegersOfOtherSizesAreTexts) {
  EXPECT_EQ(Written(3, "123456", "int"), "123");
  EXPECT_EQ(Written(8, "12", "int"), "12");
}

TEST_F(FixedCellTest, OnlyTheTypeIntIsAnInteger) {
  EXPECT_EQ(Written(4, "12", "integer"), "12");
  EXPECT_EQ(Written(4, "12", "INT"), "12");
}

TEST_F(FixedCellTest, NumbersOutsideTheirTypeRaise6AndWriteNothing) {
  for (const auto* number : {"2147483648", "-2147483649", "1e300", "-1e300"}) {
    TempFile file = Block(4);
    const std::string before = file.Bytes();
    EXPECT_RAISES(6, SetFixedData(1, 2, *file, 4, number, "int")) << number;
    EXPECT_EQ(file.Bytes(), before);
  }
  TempFile file = Block(2);
  EXPECT_RAISES(6, SetFixedData(1, 2, *file, 2, "-32769", "int"));
}

TEST_F(FixedCellTest, RecordsBeyondTheBlockRaise9) {
  TempFile file = Block(4);
  EXPECT_RAISES(9, GetFixedData(3, 2, *file, 4, ""));
  EXPECT_RAISES(9, SetFixedData(3, 2, *file, 4, "x", ""));
  EXPECT_RAISES(9, GetFixedData(0, 2, *file, 4, ""));
}

TEST_F(FixedCellTest, RoomIsMadeAtTheEndOfTheChain) {
  TempFile file = Block(3);
  const auto end = static_cast<std::int32_t>(file->Length() + 1);
  AddFixedRecords(3, 2, 4, *file, 3);
  EXPECT_EQ(file->Int32At(end), 4);
  EXPECT_EQ(ChainLength(*file, 2, 3), 6);
  SetFixedData(6, 2, *file, 3, "new", "");
  EXPECT_EQ(GetFixedData(6, 2, *file, 3, ""), "new");
  EXPECT_EQ(GetFixedData(1, 2, *file, 3, ""), "...");
}

}  // namespace
}  // namespace orv::storage
