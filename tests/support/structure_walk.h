// A walk over everything that is alive in a container file.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "support/container_bytes.h"

namespace orv::test {

/// What a walk met, and what is wrong with it.
struct StructureWalk {
  std::vector<std::string> problems;  ///< empty for a sound file
  std::size_t matrices = 0;
  std::size_t fields = 0;
  std::size_t cells = 0;  ///< of free fields, nested matrices included
  std::size_t liveBytes = 0;

  /// The problems, one a line.
  std::string Text() const;
};

/// Walks from the header through every matrix, field table, descriptor, data block, index, cell and
/// text. A sound file has every pointer inside the file, no byte that belongs to two live
/// structures, a descriptor in every slot up to the field count and none behind it, cells for
/// records only, and indexes for values that the dictionary holds.
StructureWalk WalkStructures(std::string_view file);

/// The integers of a sound file that mean something, by position: pointers, counts, lengths, codes,
/// style bytes, index entries.
std::vector<Word> MeaningfulWords(std::string_view file);

}  // namespace orv::test
