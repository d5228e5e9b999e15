#include "query/key_ranks.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace orv::query {

namespace {

/// A key with the bytes that decide nearly always.
struct HeadedKey {
  std::uint64_t head;
  std::int32_t key;
};

using HeadedKeys = std::vector<HeadedKey>;

constexpr unsigned kDigitBits = 8;
constexpr std::size_t kDigits = 256;
constexpr unsigned kHeadBits = 64;

std::size_t Digit(std::uint64_t head, unsigned shift) {
  return static_cast<std::size_t>(head >> shift & (kDigits - 1));
}

/// Moves the keys into the order of one byte of their heads, keeping the order of equal ones.
/// Nothing needs to move when the byte is the same in all.
void SortByDigit(HeadedKeys& keys, HeadedKeys& room, unsigned shift) {
  std::array<std::size_t, kDigits> places{};
  for (const HeadedKey& key : keys) ++places[Digit(key.head, shift)];
  if (places[Digit(keys.front().head, shift)] == keys.size()) return;
  std::size_t place = 0;
  for (std::size_t& count : places) place += std::exchange(count, place);
  for (const HeadedKey& key : keys) room[places[Digit(key.head, shift)]++] = key;
  keys.swap(room);
}

/// Whether keys with equal heads are equal texts: short keys of one length are.
bool AreEqual(const SortKeys& keys, const HeadedKey* begin, const HeadedKey* end) {
  if (end - begin == 1) return true;
  const std::size_t size = keys.Get(begin->key).size();
  if (size > SortKeys::kHeadBytes) return false;
  return std::all_of(begin, end,
                     [&](const HeadedKey& key) { return keys.Get(key.key).size() == size; });
}

/// Places the keys with one head behind those placed before.
void PlaceGroup(const SortKeys& keys, HeadedKey* begin, HeadedKey* end, KeyRanks& ranks) {
  const bool equal = AreEqual(keys, begin, end);
  if (!equal) {
    std::stable_sort(begin, end, [&keys](const HeadedKey& a, const HeadedKey& b) {
      return keys.Get(a.key) < keys.Get(b.key);
    });
  }
  for (const HeadedKey* key = begin; key != end; ++key) {
    const auto place = static_cast<std::int32_t>(ranks.sorted.size());
    const bool opens = key == begin || (!equal && keys.Get(key->key) != keys.Get((key - 1)->key));
    ranks.first.push_back(opens ? place : ranks.first.back());
    ranks.sorted.push_back(key->key);
  }
}

}  // namespace

KeyRanks RankKeys(const SortKeys& keys) {
  const auto count = static_cast<std::size_t>(keys.Count());
  KeyRanks ranks;
  if (count == 0) return ranks;
  HeadedKeys headed(count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto key = static_cast<std::int32_t>(i);
    headed[i] = {keys.Head(key), key};
  }
  HeadedKeys room(count);
  for (unsigned shift = 0; shift < kHeadBits; shift += kDigitBits) SortByDigit(headed, room, shift);
  room = {};

  ranks.sorted.reserve(count);
  ranks.first.reserve(count);
  HeadedKey* const end = headed.data() + count;
  for (HeadedKey* begin = headed.data(); begin != end;) {
    HeadedKey* behind = begin + 1;
    while (behind != end && behind->head == begin->head) ++behind;
    PlaceGroup(keys, begin, behind, ranks);
    begin = behind;
  }
  return ranks;
}

}  // namespace orv::query
