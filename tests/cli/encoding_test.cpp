#include "cli/encoding.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace orv::cli {
namespace {

TEST(EncodingTest, IsNamedInAnyLetterCase) {
  EXPECT_EQ(EncodingNamed("UTF-8"), Encoding::kUtf8);
  EXPECT_EQ(EncodingNamed("utf8"), Encoding::kUtf8);
  EXPECT_EQ(EncodingNamed("CP1251"), Encoding::kCp1251);
  EXPECT_EQ(EncodingNamed("cp866"), Encoding::kCp866);
  EXPECT_EQ(EncodingNamed("latin1"), std::nullopt);
  EXPECT_EQ(EncodingNamed(""), std::nullopt);
}

TEST(EncodingTest, DecodesTheSameWordFromAllThree) {
  const std::wstring word = L"\u0401\u0436\u0438\u043A";  // Ёжик
  EXPECT_EQ(Decode("\xD0\x81\xD0\xB6\xD0\xB8\xD0\xBA", Encoding::kUtf8), word);
  EXPECT_EQ(Decode("\xA8\xE6\xE8\xEA", Encoding::kCp1251), word);
  EXPECT_EQ(Decode("\xF0\xA6\xA8\xAA", Encoding::kCp866), word);
}

TEST(EncodingTest, RefusesBytesThatAreNoUtf8) {
  EXPECT_EQ(Decode("\xC0\x80", Encoding::kUtf8), std::nullopt);
  EXPECT_EQ(Decode("ab\xFF", Encoding::kUtf8), std::nullopt);
}

TEST(EncodingTest, Cp866HasACharacterOfItsOwnForEveryByteAndBack) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes.push_back(static_cast<char>(byte));
  const std::wstring text = Decode(bytes, Encoding::kCp866).value();
  EXPECT_EQ(std::set<wchar_t>(text.begin(), text.end()).size(), 256u);
  EXPECT_EQ(ToCp866(text), bytes);
}

TEST(EncodingTest, Cp866KnowsItsLandmarks) {
  EXPECT_EQ(Decode("\x80\x9F\xA0\xAF\xE0\xEF", Encoding::kCp866),
            L"\u0410\u042F\u0430\u043F\u0440\u044F");
  EXPECT_EQ(Decode("\xB3\xC4\xDB\xFC\xFF", Encoding::kCp866), L"\u2502\u2500\u2588\u2116\u00A0");
}

TEST(EncodingTest, Cp866PutsAQuestionMarkForWhatItLacks) {
  EXPECT_EQ(ToCp866(L"a\u20AC\u4E2Db"), "a??b");
}

}  // namespace
}  // namespace orv::cli
