#include "query/text_pattern.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/code_page.h"

namespace orv::query {

namespace {

constexpr int kBytes = 256;

/// Sixteen bytes that are compared at once. The compiler has instructions for them on every usual
/// processor, and makes do without where there are none.
constexpr std::size_t kBlock = 16;
using Block = signed char __attribute__((vector_size(kBlock)));
using BlockWords = std::uint64_t __attribute__((vector_size(kBlock)));

Block Load(const char* bytes) {
  Block block;
  std::memcpy(&block, bytes, kBlock);
  return block;
}

Block Filled(char byte) { return Block{} + static_cast<signed char>(byte); }

bool IsZero(Block block) {
  BlockWords words;
  std::memcpy(&words, &block, kBlock);
  return (words[0] | words[1]) == 0;
}

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
  first_ = value_.front();
  firstOther_ = caseMatters ? first_ : OtherCase(first_);
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
  return caseMatters_ ? Find<true>(text) : Find<false>(text);
}

bool TextPattern::ContainsByte(std::string_view text) const {
  if (std::memchr(text.data(), last_, text.size()) != nullptr) return true;
  return lastOther_ != last_ && std::memchr(text.data(), lastOther_, text.size()) != nullptr;
}

template <bool kCaseMatters>
bool TextPattern::Find(std::string_view text) const {
  return text.size() - value_.size() + 1 < kBlock ? FindByLastByte<kCaseMatters>(text)
                                                  : FindByBothEnds<kCaseMatters>(text);
}

/// Whether the value stands at this place of a text, whose last byte is known to fit.
template <bool kCaseMatters>
bool TextPattern::StandsAt(const char* text) const {
  const std::size_t before = value_.size() - 1;
  return kCaseMatters ? std::memcmp(text, value_.data(), before) == 0 : EqualsFolded(text, before);
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
    const bool fits = c == last_ || (!kCaseMatters && c == lastOther_);
    if (fits && StandsAt<kCaseMatters>(end - before)) return true;
    end += shift_[static_cast<unsigned char>(c)];
  }
  return false;
}

/// Looks at sixteen places at once and only at those more closely where both the first and the last
/// byte fit. The last block overlaps the one before. The text must have sixteen places.
template <bool kCaseMatters>
bool TextPattern::FindByBothEnds(std::string_view text) const {
  const Block first = Filled(first_);
  const Block firstOther = Filled(firstOther_);
  const Block last = Filled(last_);
  const Block lastOther = Filled(lastOther_);
  const std::size_t before = value_.size() - 1;
  const std::size_t lastBlock = text.size() - before - kBlock;
  for (std::size_t start = 0;; start = std::min(start + kBlock, lastBlock)) {
    const Block front = Load(text.data() + start);
    const Block back = Load(text.data() + start + before);
    Block fits;
    if constexpr (kCaseMatters) {
      fits = (front == first) & (back == last);
    } else {
      fits = ((front == first) | (front == firstOther)) & ((back == last) | (back == lastOther));
    }
    if (!IsZero(fits)) {
      for (std::size_t i = 0; i < kBlock; ++i) {
        if (fits[i] != 0 && StandsAt<kCaseMatters>(text.data() + start + i)) return true;
      }
    }
    if (start == lastBlock) return false;
  }
}

}  // namespace orv::query
