// The data of one field as insertions and writings see it: entries of one width, whatever the
// style.
#pragma once

#include <cstdint>

#include "platform/file.h"
#include "storage/field_style.h"
#include "storage/type_tables.h"

namespace orv::storage {

/// The entries of a field's data. Free fields hold pointers, fixed ones the cells, dictionary ones
/// indexes; compressed fields, and styles with impossible widths, hold no entries that could be
/// touched.
class FieldData {
 public:
  FieldData(platform::File& file, std::int32_t matrix, std::int32_t descriptor, TypeTables& types);

  bool HasEntries() const { return width_ > 0; }
  bool IsAllocated() const { return start_ != 0; }

  /// Allocates a first block of `count` empty entries and stores its position in the descriptor.
  void Allocate(std::int32_t count);
  /// Makes entries up to `count` exist, the new ones empty. `used` of them are in use, which a
  /// dictionary index cannot tell by itself.
  void Grow(std::int32_t used, std::int32_t count);
  /// Moves entries `from` to `from + count - 1` up by `distance` and empties those they leave
  /// behind.
  void MoveUp(std::int32_t from, std::int32_t count, std::int32_t distance);

 private:
  void GrowIndex(std::int32_t used, std::int32_t count);
  void Fill(std::int64_t from, std::int64_t count);

  platform::File& file_;
  std::int32_t descriptor_;
  FieldStyle style_;
  std::int32_t start_;
  std::int32_t width_ = 0;
  char empty_ = 0;  ///< what an empty entry consists of
};

}  // namespace orv::storage
