// The keys of a sort put into order: which texts are equal, and which is less.
#pragma once

#include <cstdint>
#include <vector>

#include "query/sort_keys.h"

namespace orv::query {

/// The keys by text, character code by character code; equal ones stay in the order of their
/// numbers.
struct KeyRanks {
  /// The keys' numbers, the least text first.
  std::vector<std::int32_t> sorted;
  /// For each place in `sorted`, the first place of the keys with the same text.
  std::vector<std::int32_t> first;
};

KeyRanks RankKeys(const SortKeys& keys);

}  // namespace orv::query
