#include "platform/code_page.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

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

// Most text is ASCII, which both codes share. It is converted by groups of 16, 8 or 4 characters,
// by the size of the text; the last group may overlap the one before.

/// Calls `convert` with the size (as a type) and the offset of each group. False as soon as it
/// gives false, and for a text shorter than all groups.
template <std::size_t kCount, typename Convert>
bool ForGroupsOf(std::size_t size, Convert convert) {
  const std::size_t last = size - kCount;
  for (std::size_t at = 0;; at = std::min(at + kCount, last)) {
    if (!convert(std::integral_constant<std::size_t, kCount>(), at)) return false;
    if (at == last) return true;
  }
}

template <typename Convert>
bool ForGroups(std::size_t size, Convert convert) {
  if (size >= 16) return ForGroupsOf<16>(size, convert);
  if (size >= 8) return ForGroupsOf<8>(size, convert);
  return size >= 4 && ForGroupsOf<4>(size, convert);
}

template <typename Word>
Word LoadWord(const void* from) {
  Word word = 0;
  std::memcpy(&word, from, sizeof word);
  return word;
}

template <std::size_t kCount>
bool IsAsciiGroup(const char* group) {
  using Word = std::conditional_t<kCount == 4, std::uint32_t, std::uint64_t>;
  Word all = 0;
#pragma GCC unroll 2
  for (std::size_t i = 0; i < kCount; i += sizeof(Word)) all |= LoadWord<Word>(group + i);
  return (all & static_cast<Word>(0x8080808080808080U)) == 0;
}

template <std::size_t kCount>
bool IsAsciiGroup(const wchar_t* group) {
  constexpr std::uint64_t kNotAscii =
      sizeof(wchar_t) == 4 ? 0xFFFFFF80FFFFFF80U : 0xFF80FF80FF80FF80U;
  constexpr std::size_t kInWord = sizeof(std::uint64_t) / sizeof(wchar_t);
  std::uint64_t all = 0;
#pragma GCC unroll 8
  for (std::size_t i = 0; i < kCount; i += kInWord) all |= LoadWord<std::uint64_t>(group + i);
  return (all & kNotAscii) == 0;
}

/// Stores a group of bytes as wide characters; false, with nothing stored, when one is not ASCII.
template <std::size_t kCount>
bool WidenAscii(const char* group, wchar_t* wide) {
  if (!IsAsciiGroup<kCount>(group)) return false;
  std::array<unsigned char, kCount> bytes = {};  // a copy, which `wide` cannot overlap
  std::memcpy(bytes.data(), group, kCount);
  for (std::size_t i = 0; i < kCount; ++i) wide[i] = static_cast<wchar_t>(bytes[i]);
  return true;
}

/// Stores a group of wide characters as bytes; false, with nothing stored, when one is not ASCII.
template <std::size_t kCount>
bool NarrowAscii(const wchar_t* group, char* bytes) {
  if (!IsAsciiGroup<kCount>(group)) return false;
  std::array<char, kCount> narrow = {};  // a copy, which `group` cannot overlap
  for (std::size_t i = 0; i < kCount; ++i) narrow[i] = static_cast<char>(group[i]);
  std::memcpy(bytes, narrow.data(), kCount);
  return true;
}

/// Stores the wide characters of the bytes.
void Widen(std::string_view bytes, wchar_t* wide) {
  const bool done = ForGroups(bytes.size(), [&](auto count, std::size_t at) {
    return WidenAscii<count>(bytes.data() + at, wide + at);
  });
  if (done) return;
  for (const char byte : bytes) *wide++ = ToWide(byte);
}

/// Stores the bytes of the wide characters and returns how many they are.
std::size_t Narrow(std::wstring_view wide, char* bytes) {
  const bool done = ForGroups(wide.size(), [&](auto count, std::size_t at) {
    return NarrowAscii<count>(wide.data() + at, bytes + at);
  });
  if (done) return wide.size();
  std::size_t count = 0;
  for (std::size_t i = 0; i < wide.size(); ++i) {
    if (!IsSecondHalf(wide, i)) bytes[count++] = ToByte(wide[i]);
  }
  return count;
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

/// Takes blanks off the end word by word; true when none is left there. Cells of fixed width end in
/// many.
template <typename Word>
bool TrimWords(std::string_view& text) {
  constexpr int kByteBits = 8;
  constexpr auto kBlanks = static_cast<Word>(0x2020202020202020U);
  while (text.size() >= sizeof(Word)) {
    const auto end = LoadWord<Word>(text.data() + text.size() - sizeof(Word));
    const int blankBits = std::countl_zero(static_cast<Word>(end ^ kBlanks));
    text.remove_suffix(static_cast<std::size_t>(blankBits / kByteBits));
    if (end != kBlanks) return true;
  }
  return false;
}

std::string_view TrimEnd(std::string_view text) {
  if (TrimWords<std::uint64_t>(text) || TrimWords<std::uint32_t>(text)) return text;
  return TrimEnd<char>(text);
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
  const bool isAscii = ForGroups(bytes.size(), [&](auto count, std::size_t at) {
    return IsAsciiGroup<count>(bytes.data() + at);
  });
  if (isAscii) return true;
  unsigned all = 0;
  for (const char byte : bytes) all |= static_cast<unsigned char>(byte);
  return all < 0x80;
}

void ToWide(std::string_view bytes, std::wstring& wide) {
  wide.resize(bytes.size());
  Widen(bytes, wide.data());
}

std::string_view ToBytes(std::wstring_view wide, std::string& room) {
  if (room.size() < wide.size()) room.resize(wide.size());
  return {room.data(), Narrow(wide, room.data())};
}

std::wstring ToWide(std::string_view bytes) {
  std::wstring wide(bytes.size(), L'\0');
  Widen(bytes, wide.data());
  return wide;
}

std::string ToBytes(std::wstring_view wide) {
  std::string bytes(wide.size(), '\0');
  bytes.resize(Narrow(wide, bytes.data()));
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
