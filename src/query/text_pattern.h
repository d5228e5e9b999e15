// How a cell's text is compared with the text sought.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orv::query {

/// What a search looks for in a cell: the whole text or a part of it, with or without regard to
/// letter case. The empty text is a part of every text.
///
/// Made once a search; testing a cell copies and allocates nothing.
class TextPattern {
 public:
  TextPattern(std::string_view value, bool inCell, bool caseMatters);

  bool Matches(std::string_view text) const { return inCell_ ? Contains(text) : Equals(text); }

  bool inCell() const { return inCell_; }
  bool caseMatters() const { return caseMatters_; }
  /// The text sought, lower-cased when letter case does not matter.
  const std::string& value() const { return value_; }

 private:
  bool Equals(std::string_view text) const {
    if (caseMatters_) return text == value_;
    return text.size() == value_.size() && EqualsFolded(text.data(), text.size());
  }
  /// Whether `size` bytes, lower-cased, are those that the value begins with.
  bool EqualsFolded(const char* text, std::size_t size) const;
  bool Contains(std::string_view text) const;
  bool ContainsByte(std::string_view text) const;
  template <bool kCaseMatters>
  bool Find(std::string_view text) const;
  template <bool kCaseMatters>
  bool FindByLastByte(std::string_view text) const;
  template <bool kCaseMatters>
  bool FindByBothEnds(std::string_view text) const;
  template <bool kCaseMatters>
  bool StandsAt(const char* text) const;

  std::string value_;
  bool inCell_;
  bool caseMatters_;
  /// How far the window may move on when this byte, in either letter case, stands at its end.
  std::array<std::uint8_t, 256> shift_{};
  /// The value's first and last byte in their two letter cases; the same byte twice where case
  /// matters.
  char first_ = 0;
  char firstOther_ = 0;
  char last_ = 0;
  char lastOther_ = 0;
};

}  // namespace orv::query
