// The entries of a chain array in a file that may be damaged.
#pragma once

#include <cstdint>

#include "platform/file.h"
#include "storage/chain_array.h"

namespace orv::inspect {

/// The entries of a chain array as far as its blocks can be followed: the array ends where the
/// damage begins.
class ChainEntries {
 public:
  ChainEntries(platform::File& file, std::int32_t start, std::int32_t width)
      : file_(file), start_(start), width_(width) {}

  /// Entry `k` and its neighbours; a count of 0 behind the last one that can be reached.
  storage::ChainRun Run(std::int64_t k);
  /// Whether a call met damage.
  bool broken() const { return broken_; }

  /// How many entries can be reached.
  std::int64_t Count();
  /// The number of the last entry that is not 0, of pointers; 0 when there is none.
  std::int64_t LastUsed();

 private:
  platform::File& file_;
  std::int32_t start_;
  std::int32_t width_;
  bool broken_ = false;
};

}  // namespace orv::inspect
