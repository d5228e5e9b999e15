#include "convert/distinct_values.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

namespace orv::convert {
namespace {

constexpr std::size_t kFirstSlots = 1024;
constexpr std::size_t kBlock = std::size_t{64} * 1024;
/// At most three slots of four are taken.
constexpr std::size_t kTaken = 3;
constexpr std::size_t kOf = 4;

std::size_t RoundedUp(std::size_t bytes, std::size_t step) {
  return (bytes + step - 1) / step * step;
}

}  // namespace

DistinctValues::DistinctValues() : slots_(kFirstSlots) {}

std::int32_t DistinctValues::Add(std::string_view value) {
  const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(value));
  Slot& slot = FindSlot(value, hash);
  if (slot.number != 0) {
    ++slot.entry->count;
    return slot.number;
  }
  Entry* const entry = Keep(value);
  entries_.push_back(entry);
  slot = {hash, size(), entry};
  if (entries_.size() * kOf > slots_.size() * kTaken) Widen();
  return size();
}

DistinctValues::Slot& DistinctValues::FindSlot(std::string_view value, std::uint32_t hash) {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
    Slot& slot = slots_[i];
    if (slot.number == 0) return slot;
    if (slot.hash == hash && slot.entry->Text() == value) return slot;
  }
}

void DistinctValues::Widen() {
  std::vector<Slot> wider(slots_.size() * 2);
  const std::size_t mask = wider.size() - 1;
  for (const Slot& slot : slots_) {
    if (slot.number == 0) continue;
    std::size_t i = slot.hash & mask;
    while (wider[i].number != 0) i = (i + 1) & mask;
    wider[i] = slot;
  }
  slots_ = std::move(wider);
}

DistinctValues::Entry* DistinctValues::Keep(std::string_view value) {
  const std::size_t bytes = RoundedUp(sizeof(Entry) + value.size(), alignof(Entry));
  if (bytes > room_ - used_) {
    room_ = std::max(kBlock, bytes);
    used_ = 0;
    blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(room_));
  }
  auto* const place = reinterpret_cast<Entry*>(blocks_.back().get() + used_);
  Entry* const entry = std::construct_at(place, Entry{1, static_cast<std::uint32_t>(value.size())});
  used_ += bytes;
  std::copy(value.begin(), value.end(), entry->Place());
  return entry;
}

}  // namespace orv::convert
