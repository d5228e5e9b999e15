// Numbers and texts that look random and are the same in every run.
#pragma once

#include <cstdint>
#include <string>

namespace orv::bench {

class Random {
 public:
  /// The next number, from 0 to `count` - 1.
  std::uint32_t Below(std::uint32_t count) {
    // Knuth's linear congruential generator for 64 bits (MMIX); its high bits are the good ones.
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::uint32_t>(state_ >> 33U) % count;
  }

 private:
  std::uint64_t state_ = 20240519;
};

/// So many small Latin letters.
inline std::wstring Letters(Random& random, std::uint32_t count) {
  std::wstring text;
  for (; count > 0; --count) text += static_cast<wchar_t>(L'a' + random.Below(26));
  return text;
}

}  // namespace orv::bench
