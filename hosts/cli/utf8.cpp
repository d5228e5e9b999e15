#include "cli/utf8.h"

#include <array>
#include <cstddef>

namespace orv::cli {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kHighest = 0x10FFFF;
constexpr char32_t kFirstSupplementary = 0x10000;
// The least number that needs one, two or three further bytes; a shorter form exists below it.
constexpr std::array<char32_t, 4> kLeast = {0, 0x80, 0x800, 0x10000};

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }
bool IsSurrogate(char32_t unit) { return IsHighSurrogate(unit) || IsLowSurrogate(unit); }

// Takes one character off the front; pairs exist only where wchar_t is 16 bits wide.
char32_t TakeCharacter(std::wstring_view& text) {
  const auto first = static_cast<char32_t>(text.front());
  text.remove_prefix(1);
  if (!IsSurrogate(first)) return first > kHighest ? kReplacement : first;
  if constexpr (sizeof(wchar_t) == 2) {
    const char32_t second = text.empty() ? 0 : static_cast<char32_t>(text.front());
    if (IsHighSurrogate(first) && IsLowSurrogate(second)) {
      text.remove_prefix(1);
      return kFirstSupplementary + ((first - 0xD800) << 10) + (second - 0xDC00);
    }
  }
  return kReplacement;
}

void AppendUtf8(std::string& bytes, char32_t character) {
  const auto tail = [character](int shift) {
    return static_cast<char>(0x80 | ((character >> shift) & 0x3F));
  };
  if (character < kLeast[1]) {
    bytes += static_cast<char>(character);
  } else if (character < kLeast[2]) {
    bytes += {static_cast<char>(0xC0 | (character >> 6)), tail(0)};
  } else if (character < kLeast[3]) {
    bytes += {static_cast<char>(0xE0 | (character >> 12)), tail(6), tail(0)};
  } else {
    bytes += {static_cast<char>(0xF0 | (character >> 18)), tail(12), tail(6), tail(0)};
  }
}

void AppendWide(std::wstring& text, char32_t character) {
  if constexpr (sizeof(wchar_t) == 2) {
    if (character >= kFirstSupplementary) {
      const char32_t rest = character - kFirstSupplementary;
      text += static_cast<wchar_t>(0xD800 + (rest >> 10));
      text += static_cast<wchar_t>(0xDC00 + (rest & 0x3FF));
      return;
    }
  }
  text += static_cast<wchar_t>(character);
}

// How many bytes follow this first byte, or nothing when no character starts with it.
std::optional<std::size_t> FurtherBytes(unsigned char first) {
  if (first < 0x80) return 0;
  if (first >= 0xC2 && first < 0xE0) return 1;
  if (first >= 0xE0 && first < 0xF0) return 2;
  if (first >= 0xF0 && first < 0xF5) return 3;
  return std::nullopt;
}

// Takes one character off the front of bytes that are not empty.
std::optional<char32_t> TakeUtf8(std::string_view& bytes) {
  const auto first = static_cast<unsigned char>(bytes.front());
  const auto further = FurtherBytes(first);
  if (!further || bytes.size() <= *further) return std::nullopt;
  char32_t character = *further == 0 ? first : first & (0x3FU >> *further);
  for (const char byte : bytes.substr(1, *further)) {
    const auto bits = static_cast<unsigned char>(byte);
    if ((bits & 0xC0) != 0x80) return std::nullopt;
    character = (character << 6) | (bits & 0x3FU);
  }
  bytes.remove_prefix(*further + 1);
  if (character < kLeast[*further] || character > kHighest || IsSurrogate(character)) {
    return std::nullopt;
  }
  return character;
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  while (!text.empty()) AppendUtf8(bytes, TakeCharacter(text));
  return bytes;
}

std::optional<std::wstring> FromUtf8(std::string_view bytes) {
  std::wstring text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const auto character = TakeUtf8(bytes);
    if (!character) return std::nullopt;
    AppendWide(text, *character);
  }
  return text;
}

}  // namespace orv::cli
