#include "query/text_pattern.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/code_page.h"

namespace orv::query {

namespace {

constexpr int kBytes = 256;

/// The code page's small letters, as a table: a call a byte would cost more than the comparison.
const std::array<char, kBytes>& FoldTable() {
  static const auto table = [] {
    std::array<char, kBytes> folded{};
    for (int byte = 0; byte < kBytes; ++byte) {
      folded[static_cast<std::size_t>(byte)] = platform::FoldCase(static_cast<char>(byte));
    }
    return folded;
  }();
  return table;
}

char Folded(char byte) { return FoldTable()[static_cast<unsigned char>(byte)]; }

/// The capital letter of a small one; the byte itself when it has none.
char OtherCase(char small) {
  for (int byte = 0; byte < kBytes; ++byte) {
    const char candidate = static_cast<char>(byte);
    if (candidate != small && Folded(candidate) == small) return candidate;
  }
  return small;
}

}  // namespace

TextPattern::TextPattern(std::string_view value, bool inCell, bool caseMatters)
    : value_(caseMatters ? std::string(value) : platform::FoldCase(value)),
      inCell_(inCell),
      caseMatters_(caseMatters) {
  if (!inCell || value_.empty()) return;
  constexpr std::size_t kFarthest = std::numeric_limits<std::uint8_t>::max();
  const std::size_t size = value_.size();
  std::array<std::uint8_t, kBytes> byFolded{};
  byFolded.fill(static_cast<std::uint8_t>(std::min(size, kFarthest)));
  for (std::size_t i = 0; i + 1 < size; ++i) {
    byFolded[static_cast<unsigned char>(value_[i])] =
        static_cast<std::uint8_t>(std::min(size - 1 - i, kFarthest));
  }
  for (std::size_t byte = 0; byte < kBytes; ++byte) {
    const char here = static_cast<char>(byte);
    shift_[byte] = byFolded[static_cast<unsigned char>(caseMatters ? here : Folded(here))];
  }
  last_ = value_.back();
  lastOther_ = caseMatters ? last_ : OtherCase(last_);
}

bool TextPattern::EqualsFolded(const char* text, std::size_t size) const {
  const auto& fold = FoldTable();
  for (std::size_t i = 0; i < size; ++i) {
    if (fold[static_cast<unsigned char>(text[i])] != value_[i]) return false;
  }
  return true;
}

bool TextPattern::Contains(std::string_view text) const {
  if (text.size() < value_.size()) return false;
  if (value_.size() < 2) return value_.empty() || ContainsByte(text);
  return caseMatters_ ? FindByLastByte<true>(text) : FindByLastByte<false>(text);
}

bool TextPattern::ContainsByte(std::string_view text) const {
  if (std::memchr(text.data(), last_, text.size()) != nullptr) return true;
  return lastOther_ != last_ && std::memchr(text.data(), lastOther_, text.size()) != nullptr;
}

/// Moves a window of the value's size over the text; the byte at its end says how far it can move
/// on.
template <bool kCaseMatters>
bool TextPattern::FindByLastByte(std::string_view text) const {
  const std::size_t before = value_.size() - 1;
  const char* end = text.data() + before;
  const char* const textEnd = text.data() + text.size();
  while (end < textEnd) {
    const char c = *end;
    if (c == last_ || (!kCaseMatters && c == lastOther_)) {
      const char* const start = end - before;
      if (kCaseMatters ? std::memcmp(start, value_.data(), before) == 0
                       : EqualsFolded(start, before)) {
        return true;
      }
    }
    end += shift_[static_cast<unsigned char>(c)];
  }
  return false;
}

}  // namespace orv::query
