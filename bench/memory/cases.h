// What is done to the engine, and what it takes.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "support/bench_folder.h"

namespace orv::bench {

/// What one case came to.
struct Usage {
  std::string what;
  std::string thing;  ///< what the memory is in proportion to
  std::int64_t things = 1;
  std::int64_t after = 0;   ///< bytes held when it was done, the file still open
  std::int64_t most = 0;    ///< bytes held at the worst moment
  std::int64_t closed = 0;  ///< bytes held when all files were closed again
  /// Bytes a thing that must not be exceeded afterwards.
  std::optional<std::int64_t> bound = std::nullopt;

  /// What may stay when all files are closed: the path resolved last, a few empty tables.
  static constexpr std::int64_t kGreatestRest = 65536;

  bool Exceeds() const { return bound && after > *bound * things; }
  bool GivesBack() const { return closed <= kGreatestRest; }
};

/// A case that runs when it is its turn.
using Case = std::function<Usage()>;

std::vector<Case> AllCases(const BenchFolder& folder, std::int32_t records);

}  // namespace orv::bench
