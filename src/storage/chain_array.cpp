#include "storage/chain_array.h"

#include <algorithm>

#include "storage/bytes.h"
#include "storage/chain_directory.h"
#include "storage/layout.h"

namespace orv::storage {

using layout::kChainHeadBytes;
using layout::kPointerBytes;
using platform::File;
using platform::Raise;
using platform::RunTimeError;

namespace {

std::int64_t EntryPosition(const ChainBlocks::Block& block, std::int64_t k, std::int32_t w) {
  return std::int64_t{block.position} + kChainHeadBytes + (k - block.first) * w;
}

ChainBlocks::Block FindBlock(File& file, std::int32_t start, std::int64_t k, std::int32_t w) {
  const std::int64_t count = FirstBlockEntries(file, start, w);
  if (k >= 1 && k <= count) return {start, 1, count};
  return ChainDirectory::Blocks(file, start, w).Find(file, k);
}

bool Holds(const ChainBlocks::Block& block, std::int64_t k) {
  return k >= block.first && k < block.first + block.count;
}

ChainEntry EntryAt(const File& file, std::int64_t position, std::int32_t w) {
  ChainEntry entry{static_cast<std::int32_t>(position), 0};
  if (w == 2) entry.value = file.Int16At(position);
  if (w == kPointerBytes) entry.value = file.Int32At(position);
  return entry;
}

/// Appends a block that ends with entry `k` behind the last block; returns the entry's position
/// less 4.
inline std::int32_t AppendBlock(File& file, ChainBlocks& blocks, const ChainBlocks::Block& last,
                                std::int64_t k, std::int32_t w) {
  const std::int64_t count = k - (last.first - 1 + last.count);
  const std::int32_t block = AppendChainBlock(file, count, w);
  file.WriteInt32(EntryPosition(last, last.first + last.count, w), block);
  blocks.Follow(block, count);
  return static_cast<std::int32_t>(block + (count - 1) * w);
}

}  // namespace

std::int32_t EndOfFile(const File& file) {
  const std::int64_t position = file.Length() + 1;
  if (position > platform::kGreatestLength) Raise(RunTimeError::kOverflow);
  return static_cast<std::int32_t>(position);
}

std::int32_t AppendChainBlock(File& file, std::int64_t count, std::int32_t w) {
  const std::int32_t block = EndOfFile(file);
  file.Reach(block, kChainHeadBytes + count * w + kPointerBytes);  // what it gains is zeros
  file.WriteInt32(block, static_cast<std::int32_t>(count));
  return block;
}

ChainEntry ReadChainEntry(File& file, std::int32_t start, std::int64_t k, std::int32_t w,
                          bool mayGrow) {
  if (start == 0) return {};
  const ChainBlocks::Block block = FindBlock(file, start, k, w);
  if (Holds(block, k)) return EntryAt(file, EntryPosition(block, k, w), w);
  if (!mayGrow || k < 1) Raise(RunTimeError::kSubscript);
  return {AppendBlock(file, ChainDirectory::Blocks(file, start, w), block, k, w), 0};
}

ChainRun FindRunByDirectory(File& file, std::int32_t start, std::int64_t k, std::int32_t w) {
  const ChainBlocks::Block block = ChainDirectory::Blocks(file, start, w).Find(file, k);
  if (!Holds(block, k)) return {};
  return {EntryPosition(block, k, w), block.first + block.count - k};
}

std::int64_t ChainLength(File& file, std::int32_t start, std::int32_t w) {
  if (start == 0) return 0;
  const ChainBlocks::Block last = FindBlock(file, start, platform::kGreatestLength, w);
  return last.first - 1 + last.count;
}

void GrowChain(File& file, std::int32_t start, std::int64_t count, std::int32_t w) {
  if (start == 0 || count < 1 || count <= FirstBlockEntries(file, start, w)) return;
  ChainBlocks& blocks = ChainDirectory::Blocks(file, start, w);
  const ChainBlocks::Block block = blocks.Find(file, count);
  if (!Holds(block, count)) AppendBlock(file, blocks, block, count, w);
}

void MoveChainEntries(File& file, std::int32_t start, std::int64_t from, std::int64_t count,
                      std::int64_t distance, std::int32_t w) {
  // Entries that are neighbours both here and there move together.
  while (count > 0) {
    const std::int64_t last = from + count - 1;
    const ChainBlocks::Block source = FindBlock(file, start, last, w);
    const ChainBlocks::Block target = FindBlock(file, start, last + distance, w);
    if (!Holds(source, last) || !Holds(target, last + distance)) Raise(RunTimeError::kSubscript);
    const std::int64_t run =
        std::min({count, last - source.first + 1, last + distance - target.first + 1});
    file.Move(EntryPosition(source, last - run + 1, w),
              EntryPosition(target, last + distance - run + 1, w), run * w);
    count -= run;
  }
}

}  // namespace orv::storage
