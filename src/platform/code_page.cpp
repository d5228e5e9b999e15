#include "platform/code_page.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace orv::platform {
namespace {

constexpr std::size_t kByteCount = 256;
constexpr char kNoByteMark = '?';

// Bytes 0x80 to 0xBF; the lower half is ASCII, 0xC0 to 0xFF are U+0410 to U+044F.
constexpr std::array<std::uint16_t, 64> kMiddle = {
    0x0402, 0x0403, 0x201A, 0x0453, 0x201E, 0x2026, 0x2020, 0x2021, 0x20AC, 0x2030, 0x0409,
    0x2039, 0x040A, 0x040C, 0x040B, 0x040F, 0x0452, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x0098, 0x2122, 0x0459, 0x203A, 0x045A, 0x045C, 0x045B, 0x045F, 0x00A0,
    0x040E, 0x045E, 0x0408, 0x00A4, 0x0490, 0x00A6, 0x00A7, 0x0401, 0x00A9, 0x0404, 0x00AB,
    0x00AC, 0x00AD, 0x00AE, 0x0407, 0x00B0, 0x00B1, 0x0406, 0x0456, 0x0491, 0x00B5, 0x00B6,
    0x00B7, 0x0451, 0x2116, 0x0454, 0x00BB, 0x0458, 0x0405, 0x0455, 0x0457};

constexpr std::array<std::uint16_t, kByteCount> MakeWideTable() {
  std::array<std::uint16_t, kByteCount> table{};
  for (std::size_t b = 0; b < 0x80; ++b) table[b] = static_cast<std::uint16_t>(b);
  for (std::size_t b = 0x80; b < 0xC0; ++b) table[b] = kMiddle[b - 0x80];
  for (std::size_t b = 0xC0; b < kByteCount; ++b) {
    table[b] = static_cast<std::uint16_t>(0x0410 + (b - 0xC0));
  }
  return table;
}

constexpr std::array<std::uint16_t, kByteCount> kWide = MakeWideTable();

// The page's greatest character is U+2122; what lies beyond has no byte.
constexpr std::size_t kWideCount = 0x2123;

// Byte 0 belongs to U+0000 only, so a 0 elsewhere means "no byte".
constexpr std::array<std::uint8_t, kWideCount> MakeByteTable() {
  std::array<std::uint8_t, kWideCount> table{};
  for (std::size_t b = 0; b < kByteCount; ++b) table[kWide[b]] = static_cast<std::uint8_t>(b);
  return table;
}

constexpr std::array<std::uint8_t, kWideCount> kByte = MakeByteTable();

struct LetterPair {
  std::uint8_t capital;
  std::uint8_t small;
};

// The letters outside the two runs A-Z and U+0410-U+042F.
constexpr std::array<LetterPair, 15> kOtherLetters = {{{0x80, 0x90},
                                                       {0x81, 0x83},
                                                       {0x8A, 0x9A},
                                                       {0x8C, 0x9C},
                                                       {0x8D, 0x9D},
                                                       {0x8E, 0x9E},
                                                       {0x8F, 0x9F},
                                                       {0xA1, 0xA2},
                                                       {0xA3, 0xBC},
                                                       {0xA5, 0xB4},
                                                       {0xA8, 0xB8},
                                                       {0xAA, 0xBA},
                                                       {0xAF, 0xBF},
                                                       {0xB2, 0xB3},
                                                       {0xBD, 0xBE}}};

constexpr std::array<char, kByteCount> MakeFoldTable() {
  std::array<char, kByteCount> table{};
  for (std::size_t b = 0; b < kByteCount; ++b) table[b] = static_cast<char>(b);
  for (std::size_t b = 'A'; b <= 'Z'; ++b) table[b] = static_cast<char>(b + 0x20);
  for (std::size_t b = 0xC0; b < 0xE0; ++b) table[b] = static_cast<char>(b + 0x20);
  for (const LetterPair& pair : kOtherLetters) table[pair.capital] = static_cast<char>(pair.small);
  return table;
}

constexpr std::array<char, kByteCount> kFolded = MakeFoldTable();

std::size_t IndexOf(char byte) { return static_cast<unsigned char>(byte); }

std::size_t IndexOf(wchar_t wide) { return static_cast<std::size_t>(wide); }

// Only a 16-bit wchar_t has surrogates; the second half of a pair adds no byte of its own.
bool IsSecondHalf([[maybe_unused]] std::wstring_view wide, [[maybe_unused]] std::size_t at) {
  if constexpr (sizeof(wchar_t) == 2) {
    const auto inRange = [](wchar_t c, unsigned low) { return (IndexOf(c) & 0xFC00U) == low; };
    return at > 0 && inRange(wide[at], 0xDC00U) && inRange(wide[at - 1], 0xD800U);
  } else {
    return false;
  }
}

/// Most text is ASCII, which both codes share; it is converted by groups of characters.
constexpr std::size_t kGroup = 8;

bool IsAscii(const char* group) {
  std::uint64_t bytes = 0;
  static_assert(sizeof bytes == kGroup);
  std::memcpy(&bytes, group, sizeof bytes);
  return (bytes & 0x8080808080808080U) == 0;
}

/// Stores a group of bytes as wide characters; false, with nothing stored, when one is not ASCII.
bool WidenAscii(const char* group, wchar_t* wide) {
  if (!IsAscii(group)) return false;
  for (std::size_t i = 0; i < kGroup; ++i) wide[i] = static_cast<wchar_t>(group[i]);
  return true;
}

/// Stores the wide characters of the bytes.
void Widen(std::string_view bytes, wchar_t* wide) {
  const char* from = bytes.data();
  const std::size_t size = bytes.size();
  std::size_t i = 0;
  while (size - i >= kGroup && WidenAscii(from + i, wide + i)) i += kGroup;
  // The rest of a longer text is the end of its last group.
  const bool endsInGroup = size >= kGroup && size - i < kGroup;
  if (endsInGroup && WidenAscii(from + size - kGroup, wide + size - kGroup)) return;
  for (; i < size; ++i) wide[i] = ToWide(from[i]);
}

/// Stores a group of wide characters as bytes; false, with nothing stored, when one is not ASCII.
bool NarrowAscii(const wchar_t* group, char* bytes) {
  wchar_t all = 0;
  for (std::size_t i = 0; i < kGroup; ++i) all |= group[i];
  if (IndexOf(all) >= 0x80) return false;
  std::uint64_t packed = 0;
  for (std::size_t i = kGroup; i-- > 0;) packed = packed << 8 | IndexOf(group[i]);
  std::memcpy(bytes, &packed, sizeof packed);
  return true;
}

template <typename Char>
std::basic_string_view<Char> TrimStart(std::basic_string_view<Char> text) {
  std::size_t first = 0;
  while (first < text.size() && text[first] == static_cast<Char>(kBlank)) ++first;
  return text.substr(first);
}

template <typename Char>
std::basic_string_view<Char> TrimEnd(std::basic_string_view<Char> text) {
  std::size_t end = text.size();
  while (end > 0 && text[end - 1] == static_cast<Char>(kBlank)) --end;
  return text.substr(0, end);
}

}  // namespace

