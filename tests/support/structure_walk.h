// A walk over everything that is alive in a container file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/container_bytes.h"

namespace orv::test {

/// What a byte of a file is for.
enum class ByteUse : std::uint8_t {
  kDead,    ///< belongs to no structure
  kUnread,  ///< nobody reads it: the banner
  kText,    ///< of a cell, a name or a title
  kFixed,   ///< a cell of a fixed field
  kIndex,   ///< an entry of a dictionary index
  kPointer,
  kCount,   ///< of records, fields, entries of a block
  kLength,  ///< of a piece
  kCode,    ///< a cell code
  kStyle,
  kCellSize,
  kDataType,
  kMark,  ///< always the same: the file's marks, header words, reserved bytes
};

/// Whether the byte holds a value and no structure.
bool IsContent(ByteUse use);
/// The use in a word.
std::string_view UseName(ByteUse use);

/// What a walk met, and what is wrong with it.
struct StructureWalk {
  std::vector<std::string> problems;  ///< empty for a sound file
  std::size_t matrices = 0;
  std::size_t fields = 0;
  std::size_t cells = 0;  ///< of free fields, nested matrices included
  std::size_t liveBytes = 0;
  std::vector<ByteUse> uses;  ///< of every byte of the file

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
