#include "platform/code_page.h"

#include <string>

#include <gtest/gtest.h>

namespace orv::platform {
namespace {

std::string AllBytes() {
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
  return bytes;
}

TEST(CodePageTest, EveryByteSurvivesTheWayToWideAndBack) {
  EXPECT_EQ(ToBytes(ToWide(AllBytes())), AllBytes());
}

TEST(CodePageTest, EveryByteHasAWideCharacterOfItsOwn) {
  const std::wstring wide = ToWide(AllBytes());
  for (std::size_t i = 0; i < wide.size(); ++i) EXPECT_EQ(wide.find(wide[i]), i) << i;
}

TEST(CodePageTest, KnownCharactersOfThePage) {
  EXPECT_EQ(ToWide("\xCC\xEE\xF1\xEA\xE2\xE0"), L"\u041C\u043E\u0441\u043A\u0432\u0430");
  EXPECT_EQ(ToWide("\xA8\xB8\xB9\x88\x99\x85"), L"\u0401\u0451\u2116\u20AC\u2122\u2026");
  EXPECT_EQ(ToWide("\x98"), std::wstring(1, wchar_t{0x98}));
}

TEST(CodePageTest, CharactersOutsideThePageBecomeQuestionMarks) {
  EXPECT_EQ(ToBytes(L"a\u00E9\u4E2Db\u2123"), "a??b?");
  EXPECT_EQ(ToBytes(std::wstring{wchar_t{0x80}, wchar_t{0xFFFF}}), "??");
  EXPECT_FALSE(HasByte(wchar_t{0x81}));
  EXPECT_TRUE(HasByte(wchar_t{0}));
}

TEST(CodePageTest, ACharacterBeyondTheBasicPlaneIsOneQuestionMark) {
  EXPECT_EQ(ToBytes(L"a\U0001F600b"), "a?b");
}

TEST(CodePageTest, ZeroBytesAreOrdinaryCharacters) {
  const std::string bytes("a\0b", 3);
  EXPECT_EQ(ToWide(bytes).size(), 3U);
  EXPECT_EQ(ToBytes(ToWide(bytes)), bytes);
}

TEST(CodePageTest, BuffersAreOverwritten) {
  std::wstring wide = L"something longer";
  ToWide("ab", wide);
  EXPECT_EQ(wide, L"ab");
  std::string room = "something longer";
  EXPECT_EQ(ToBytes(L"cd", room), "cd");
  EXPECT_EQ(ToBytes(L"more than the room has had", room), "more than the room has had");
  EXPECT_EQ(ToBytes(L"", room), "");
}

// Groups of characters are converted together; wherever the one that is not ASCII stands, each
// character is converted as it is alone.
TEST(CodePageTest, TextsOfAllLengthsWithALetterAnywhere) {
  for (std::size_t size = 0; size <= 40; ++size) {
    for (std::size_t letter = 0; letter <= size; ++letter) {
      std::string bytes;
      std::wstring wide;
      for (std::size_t i = 0; i < size; ++i) {
        bytes += i == letter ? '\xC6' : static_cast<char>('!' + i);
        wide += ToWide(bytes.back());
      }
      EXPECT_EQ(ToWide(bytes), wide);
      EXPECT_EQ(ToBytes(wide), bytes);
      EXPECT_EQ(IsAscii(bytes), letter == size);
    }
  }
}

TEST(CodePageTest, BlanksAreTrimmedFromTextsOfAllLengths) {
  for (std::size_t size = 0; size <= 20; ++size) {
    const std::string text(size, 'x');
    for (std::size_t blanks = 0; blanks <= 20; ++blanks) {
      EXPECT_EQ(Trim(text + std::string(blanks, ' ')), text);
      EXPECT_EQ(TrimRight(" " + text + std::string(blanks, ' ')), size == 0 ? "" : " " + text);
    }
  }
}

TEST(CodePageTest, FoldsLatinAndCyrillicLetters) {
  EXPECT_EQ(FoldCase("AZaz09_@[`{"), "azaz09_@[`{");
  EXPECT_EQ(FoldCase("\xC0\xDF\xE0\xFF"), "\xE0\xFF\xE0\xFF");
  EXPECT_EQ(FoldCase("\xA8\xB8"), "\xB8\xB8");
}

TEST(CodePageTest, FoldsTheOtherLettersOfThePage) {
  EXPECT_EQ(FoldCase("\x80\x81\x8A\x8C\x8D\x8E\x8F\xA1\xA3\xA5\xAA\xAF\xB2\xBD"),
            "\x90\x83\x9A\x9C\x9D\x9E\x9F\xA2\xBC\xB4\xBA\xBF\xB3\xBE");
}

TEST(CodePageTest, FoldingTwiceChangesNothingMore) {
  const std::string once = FoldCase(AllBytes());
  EXPECT_EQ(FoldCase(once), once);
}

TEST(CodePageTest, WideFoldingGoesThroughThePageOnly) {
  EXPECT_EQ(FoldCase(L"\u0401\u0416ABC"), L"\u0451\u0436abc");
  EXPECT_EQ(FoldCase(L"\u00C9\u0394"), L"\u00C9\u0394");
  for (int b = 0; b < 256; ++b) {
    const char byte = static_cast<char>(b);
    EXPECT_EQ(FoldCase(ToWide(byte)), ToWide(FoldCase(byte))) << b;
  }
}

TEST(CodePageTest, TrimTakesBlanksOnly) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(TrimLeft("  a "), "a ");
  EXPECT_EQ(TrimRight(" a  "), " a");
  EXPECT_EQ(Trim("\t a\n"), "\t a\n");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(Trim(""), "");
  EXPECT_EQ(Trim(L" a "), L"a");
}

}  // namespace
}  // namespace orv::platform