wchar_t ToWide(char byte) noexcept { return static_cast<wchar_t>(kWide[IndexOf(byte)]); }

bool HasByte(wchar_t wide) noexcept {
  return wide == 0 || (IndexOf(wide) < kWideCount && kByte[IndexOf(wide)] != 0);
}

char ToByte(wchar_t wide) noexcept {
  return HasByte(wide) ? static_cast<char>(kByte[IndexOf(wide)]) : kNoByteMark;
}

bool IsAscii(std::string_view bytes) noexcept {
  for (; bytes.size() >= kGroup; bytes.remove_prefix(kGroup)) {
    if (!IsAscii(bytes.data())) return false;
  }
  unsigned all = 0;
  for (const char byte : bytes) all |= static_cast<unsigned char>(byte);
  return all < 0x80;
}

void ToWide(std::string_view bytes, std::wstring& wide) {
  wide.resize(bytes.size());
  Widen(bytes, wide.data());
}

void ToBytes(std::wstring_view wide, std::string& bytes) {
  bytes.resize(wide.size());
  std::size_t count = 0;
  while (wide.size() - count >= kGroup && NarrowAscii(&wide[count], &bytes[count])) {
    count += kGroup;
  }
  for (std::size_t i = count; i < wide.size(); ++i) {
    if (IndexOf(wide[i]) < 0x80) {
      bytes[count++] = static_cast<char>(wide[i]);
    } else if (!IsSecondHalf(wide, i)) {
      bytes[count++] = ToByte(wide[i]);
    }
  }
  bytes.resize(count);
}

std::wstring ToWide(std::string_view bytes) {
  std::wstring wide(bytes.size(), L'\0');
  Widen(bytes, wide.data());
  return wide;
}

std::string ToBytes(std::wstring_view wide) {
  std::string bytes;
  ToBytes(wide, bytes);
  return bytes;
}

char FoldCase(char byte) noexcept { return kFolded[IndexOf(byte)]; }

void FoldCaseInPlace(std::string& bytes) noexcept {
  for (char& byte : bytes) byte = FoldCase(byte);
}

std::string FoldCase(std::string_view bytes) {
  std::string folded(bytes);
  FoldCaseInPlace(folded);
  return folded;
}

wchar_t FoldCase(wchar_t wide) noexcept {
  return HasByte(wide) ? ToWide(FoldCase(ToByte(wide))) : wide;
}

std::wstring FoldCase(std::wstring_view wide) {
  std::wstring folded(wide);
  for (wchar_t& c : folded) c = FoldCase(c);
  return folded;
}

std::string_view TrimLeft(std::string_view text) noexcept { return TrimStart(text); }

std::string_view TrimRight(std::string_view text) noexcept { return TrimEnd(text); }

std::string_view Trim(std::string_view text) noexcept { return TrimEnd(TrimStart(text)); }

std::wstring_view Trim(std::wstring_view text) noexcept { return TrimEnd(TrimStart(text)); }

}  // namespace orv::platform
