#include "cli/display.h"

#include <algorithm>

namespace orv::cli {
namespace {

constexpr wchar_t kEllipsis = L'\u2026';

bool IsControl(wchar_t letter) {
  return letter < L' ' || (letter >= 0x7F && letter < 0xA0) || letter == 0x2028 || letter == 0x2029;
}

std::wstring Escape(wchar_t letter) {
  if (letter == L'\n') return L"\\n";
  if (letter == L'\r') return L"\\r";
  if (letter == L'\t') return L"\\t";
  const auto code = static_cast<char32_t>(letter);
  std::wstring escape = code < 0x100 ? L"\\x" : L"\\u";
  for (int shift = code < 0x100 ? 4 : 12; shift >= 0; shift -= 4) {
    escape.push_back(L"0123456789ABCDEF"[code >> shift & 0xF]);
  }
  return escape;
}

}  // namespace

std::wstring Visible(std::wstring_view text) {
  std::wstring visible;
  visible.reserve(text.size());
  for (const wchar_t letter : text) {
    if (IsControl(letter)) {
      visible += Escape(letter);
    } else {
      visible.push_back(letter);
    }
  }
  return visible;
}

std::wstring Shortened(std::wstring text, std::size_t columns) {
  if (columns == 0 || text.size() <= columns) return text;
  text.resize(columns - 1);
  text.push_back(kEllipsis);
  return text;
}

std::string PadLeft(const std::string& text, std::size_t columns) {
  std::string padded(columns - std::min(columns, text.size()), ' ');
  padded += text;
  return padded;
}

std::string GroupedNumber(std::int64_t number) {
  std::string digits = std::to_string(number);
  const std::size_t first = number < 0 ? 1 : 0;
  for (std::size_t at = digits.size(); at > first + 3;) {
    at -= 3;
    digits.insert(at, 1, ',');
  }
  return digits;
}

std::string Counted(std::int64_t count, const std::string& noun) {
  return GroupedNumber(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace orv::cli
