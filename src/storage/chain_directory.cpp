#include "storage/chain_directory.h"

#include <algorithm>

#include "storage/layout.h"

namespace orv::storage {

using layout::kChainHeadBytes;
using platform::File;
using platform::Raise;
using platform::RunTimeError;

ChainBlocks::Block ChainBlocks::Read(const File& file, std::size_t index) const {
  const std::int32_t position = known_[index].position;
  return {position, First(index), file.Int32At(position)};
}

ChainBlocks::Block ChainBlocks::FindElsewhere(const File& file, std::int64_t k) {
  if (k < 1) Raise(RunTimeError::kSubscript);
  if (known_.empty()) Append(file, start_, 1);
  if (k < last_.first) return Read(file, IndexOf(k));
  // The chain goes on from the last known block until a block holds entry `k` or the chain ends.
  while (k >= last_.first + last_.count) {
    const std::int32_t next =
        file.Int32At(std::int64_t{last_.position} + kChainHeadBytes + last_.count * entryBytes_);
    if (next == 0) break;
    file.Announce(FurtherOn(next));
    Append(file, next, last_.first + last_.count);
  }
  return last_;
}

/// Where a block some places behind the one at `next` probably lies. The walk would wait for each
/// block in turn, for its successor's position stands in it; announced in time, the blocks arrive
/// together, which halves the walk. Chains that grew record by record have blocks at like
/// distances: as far ahead as the block so many places back is behind.
std::int64_t ChainBlocks::FurtherOn(std::int32_t next) const {
  constexpr std::size_t kPlaces = 8;
  if (known_.size() < kPlaces) return next;
  return 2 * std::int64_t{next} - known_[known_.size() - kPlaces].position;
}

void ChainBlocks::Append(const File& file, std::int32_t position, std::int64_t first) {
  if (!file.Contains(position, kChainHeadBytes) || first - 1 > platform::kGreatestLength) {
    Raise(RunTimeError::kSubscript);
  }
  const std::int64_t count = file.Int32At(position);
  if (count < 0 || !file.Contains(position, BytesOf(count))) Raise(RunTimeError::kSubscript);
  if (bytes_ + BytesOf(count) > file.Length()) Raise(RunTimeError::kSubscript);
  Enter({position, first, count});
}

/// The last block that begins at or before entry `k`. Chains that grew by equal steps, the usual
/// ones, are found by the first guess, which assumes that entries are spread evenly over the
/// blocks.
std::size_t ChainBlocks::IndexOf(std::int64_t k) const {
  const std::size_t last = known_.size() - 1;
  const auto entries = static_cast<std::size_t>(std::max(known_[last].before, 1));
  const std::size_t index = std::min(static_cast<std::size_t>(k - 1) * last / entries, last);
  if (First(index) <= k && (index == last || k < First(index + 1))) return index;
  const auto behind = std::upper_bound(
      known_.begin(), known_.end(), k - 1,
      [](std::int64_t wanted, const Known& block) { return wanted < block.before; });
  return static_cast<std::size_t>(behind - known_.begin()) - 1;
}

ChainDirectory& ChainDirectory::Of(File& file) {
  if (!file.memory()) file.memory() = std::make_unique<ChainDirectory>();
  return Own(*file.memory());
}

ChainBlocks& ChainDirectory::LookUp(File& file, std::int32_t start, std::int32_t entryBytes) {
  if (entryBytes < 1) Raise(RunTimeError::kSubscript);
  ChainDirectory& directory = Of(file);
  const std::uint64_t key = KeyOf(start, entryBytes);
  ChainBlocks& blocks = directory.arrays_.try_emplace(key, start, entryBytes).first->second;
  directory.recent_[IndexOf(key)] = {key, &blocks};
  return blocks;
}

}  // namespace orv::storage
