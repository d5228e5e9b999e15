#include "query/sort_keys.h"

#include <algorithm>

namespace orv::query {

void SortKeys::Reserve(std::int32_t count) { ends_.reserve(static_cast<std::size_t>(count)); }

void SortKeys::Add(std::string_view key) {
  bytes_.append(key);
  ends_.push_back(bytes_.size());
}

void SortKeys::PadTo(std::int32_t count) {
  while (Count() < count) Add({});
}

std::string_view SortKeys::Get(std::int32_t key) const {
  const auto index = static_cast<std::size_t>(key);
  const std::size_t start = index == 0 ? 0 : ends_[index - 1];
  return {bytes_.data() + start, ends_[index] - start};
}

std::uint64_t SortKeys::Head(std::int32_t key) const {
  constexpr unsigned kByteBits = 8;
  const std::string_view text = Get(key).substr(0, kHeadBytes);
  std::uint64_t head = 0;
  for (const char c : text) head = head << kByteBits | static_cast<unsigned char>(c);
  for (std::size_t i = text.size(); i < kHeadBytes; ++i) head <<= kByteBits;
  return head;
}

}  // namespace orv::query
