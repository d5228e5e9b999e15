#include "storage/chained_text.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/hex_text.h"
#include "support/raises.h"
#include "support/temp_file.h"

namespace orv::storage {
namespace {

using test::FromHex;
using test::HexDump;
using test::TempFile;

std::string Read(const TempFile& file, std::int32_t position, int L) {
  std::string buffer;
  return std::string(ReadChainedText(*file, position, L, buffer));
}

class LengthWidthTest : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(AllWidths, LengthWidthTest, testing::Values(1, 2, 4));

TEST_P(LengthWidthTest, PositionZeroAppendsOnePieceAtTheEnd) {
  const int L = GetParam();
  TempFile file("x");
  EXPECT_EQ(WriteChainedText(*file, 0, "abc", L), 2);
  std::string expected = "x\x03";
  expected.append(static_cast<std::size_t>(L - 1), '\0').append("abc").append(4, '\0');
  EXPECT_EQ(HexDump(file.Bytes()), HexDump(expected));
  EXPECT_EQ(Read(file, 2, L), "abc");
}

TEST_P(LengthWidthTest, AShorterTextShrinksThePieceAndAbandonsItsTail) {
  const int L = GetParam();
  TempFile file("x");
  WriteChainedText(*file, 0, "abcdefghij", L);
  const std::string before = file.Bytes();
  EXPECT_EQ(WriteChainedText(*file, 2, "XYZ", L), 2);
  EXPECT_EQ(Read(file, 2, L), "XYZ");
  std::string expected = before;
  expected[1] = 3;
  const auto text = static_cast<std::size_t>(1 + L);
  expected.replace(text, 7, std::string("XYZ\0\0\0\0", 7));
  EXPECT_EQ(HexDump(file.Bytes()), HexDump(expected))
      << "the length is not changed, the tail stays";
}

TEST_P(LengthWidthTest, TheEarlierLongerTextThenSpillsIntoANewPieceAtTheEnd) {
  const int L = GetParam();
  TempFile file("x");
  WriteChainedText(*file, 0, "abcdefghij", L);
  WriteChainedText(*file, 2, "XYZ", L);
  const std::int64_t end = file->Length() + 1;
  WriteChainedText(*file, 2, "abcdefghij", L);
  EXPECT_EQ(Read(file, 2, L), "abcdefghij");
  EXPECT_EQ(file->View(2 + L, 3), "abc");
  EXPECT_EQ(file->Int32At(2 + L + 3), end);
  EXPECT_EQ(file->View(end + L, 7), "defghij");
  EXPECT_EQ(file->Length(), end - 1 + L + 7 + 4);
}

TEST_P(LengthWidthTest, ATextOfTheSameLengthStaysInPlace) {
  const int L = GetParam();
  TempFile file("x");
  WriteChainedText(*file, 0, "abc", L);
  const std::int64_t length = file->Length();
  WriteChainedText(*file, 2, "XYZ", L);
  EXPECT_EQ(Read(file, 2, L), "XYZ");
  EXPECT_EQ(file->Length(), length);
}

TEST_P(LengthWidthTest, AnEmptyTextIsAPieceOfItsOwn) {
  const int L = GetParam();
  TempFile file("x");
  WriteChainedText(*file, 0, "", L);
  EXPECT_EQ(file.Bytes(), "x" + std::string(static_cast<std::size_t>(L) + 4, '\0'));
  EXPECT_EQ(Read(file, 2, L), "");
  WriteChainedText(*file, 2, "now", L);
  EXPECT_EQ(Read(file, 2, L), "now");
}

TEST_P(LengthWidthTest, APositionBehindTheEndWritesANewTextThere) {
  const int L = GetParam();
  TempFile file("x");
  EXPECT_EQ(WriteChainedText(*file, 5, "abc", L), 5);
  EXPECT_EQ(file->View(1, 4), std::string("x\0\0\0", 4));
  EXPECT_EQ(Read(file, 5, L), "abc");
}

TEST_P(LengthWidthTest, PositionsBelowTwoReadAsTheEmptyText) {
  const TempFile file(std::string("\x01\x00\x00\x00yz\x00\x00\x00\x00\x00\x00", 12));
  for (const std::int32_t position : {1, 0, -1, INT32_MIN}) {
    EXPECT_EQ(Read(file, position, GetParam()), "");
  }
}

TEST_P(LengthWidthTest, EveryByteValueSurvives) {
  std::string all;
  for (int byte = 0; byte < 255; ++byte) all.push_back(static_cast<char>(byte + 1));
  all[10] = '\0';
  TempFile file("x");
  WriteChainedText(*file, 0, all, GetParam());
  EXPECT_EQ(Read(file, 2, GetParam()), all);
}

TEST_P(LengthWidthTest, TextsOfManyLengthsOverOneAnotherKeepTheirNeighbours) {
  const int L = GetParam();
  const std::vector<std::size_t> lengths = {0,   1,   2,     254,   255,   256,
                                            257, 300, 32767, 32768, 65536, 70000};
  for (const std::size_t first : lengths) {
    for (const std::size_t second : lengths) {
      TempFile file("x");
      const std::int32_t left = WriteChainedText(*file, 0, "left", L);
      const std::int32_t text = WriteChainedText(*file, 0, std::string(first, 'f'), L);
      const std::int32_t right = WriteChainedText(*file, 0, "right", L);
      WriteChainedText(*file, text, std::string(second, 's'), L);
      ASSERT_EQ(Read(file, text, L), std::string(second, 's')) << first << " then " << second;
      WriteChainedText(*file, text, std::string(first, 'g'), L);
      ASSERT_EQ(Read(file, text, L), std::string(first, 'g')) << second << " then " << first;
      ASSERT_EQ(Read(file, left, L), "left");
      ASSERT_EQ(Read(file, right, L), "right");
    }
  }
}

TEST_P(LengthWidthTest, ATextMayBeAViewOfWhatItOverwrites) {
  const int L = GetParam();
  TempFile file("x");
  WriteChainedText(*file, 0, "abcdef", L);
  std::string buffer;
  const std::string_view view = ReadChainedText(*file, 2, L, buffer);
  WriteChainedText(*file, 2, view.substr(2), L);
  EXPECT_EQ(Read(file, 2, L), "cdef");
}

TEST(ChainedTextTest, OnePieceOf254And255Bytes) {
  TempFile file("x");
  WriteChainedText(*file, 0, std::string(255, 'a'), 1);
  EXPECT_EQ(file->ByteAt(2), 255);
  EXPECT_EQ(file->Length(), 1 + 1 + 255 + 4);
}

TEST(ChainedTextTest, ALongRestWithShortLengthsBecomesSeveralPieces) {
  TempFile file("x");
  const std::string text = std::string(255, 'a') + std::string(255, 'b') + "c";
  WriteChainedText(*file, 0, text, 1);
  EXPECT_EQ(Read(file, 2, 1), text);
  EXPECT_EQ(file->Int32At(2 + 1 + 255), 2 + 260) << "pieces stand one behind the other";
  EXPECT_EQ(file->ByteAt(2 + 260), 255);
  EXPECT_EQ(file->ByteAt(2 + 520), 1);
}

TEST(ChainedTextTest, Int16LengthsHoldUpTo32767) {
  TempFile file("x");
  WriteChainedText(*file, 0, std::string(32768, 'a'), 2);
  EXPECT_EQ(file->Int16At(2), 32767);
  EXPECT_EQ(Read(file, 2, 2), std::string(32768, 'a'));
}

TEST(ChainedTextTest, ATextOfOnePieceIsAViewOfTheFile) {
  TempFile file("x");
  WriteChainedText(*file, 0, "abc", 1);
  std::string buffer;
  EXPECT_EQ(ReadChainedText(*file, 2, 1, buffer).data(), file->View(3, 3).data());
  EXPECT_TRUE(buffer.empty());
}

TEST(ChainedTextTest, PiecesInTheMiddleKeepTheirCapacity) {
  // Three pieces of 2, 3 and 4 bytes.
  TempFile file(FromHex(R"("x"
      02 "ab"   09 00 00 00
      03 "cde"  11 00 00 00
      04 "fghi" 00 00 00 00)"));
  EXPECT_EQ(Read(file, 2, 1), "abcdefghi");
  WriteChainedText(*file, 2, "ABCD", 1);
  EXPECT_EQ(Read(file, 2, 1), "ABCD");
  EXPECT_EQ(file->ByteAt(2), 2) << "a full piece keeps its length";
  EXPECT_EQ(file->Int32At(5), 9);
  EXPECT_EQ(file->ByteAt(9), 2) << "the last piece needed is shrunk";
  EXPECT_EQ(file->Int32At(12), 0) << "and ends the text";
}

class DamagedTextTest : public testing::Test {};

TEST_F(DamagedTextTest, AWrongLengthOfFourBytesEndsTheText) {
  for (const auto* length : {"ff ff ff ff", "00 00 00 80", "ff ff ff 7f", "0d 00 00 00"}) {
    const TempFile file(FromHex("\"x\" " + std::string(length) + " \"abcd\" 00 00 00 00"));
    EXPECT_EQ(Read(file, 2, 4), "") << length;
  }
}

TEST_F(DamagedTextTest, WhatWasReadBeforeAWrongLengthIsKept) {
  const TempFile file(FromHex("\"x\"  02 00 00 00 \"ab\" 0c 00 00 00   ff ff ff ff 00*8"));
  EXPECT_EQ(Read(file, 2, 4), "ab");
}

TEST_F(DamagedTextTest, AChainEndsAtPositionsOutsideTheFile) {
  for (const auto* next :
       {"ff ff ff ff", "00 00 00 80", "ff ff ff 7f", "0a 00 00 00", "09 00 00 00"}) {
    const TempFile file(FromHex("\"x\"  03 \"abc\" " + std::string(next)));
    EXPECT_EQ(file->Length(), 9);
    EXPECT_EQ(Read(file, 2, 1), "abc") << next;
  }
}

TEST_F(DamagedTextTest, ALoopEndsTheTextAfterOneRound) {
  const TempFile self(FromHex("\"x\"  03 \"abc\" 02 00 00 00 00"));
  EXPECT_EQ(Read(self, 2, 1), "abc");
  const TempFile pair(FromHex("\"x\"  01 \"a\" 08 00 00 00  01 \"b\" 02 00 00 00 00"));
  EXPECT_EQ(Read(pair, 2, 1), "ab");
}

TEST_F(DamagedTextTest, OverlappingPiecesGiveNoTextLongerThanTheFile) {
  // Each byte is a length of 100 and every group of four a pointer a little further on: the pieces
  // overlap, each of them readable.
  constexpr int kPieces = 400;
  std::string bytes(1, 'x');
  for (int i = 0; i < kPieces; ++i)
    bytes += FromHex("64") + std::string(100, 'a') + std::string(4, '\0');
  for (std::size_t at = 1; at + 110 < bytes.size(); at += 1) bytes[at] = 0x64;
  for (std::size_t at = 1; at + 110 < bytes.size(); at += 5) {
    const auto next = static_cast<std::uint32_t>(at + 6);
    for (std::size_t k = 0; k < 4; ++k) {
      bytes[at + 101 + k] = static_cast<char>(next >> (8 * k));
    }
  }
  const TempFile file(bytes);
  EXPECT_LE(Read(file, 2, 1).size(), bytes.size() + 255)
      << "the piece that goes too far is the last";
}

TEST_F(DamagedTextTest, ATextIsWholeWhenItsPiecesLieInsideTheFileAndEnd) {
  const TempFile empty(FromHex("\"x\"  00 00 00 00 00"));
  EXPECT_TRUE(IsWholeText(*empty, 2, 1));
  const TempFile two(FromHex("\"x\"  01 \"a\" 08 00 00 00  02 \"bc\" 00 00 00 00"));
  EXPECT_TRUE(IsWholeText(*two, 2, 1));
  const TempFile wide(FromHex("\"x\"  01 00 00 00 \"a\" 00 00 00 00"));
  EXPECT_TRUE(IsWholeText(*wide, 2, 4));
}

TEST_F(DamagedTextTest, ATextIsNotWholeThatIsCutLoopsOrLeavesTheFile) {
  for (const auto* damaged : {"\"x\"  04 \"abc\" 00 00 00 00",                  // too long
                              "\"x\"  03 \"abc\" 00 00 00",                     // cut off
                              "\"x\"  03 \"abc\" 02 00 00 00",                  // leads to itself
                              "\"x\"  03 \"abc\" ff ff ff ff",                  // leads outside
                              "\"x\"  01 \"a\" 08 00 00 00  09 \"b\" 00*4"}) {  // second too long
    const TempFile file(FromHex(damaged));
    EXPECT_FALSE(IsWholeText(*file, 2, 1)) << damaged;
  }
  const TempFile negative(FromHex("\"x\"  ff ff ff ff \"abcd\" 00*4"));
  EXPECT_FALSE(IsWholeText(*negative, 2, 4));
  EXPECT_FALSE(IsWholeText(*negative, 0, 4));
}

TEST_F(DamagedTextTest, ALoopThatIsWrittenOverEndsInANewPiece) {
  TempFile file(FromHex("\"x\"  03 \"abc\" 02 00 00 00 00"));
  WriteChainedText(*file, 2, "0123456789", 1);
  EXPECT_EQ(Read(file, 2, 1), "0123456789");
}

TEST_F(DamagedTextTest, WritingOverAPieceThatLeavesTheFileRaises9AndWritesNothing) {
  for (const auto* damaged :
       {"\"x\"  ff \"abc\" 00 00 00 00",                           // too long
        "\"x\"  03 \"abc\" 00 00 00",                              // the pointer is cut off
        "\"x\"  01 \"a\" 08 00 00 00  09 \"bcd\" 00 00 00 00"}) {  // in the second piece
    TempFile file(FromHex(damaged));
    const std::string before = file.Bytes();
    EXPECT_RAISES(9, WriteChainedText(*file, 2, "0123456789", 1)) << damaged;
    EXPECT_EQ(HexDump(file.Bytes()), HexDump(before)) << damaged;
  }
}

TEST_F(DamagedTextTest, NegativePositionsAreNeverWritten) {
  TempFile file("abcdef");
  EXPECT_RAISES(9, WriteChainedText(*file, -1, "0", 1));
  EXPECT_RAISES(9, WriteChainedText(*file, INT32_MIN, "0", 4));
  EXPECT_EQ(file.Bytes(), "abcdef");
}

}  // namespace
}  // namespace orv::storage
