#include "cli/encoding.h"

#include <algorithm>
#include <array>

#include "cli/utf8.h"
#include "platform/code_page.h"

namespace orv::cli {
namespace {

// Bytes 0xB0 to 0xDF: shades and box drawing. The letters before and after them stand in the order
// of the alphabet.
constexpr std::wstring_view kBoxes =
    L"\u2591\u2592\u2593\u2502\u2524\u2561\u2562\u2556\u2555\u2563\u2551\u2557\u255D\u255C\u255B"
    L"\u2510\u2514\u2534\u252C\u251C\u2500\u253C\u255E\u255F\u255A\u2554\u2569\u2566\u2560\u2550"
    L"\u256C\u2567\u2568\u2564\u2565\u2559\u2558\u2552\u2553\u256B\u256A\u2518\u250C\u2588\u2584"
    L"\u258C\u2590\u2580";
static_assert(kBoxes.size() == 0x30);

// Bytes 0xF0 to 0xFF.
constexpr std::wstring_view kLast =
    L"\u0401\u0451\u0404\u0454\u0407\u0457\u040E\u045E\u00B0\u2219\u00B7\u221A\u2116\u00A4\u25A0"
    L"\u00A0";
static_assert(kLast.size() == 0x10);

constexpr wchar_t FromCp866(unsigned char byte) {
  if (byte < 0x80) return static_cast<wchar_t>(byte);
  if (byte < 0xB0) return static_cast<wchar_t>(0x0410 + (byte - 0x80));
  if (byte < 0xE0) return kBoxes[static_cast<std::size_t>(byte - 0xB0)];
  if (byte < 0xF0) return static_cast<wchar_t>(0x0440 + (byte - 0xE0));
  return kLast[static_cast<std::size_t>(byte - 0xF0)];
}

constexpr std::array<wchar_t, 256> kCp866 = [] {
  std::array<wchar_t, 256> table{};
  for (int byte = 0; byte < 256; ++byte) {
    table[static_cast<std::size_t>(byte)] = FromCp866(static_cast<unsigned char>(byte));
  }
  return table;
}();

std::wstring DecodeCp866(std::string_view bytes) {
  std::wstring text;
  text.reserve(bytes.size());
  for (const char byte : bytes) text.push_back(kCp866[static_cast<unsigned char>(byte)]);
  return text;
}

char LowerLatin(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

std::optional<Encoding> EncodingNamed(std::string_view name) {
  std::string lowered(name);
  std::ranges::transform(lowered, lowered.begin(), LowerLatin);
  if (lowered == "utf-8" || lowered == "utf8") return Encoding::kUtf8;
  if (lowered == "cp1251") return Encoding::kCp1251;
  if (lowered == "cp866") return Encoding::kCp866;
  return std::nullopt;
}

std::optional<std::wstring> Decode(std::string_view bytes, Encoding encoding) {
  switch (encoding) {
    case Encoding::kUtf8:
      return FromUtf8(bytes);
    case Encoding::kCp1251:
      return platform::ToWide(bytes);
    case Encoding::kCp866:
      return DecodeCp866(bytes);
  }
  return std::nullopt;
}

std::string ToCp866(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (const wchar_t letter : text) {
    const auto code = std::ranges::distance(kCp866.begin(), std::ranges::find(kCp866, letter));
    bytes.push_back(code == std::ssize(kCp866) ? '?' : static_cast<char>(code));
  }
  return bytes;
}

}  // namespace orv::cli
