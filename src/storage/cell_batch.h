// Appending many new cells at once.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"

namespace orv::storage {

/// Collects new cells and appends them to the file in large pieces; only then are their positions
/// stored in the pointer slots. A batch that is dropped without `Flush` leaves its last cells out.
class CellBatch {
 public:
  explicit CellBatch(platform::File& file) : file_(file) {}

  /// A new cell with this code and text, whose position goes into the slot at `slot`. A text that
  /// the code's short form cannot hold in one piece is kept in several.
  void Add(std::int64_t slot, std::int16_t code, std::string_view text);
  /// Writes what was collected.
  void Flush();

 private:
  struct Pending {
    std::int64_t slot;
    std::size_t offset;  ///< of the cell within the collected bytes
  };

  platform::File& file_;
  std::string bytes_;
  std::vector<Pending> pending_;
};

/// The code of a new text cell of this type number: the long form where the text needs it.
std::int16_t NewCellCode(std::int16_t type, std::string_view text);

}  // namespace orv::storage
