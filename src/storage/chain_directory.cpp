#include "storage/chain_directory.h"

#include <algorithm>

#include "storage/layout.h"

namespace orv::storage {

using layout::kChainHeadBytes;
using layout::kPointerBytes;
using platform::File;
using platform::Raise;
using platform::RunTimeError;

ChainBlocks::Block ChainBlocks::Read(const File& file, std::size_t index) const {
  return {positions_[index], First(index), file.Int32At(positions_[index])};
}

ChainBlocks::Block ChainBlocks::FindElsewhere(const File& file, std::int64_t k) {
  if (k < 1) Raise(RunTimeError::kSubscript);
  if (positions_.empty()) Append(file, start_, 0);
  if (k >= last_.first) return Extend(file, k);
  return Read(file, IndexOf(k));
}

ChainBlocks::Block ChainBlocks::Extend(const File& file, std::int64_t k) {
  while (k >= last_.first + last_.count) {
    const std::int32_t next =
        file.Int32At(std::int64_t{last_.position} + kChainHeadBytes + last_.count * entryBytes_);
    if (next == 0) break;
    file.Announce(FurtherOn(next));
    Append(file, next, last_.first - 1 + last_.count);
  }
  return last_;
}

/// Where a block some places behind the one at `next` probably lies. The walk would wait for each
/// block in turn, for its successor's position stands in it; announced in time, the blocks arrive
/// together, which halves the walk. Chains that grew record by record have blocks at like
/// distances: as far ahead as the block so many places back is behind.
std::int64_t ChainBlocks::FurtherOn(std::int32_t next) const {
  constexpr std::size_t kPlaces = 8;
  if (positions_.size() < kPlaces) return next;
  return 2 * std::int64_t{next} - positions_[positions_.size() - kPlaces];
}

void ChainBlocks::Append(const File& file, std::int32_t position, std::int64_t before) {
  if (!file.Contains(position, kChainHeadBytes) || before > platform::kGreatestLength) {
    Raise(RunTimeError::kSubscript);
  }
  const std::int64_t count = file.Int32At(position);
  const std::int64_t bytes = kChainHeadBytes + count * entryBytes_ + kPointerBytes;
  if (count < 0 || !file.Contains(position, bytes)) Raise(RunTimeError::kSubscript);
  if (bytes_ + bytes > file.Length()) Raise(RunTimeError::kSubscript);
  bytes_ += bytes;
  positions_.push_back(position);
  firsts_.push_back(static_cast<std::int32_t>(before));
  last_ = {position, before + 1, count};
}

/// The last block that begins at or before entry `k`. Chains that grew by equal steps, the usual
/// ones, are found by the first guess, which assumes that entries are spread evenly over the
/// blocks.
std::size_t ChainBlocks::IndexOf(std::int64_t k) const {
  const std::size_t last = firsts_.size() - 1;
  const auto entries = static_cast<std::size_t>(std::max(firsts_[last], 1));
  const std::size_t index = std::min(static_cast<std::size_t>(k - 1) * last / entries, last);
  if (First(index) <= k && (index == last || k < First(index + 1))) return index;
  const auto behind =
      std::upper_bound(firsts_.begin(), firsts_.end(), k - 1,
                       [](std::int64_t wanted, std::int32_t before) { return wanted < before; });
  return static_cast<std::size_t>(behind - firsts_.begin()) - 1;
}

}  // namespace orv::storage
