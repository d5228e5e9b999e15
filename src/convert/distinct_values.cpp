#include "convert/distinct_values.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace orv::convert {
namespace {

constexpr std::size_t kFirstSlots = 1024;
constexpr std::size_t kTextBlock = std::size_t{64} * 1024;

}  // namespace

DistinctValues::DistinctValues() : slots_(kFirstSlots) {}

std::int32_t DistinctValues::Add(std::string_view value) {
  const std::size_t hash = std::hash<std::string_view>()(value);
  const std::size_t slot = FindSlot(value, hash);
  const std::int32_t known = slots_[slot];
  if (known != 0) {
    ++entries_[static_cast<std::size_t>(known - 1)].count;
    return known;
  }
  entries_.push_back({Keep(value), hash, 1});
  slots_[slot] = size();
  if (entries_.size() * 2 > slots_.size()) Widen();
  return size();
}

std::size_t DistinctValues::FindSlot(std::string_view value, std::size_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t slot = hash & mask;; slot = (slot + 1) & mask) {
    if (slots_[slot] == 0) return slot;
    const Entry& entry = At(slots_[slot]);
    if (entry.hash == hash && entry.value == value) return slot;
  }
}

void DistinctValues::Widen() {
  slots_.assign(slots_.size() * 2, 0);
  const std::size_t mask = slots_.size() - 1;
  for (std::int32_t i = 1; i <= size(); ++i) {
    std::size_t slot = At(i).hash & mask;
    while (slots_[slot] != 0) slot = (slot + 1) & mask;
    slots_[slot] = i;
  }
}

std::string_view DistinctValues::Keep(std::string_view value) {
  if (value.empty()) return {};
  if (value.size() > room_) {
    room_ = std::max(kTextBlock, value.size());
    texts_.push_back(std::make_unique_for_overwrite<char[]>(room_));
  }
  // A block is filled from its end, so that what is left of it is all the state there is.
  room_ -= value.size();
  char* const place = texts_.back().get() + room_;
  std::memcpy(place, value.data(), value.size());
  return {place, value.size()};
}

}  // namespace orv::convert
