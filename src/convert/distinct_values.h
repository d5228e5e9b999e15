// The distinct values of a field, in order of first occurrence.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace orv::convert {

/// Values are compared byte by byte and numbered from 1. Finding one costs a hash, however many
/// there are; a value costs some 40 bytes beside its text.
class DistinctValues {
 public:
  DistinctValues();

  /// Counts one more occurrence and returns the value's number.
  std::int32_t Add(std::string_view value);

  std::int32_t size() const { return static_cast<std::int32_t>(entries_.size()); }
  /// Value `i` and how often it occurred. The view is good as long as the list lives.
  std::string_view Value(std::int32_t i) const { return At(i).value; }
  std::int32_t Count(std::int32_t i) const { return At(i).count; }

 private:
  struct Entry {
    std::string_view value;
    std::size_t hash;
    std::int32_t count;
  };

  const Entry& At(std::int32_t i) const { return entries_[static_cast<std::size_t>(i - 1)]; }
  /// The slot that holds the value, or the empty one where it belongs.
  std::size_t FindSlot(std::string_view value, std::size_t hash) const;
  void Widen();
  std::string_view Keep(std::string_view value);

  std::vector<Entry> entries_;
  std::vector<std::int32_t> slots_;  ///< numbers of values by hash; 0 for an empty slot
  std::vector<std::unique_ptr<char[]>> texts_;
  std::size_t room_ = 0;  ///< bytes left in the newest text block
};

}  // namespace orv::convert
