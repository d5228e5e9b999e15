// Chain arrays: growable arrays of fixed-width entries, kept as a linked list of blocks.
//
// A block is an int32 entry count n, n entries of w bytes, and the int32 position of the next
// block. Blocks never move or change size, they only gain a successor; so a directory in memory of
// the blocks seen so far stays true, and an entry behind 100,000 single-entry blocks costs no more
// than one in the first block.
#pragma once

#include <cstdint>

#include "platform/file.h"
#include "storage/layout.h"

namespace orv::storage {

/// Where an entry stands and, for widths 2 and 4, its value (otherwise 0).
struct ChainEntry {
  std::int32_t position = 0;
  std::int32_t value = 0;
};

/// A run of neighbouring entries inside one block.
struct ChainRun {
  std::int64_t position = 0;  ///< of the first entry asked for
  std::int64_t count = 0;     ///< entries from there to the end of the block
};

/// Locates entry `k` (from 1) of the array at `start` with entry width `w`. A start of 0 gives
/// zeros. An array that is too short is grown to `k` entries when `mayGrow` is true, otherwise 9 is
/// raised; so it is for a chain that loops or leads outside the file.
///
/// After a growth the position reported is 4 bytes short of the entry. Callers grow with one call
/// and locate with another.
ChainEntry ReadChainEntry(platform::File& file, std::int32_t start, std::int64_t k, std::int32_t w,
                          bool mayGrow);

/// How many entries the array's first block has; 0 for a block that does not lie inside the file.
/// The first block is the whole array of every table that was loaded at once, and found without a
/// directory.
inline std::int64_t FirstBlockEntries(const platform::File& file, std::int32_t start,
                                      std::int32_t w) {
  const std::int64_t count = file.Int32At(start);
  const std::int64_t bytes = layout::kChainHeadBytes + count * w + layout::kPointerBytes;
  return w > 0 && file.Contains(start, bytes) ? count : 0;
}

/// `FindChainRun` for every `k` and block.
ChainRun FindRunByDirectory(platform::File& file, std::int32_t start, std::int64_t k,
                            std::int32_t w);

/// Entry `k` and its neighbours up to the end of its block; a count of 0 when the array has no
/// entry `k`. Raises 9 for a damaged chain.
inline ChainRun FindChainRun(platform::File& file, std::int32_t start, std::int64_t k,
                             std::int32_t w) {
  if (start == 0 || k < 1) return {};
  const std::int64_t count = FirstBlockEntries(file, start, w);
  if (k > count) return FindRunByDirectory(file, start, k, w);
  return {std::int64_t{start} + layout::kChainHeadBytes + (k - 1) * w, count - k + 1};
}

/// How many entries the array has, 0 for a start of 0. Raises 9 for a damaged chain.
std::int64_t ChainLength(platform::File& file, std::int32_t start, std::int32_t w);

/// Makes the array hold at least `count` entries; does nothing when it does already. New entries
/// consist of the byte `fill`, and do so before the array refers to them.
void GrowChain(platform::File& file, std::int32_t start, std::int64_t count, std::int32_t w,
               char fill = 0);

/// Appends a block of `count` entries that consist of the byte `fill` at the end of the file and
/// returns its position; nothing refers to it yet.
std::int32_t AppendChainBlock(platform::File& file, std::int64_t count, std::int32_t w,
                              char fill = 0);

/// Moves entries `from` to `from + count - 1` up by `distance` entries, the highest first. All
/// entries concerned must exist.
void MoveChainEntries(platform::File& file, std::int32_t start, std::int64_t from,
                      std::int64_t count, std::int64_t distance, std::int32_t w);

/// The position behind the file's last byte, where new structures go. Raises 6 when no position is
/// left.
std::int32_t EndOfFile(const platform::File& file);

}  // namespace orv::storage
