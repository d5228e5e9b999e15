// The data of one field as insertions and writings see it: entries of one width, whatever the
// style.
#pragma once

#include <cstdint>

#include "platform/file.h"
#include "storage/chain_array.h"
#include "storage/field_style.h"
#include "storage/layout.h"
#include "storage/type_tables.h"

namespace orv::storage {

/// The entries of a field's data. Free fields hold pointers, fixed ones the cells, dictionary ones
/// indexes; compressed fields, and styles with impossible widths, hold no entries that could be
/// touched.
class FieldData {
 public:
  FieldData(platform::File& file, std::int32_t matrix, std::int32_t descriptor, TypeTables& types)
      : file_(file), descriptor_(descriptor), start_(file.Int32At(descriptor)) {
    if (!HoldsFreeCells(descriptor, file)) Examine(matrix, types);
  }

  bool HasEntries() const { return width_ > 0; }
  bool IsAllocated() const { return start_ != 0; }

  /// Allocates a first block of `count` empty entries and stores its position in the descriptor.
  void Allocate(std::int32_t count);
  /// Makes entries up to `count` exist, the new ones empty. `used` of them are in use, which a
  /// dictionary index cannot tell by itself.
  void Grow(std::int32_t used, std::int32_t count) {
    // New entries are zeros, which is what a free field's empty cell is.
    if (style_.freeSize == free_size::kFree) return GrowChain(file_, start_, count, width_);
    GrowOther(used, count);
  }
  /// Moves entries `from` to `from + count - 1` up by `distance` and empties those they leave
  /// behind.
  void MoveUp(std::int32_t from, std::int32_t count, std::int32_t distance);

 private:
  /// Width and empty entry of a field that is not free.
  void Examine(std::int32_t matrix, TypeTables& types);
  void GrowOther(std::int32_t used, std::int32_t count);
  void GrowIndex(std::int32_t used, std::int32_t count);
  void Fill(std::int64_t from, std::int64_t count);

  platform::File& file_;
  std::int32_t descriptor_;
  FieldStyle style_;
  std::int32_t start_;
  std::int32_t width_ = layout::kPointerBytes;
  char empty_ = 0;  ///< what an empty entry consists of
};

}  // namespace orv::storage
