// An input taken apart.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace orv::fuzz {

/// Hands out the input's bytes from front to back; zeros behind its end.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

  bool IsEmpty() const { return rest_.empty(); }

  std::uint8_t Byte() {
    if (rest_.empty()) return 0;
    const std::uint8_t byte = rest_.front();
    rest_ = rest_.subspan(1);
    return byte;
  }
  std::uint16_t Word() {
    const std::uint16_t low = Byte();
    return static_cast<std::uint16_t>(low | Byte() << 8);
  }
  std::int32_t Long() {
    const std::uint32_t low = Word();
    return static_cast<std::int32_t>(low | std::uint32_t{Word()} << 16);
  }
  /// The next bytes, at most `most` of them.
  std::string Bytes(std::size_t most) {
    const auto part = rest_.first(std::min(most, rest_.size()));
    rest_ = rest_.subspan(part.size());
    return {part.begin(), part.end()};
  }

 private:
  std::span<const std::uint8_t> rest_;
};

}  // namespace orv::fuzz
