#include "cli/utf8.h"

#include <string>

#include <gtest/gtest.h>

namespace orv::cli {
namespace {

TEST(Utf8, TakesTextsThereAndBack) {
  const std::wstring text = L"a\u00e9Ё\u0098€\U0001F600";
  const std::string bytes = "a\xC3\xA9\xD0\x81\xC2\x98\xE2\x82\xAC\xF0\x9F\x98\x80";
  EXPECT_EQ(ToUtf8(text), bytes);
  EXPECT_EQ(FromUtf8(bytes), text);
  EXPECT_EQ(FromUtf8(""), L"");
}

TEST(Utf8, KeepsZeroCharacters) {
  const std::string bytes("a\0b", 3);
  EXPECT_EQ(FromUtf8(bytes), std::wstring(L"a\0b", 3));
  EXPECT_EQ(ToUtf8(std::wstring(L"a\0b", 3)), bytes);
}

TEST(Utf8, RefusesWhatIsNotUtf8) {
  EXPECT_FALSE(FromUtf8("\xCF\xF0\xE8"));      // code page 1251
  EXPECT_FALSE(FromUtf8("ab\x80"));            // a further byte without a first one
  EXPECT_FALSE(FromUtf8("\xD0"));              // cut short
  EXPECT_FALSE(FromUtf8("\xE2\x82"));          // cut short
  EXPECT_FALSE(FromUtf8("\xD0z"));             // the further byte is none
  EXPECT_FALSE(FromUtf8("\xC0\x80"));          // overlong
  EXPECT_FALSE(FromUtf8("\xE0\x80\x80"));      // overlong
  EXPECT_FALSE(FromUtf8("\xF0\x80\x80\x80"));  // overlong
  EXPECT_FALSE(FromUtf8("\xED\xA0\x80"));      // a surrogate
  EXPECT_FALSE(FromUtf8("\xF4\x90\x80\x80"));  // above the highest character
  EXPECT_FALSE(FromUtf8("\xFF"));
}

TEST(Utf8, WritesALoneSurrogateAsTheReplacementCharacter) {
  const std::wstring lone(1, static_cast<wchar_t>(0xD800));
  EXPECT_EQ(ToUtf8(lone + L"a"),
            "\xEF\xBF\xBD"
            "a");
}

TEST(Utf8, GoesThereAndBackForEveryCharacter) {
  for (char32_t character = 1; character <= 0x10FFFF; character++) {
    if (character >= 0xD800 && character < 0xE000) continue;
    const std::wstring text(1, static_cast<wchar_t>(character));
    ASSERT_EQ(FromUtf8(ToUtf8(text)), text) << static_cast<unsigned>(character);
  }
}

}  // namespace
}  // namespace orv::cli
