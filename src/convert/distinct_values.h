// The distinct values of a field, in order of first occurrence.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace orv::convert {

/// Values are compared byte by byte and numbered from 1. Finding one costs a hash and two far
/// memory accesses, however many there are; a value costs some 50 bytes beside its text.
class DistinctValues {
 public:
  DistinctValues();

  /// Counts one more occurrence and returns the value's number.
  std::int32_t Add(std::string_view value);

  std::int32_t size() const { return static_cast<std::int32_t>(entries_.size()); }
  /// Value `i` and how often it occurred. The view is good as long as the list lives.
  std::string_view Value(std::int32_t i) const { return At(i).Text(); }
  std::int32_t Count(std::int32_t i) const { return At(i).count; }

 private:
  /// What stands in front of a value's text.
  struct Entry {
    std::int32_t count;
    std::uint32_t length;

    char* Place() { return reinterpret_cast<char*>(this + 1); }
    std::string_view Text() const { return {reinterpret_cast<const char*>(this + 1), length}; }
  };
  /// Open addressing: a value stands in the first free slot from the one that its hash names.
  struct Slot {
    std::uint32_t hash = 0;
    std::int32_t number = 0;  ///< 0 for an empty slot
    Entry* entry = nullptr;
  };

  const Entry& At(std::int32_t i) const { return *entries_[static_cast<std::size_t>(i - 1)]; }
  Slot& FindSlot(std::string_view value, std::uint32_t hash);
  void Widen();
  Entry* Keep(std::string_view value);

  std::vector<Entry*> entries_;
  std::vector<Slot> slots_;
  std::vector<std::unique_ptr<std::byte[]>> blocks_;  ///< hold the entries
  std::size_t used_ = 0;                              ///< bytes of the newest block
  std::size_t room_ = 0;                              ///< of its bytes in all
};

}  // namespace orv::convert
