// The directory of a file's chain arrays: which block holds which entries.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/file.h"
#include "storage/layout.h"

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

  /// Takes in a block of `count` entries that was just appended to the chain, whose former last
  /// block was found here.
  void Follow(std::int32_t position, std::int64_t count) {
    Enter({position, last_.first + last_.count, count});
  }

 private:
  struct Known {
    std::int32_t position;
    std::int32_t before;  ///< entries in front of the block
  };

  Block FindElsewhere(const platform::File& file, std::int64_t k);
  Block Read(const platform::File& file, std::size_t index) const;
  /// Takes in a block that the file says is there.
  void Append(const platform::File& file, std::int32_t position, std::int64_t first);
  std::int64_t FurtherOn(std::int32_t next) const;
  void Enter(const Block& block) {
    bytes_ += BytesOf(block.count);
    known_.push_back({block.position, static_cast<std::int32_t>(block.first - 1)});
    last_ = block;
  }
  std::size_t IndexOf(std::int64_t k) const;
  std::int64_t First(std::size_t index) const { return std::int64_t{known_[index].before} + 1; }
  std::int64_t BytesOf(std::int64_t count) const {
    return layout::kChainHeadBytes + count * entryBytes_ + layout::kPointerBytes;
  }

  std::int32_t start_;
  std::int32_t entryBytes_;
  std::vector<Known> known_;
  Block last_;              ///< the last block met; blocks keep their size
  std::int64_t bytes_ = 0;  ///< of all known blocks together: a chain longer than its file loops
};

/// How many entries the index blocks of dictionary fields have room for, by position; the file
/// itself does not say it.
using IndexRoom = std::unordered_map<std::int32_t, std::int64_t>;

/// The directories of all chain arrays of one opening; lives in the file's memory.
class ChainDirectory final : public platform::FileMemory {
 public:
  static ChainDirectory& Of(platform::File& file);
  /// The blocks of the array at `start`. Raises 9 for an impossible entry width.
  static ChainBlocks& Blocks(platform::File& file, std::int32_t start, std::int32_t entryBytes) {
    const std::uint64_t key = KeyOf(start, entryBytes);
    if (platform::FileMemory* memory = file.memory().get()) {
      const Recent& recent = Own(*memory).recent_[IndexOf(key)];
      if (recent.key == key) return *recent.blocks;
    }
    return LookUp(file, start, entryBytes);
  }
  IndexRoom& indexRoom() { return indexRoom_; }

 private:
  struct Recent {
    std::uint64_t key = 0;  ///< 0, the key of no array, marks a free entry
    ChainBlocks* blocks = nullptr;
  };
  /// A file's memory is filled here alone, and the kind is not asked for at every cell.
  static ChainDirectory& Own(platform::FileMemory& memory) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-static-cast-downcast)
    return static_cast<ChainDirectory&>(memory);
  }

  static constexpr std::size_t kRecent = 64;

  static std::uint64_t KeyOf(std::int32_t start, std::int32_t entryBytes) {
    return (std::uint64_t{static_cast<std::uint32_t>(start)} << 32) |
           static_cast<std::uint32_t>(entryBytes);
  }
  static std::size_t IndexOf(std::uint64_t key) {
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;  // makes the upper bits differ
    constexpr int kShift = 64 - std::bit_width(kRecent - 1);
    return static_cast<std::size_t>((key * kSpread) >> kShift);
  }
  static ChainBlocks& LookUp(platform::File& file, std::int32_t start, std::int32_t entryBytes);

  std::unordered_map<std::uint64_t, ChainBlocks> arrays_;
  IndexRoom indexRoom_;
  std::array<Recent, kRecent> recent_;  ///< in front of `arrays_`: hosts go from field to field
};

}  // namespace orv::storage
