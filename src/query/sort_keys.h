// The keys of a sort: texts side by side in one buffer.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orv::query {

/// Texts numbered from 0 in the order in which they were added. One size a text besides its bytes.
class SortKeys {
 public:
  void Reserve(std::int32_t count);
  void Add(std::string_view key);
  /// Adds empty keys until there are `count`.
  void PadTo(std::int32_t count);

  std::int32_t Count() const { return static_cast<std::int32_t>(ends_.size()); }
  std::string_view Get(std::int32_t key) const;
  /// The first eight bytes of a key as a number that orders as they do, zeros where the key ends
  /// earlier.
  std::uint64_t Head(std::int32_t key) const;

  static constexpr std::size_t kHeadBytes = 8;

 private:
  std::string bytes_;
  std::vector<std::size_t> ends_;
};

}  // namespace orv::query
