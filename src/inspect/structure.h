// The structures of a container file as a walk meets them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "inspect/finding.h"

namespace orv::inspect {

/// Whose a structure is: the number of the matrix in the order of the walk, and what the structure
/// belongs to inside it.
struct Place {
  std::size_t matrix = 0;
  std::int32_t field = 0;                    ///< 0 for what belongs to the whole matrix
  std::int64_t record = Finding::kNoRecord;  ///< 0 is the field's name
  friend bool operator==(const Place&, const Place&) = default;
};

enum class StructureKind {
  kFileHeader,
  kMatrix,
  kTitlePiece,
  kFieldTable,
  kDescriptorBlock,  ///< a block of the chain array of descriptors
  kDescriptor,       ///< its fixed bytes, without the name
  kNamePiece,
  kPointerBlock,  ///< a block of a free field's data
  kFixedBlock,    ///< a block of a fixed field's data
  kIndex,         ///< of a dictionary field
  kCell,          ///< the code of a text cell
  kTextPiece,
};

/// The kind in words: "descriptor array".
std::string_view KindWords(StructureKind kind);

/// One structure. Blocks and pieces are parts of a chain.
struct Structure {
  StructureKind kind = StructureKind::kFileHeader;
  Place place;
  std::int64_t position = 0;
  std::int64_t bytes = 0;
  /// Bytes of an entry of a block or index, of the length field of a piece.
  std::int64_t width = 0;
  /// Entries of a block or index; bytes of a piece's text; 1 for a matrix that a cell holds.
  std::int64_t count = 0;
  std::int64_t first = 1;  ///< number of a block's first entry; number of a piece in its text
};

/// Whose the structure is, in words: "cell of /[3,1], field 2, record 7". `path` is its matrix's.
std::string OwnerText(const Structure& structure, const std::string& path);

/// A structure whose bytes, or some of them, belong to another one that was met before.
struct Conflict {
  Structure wanted;
  std::int64_t at = 0;    ///< the first position that is taken
  std::int64_t slot = 0;  ///< position of the pointer that led here
};

/// What a walk tells.
class WalkObserver {
 public:
  virtual ~WalkObserver() = default;
  /// A structure that lies inside the file and shares no byte with an earlier one.
  virtual void OnStructure(const Structure&) {}
  virtual void OnFinding(const Finding&) {}
  virtual void OnConflict(const Conflict&) {}
};

}  // namespace orv::inspect
