// The description of a file that `orv info` prints.
#pragma once

#include <iosfwd>

#include "cli/target.h"

namespace orv::cli {

/// A path has at most 32 steps.
inline constexpr int kGreatestDepth = 32;

struct InfoLimits {
  int nested = 10;  ///< nested matrices listed of each matrix
  int depth = 4;    ///< how deep the tree is followed
};

/// Writes kind and size of the file and, of every matrix from the target's down, path, title,
/// record and field counts and the fields' names and styles. Throws `Failure`.
void WriteInfo(const Target& target, const InfoLimits& limits, std::ostream& out);

}  // namespace orv::cli
