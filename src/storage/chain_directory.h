// The directory of a file's chain arrays: which block holds which entries.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/file.h"

namespace orv::storage {

/// The blocks of one chain array met so far, in order. Eight bytes a block.
class ChainBlocks {
 public:
  /// One block: its entries are numbered `first` to `first + count - 1`.
  struct Block {
    std::int32_t position = 0;
    std::int64_t first = 1;
    std::int64_t count = 0;
  };

  ChainBlocks(std::int32_t start, std::int32_t entryBytes)
      : start_(start), entryBytes_(entryBytes) {}

  /// The block that holds entry `k`, or the last block when there is no such entry. Raises 9 when
  /// the chain loops or a block does not lie inside the file.
  Block Find(const platform::File& file, std::int64_t k) {
    const bool inLast = k >= last_.first && k < last_.first + last_.count;
    return inLast ? last_ : FindElsewhere(file, k);
  }

  /// Takes in a block that was just appended to the chain, whose former last block was found here.
  void Follow(const platform::File& file) { Extend(file, last_.first + last_.count); }

 private:
  Block FindElsewhere(const platform::File& file, std::int64_t k);
  Block Read(const platform::File& file, std::size_t index) const;
  /// Follows the chain from the last known block until a block holds entry `k` or the chain ends.
  Block Extend(const platform::File& file, std::int64_t k);
  void Append(const platform::File& file, std::int32_t position, std::int64_t first);
  std::int64_t FurtherOn(std::int32_t next) const;
  std::size_t IndexOf(std::int64_t k) const;
  std::int64_t First(std::size_t index) const { return std::int64_t{firsts_[index]} + 1; }

  std::int32_t start_;
  std::int32_t entryBytes_;
  std::vector<std::int32_t> positions_;
  std::vector<std::int32_t> firsts_;  ///< entries in front of the block
  Block last_;                        ///< the last block met; blocks keep their size
  std::int64_t bytes_ = 0;  ///< of all known blocks together: a chain longer than its file loops
};

/// How many entries the index blocks of dictionary fields have room for, by position; the file
/// itself does not say it.
using IndexRoom = std::unordered_map<std::int32_t, std::int64_t>;

/// The directories of all chain arrays of one opening; lives in the file's memory.
class ChainDirectory final : public platform::FileMemory {
 public:
  static ChainDirectory& Of(platform::File& file) {
    if (!file.memory()) file.memory() = std::make_unique<ChainDirectory>();
    return static_cast<ChainDirectory&>(*file.memory());
  }
  ChainBlocks& Blocks(std::int32_t start, std::int32_t entryBytes) {
    const std::uint64_t key = (std::uint64_t{static_cast<std::uint32_t>(start)} << 32) |
                              static_cast<std::uint32_t>(entryBytes);
    Recent& recent = recent_[static_cast<std::size_t>((key ^ key >> 32) % kRecent)];
    if (recent.blocks == nullptr || recent.key != key) {
      recent = {key, &arrays_.try_emplace(key, start, entryBytes).first->second};
    }
    return *recent.blocks;
  }
  IndexRoom& indexRoom() { return indexRoom_; }

 private:
  struct Recent {
    std::uint64_t key = 0;
    ChainBlocks* blocks = nullptr;
  };
  static constexpr std::size_t kRecent = 61;  ///< a prime: starts are often evenly spaced

  std::unordered_map<std::uint64_t, ChainBlocks> arrays_;
  IndexRoom indexRoom_;
  std::array<Recent, kRecent> recent_;  ///< in front of `arrays_`: hosts go from field to field
};

}  // namespace orv::storage
