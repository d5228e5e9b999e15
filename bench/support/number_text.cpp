#include "support/number_text.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace orv::bench {

std::string Grouped(std::int64_t number) {
  constexpr std::size_t kGroup = 3;
  std::string text = std::to_string(number);
  const std::size_t digits = number < 0 ? 1 : 0;
  for (std::size_t at = text.size(); at > digits + kGroup;) {
    at -= kGroup;
    text.insert(at, 1, ',');
  }
  return text;
}

std::string Rounded(double number) {
  constexpr double kWholeFrom = 100;
  if (std::abs(number) >= kWholeFrom) return Grouped(std::llround(number));
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f", number);
  return text.data();
}

}  // namespace orv::bench
