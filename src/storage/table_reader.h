// Reading the cells of a whole table: container matrix, dBASE III table, or a view of either.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "storage/field_reader.h"
#include "storage/storage.h"

namespace orv::storage {

/// Resolves every field once and then reads cells by the table's own numbers, without formulas.
/// Good as long as the table keeps its fields, their styles and their data.
class TableReader {
 public:
  /// The location must be a table. A field without a descriptor reads as empty.
  TableReader(Storage& storage, const Location& at);

  /// Records to go through; a damaged count is cut to what the file could hold.
  std::int32_t records() const { return records_; }
  std::int32_t fields() const { return fields_; }
  /// The text of a cell, good until the next call or write; record 0 gives the field's name.
  std::string_view Read(std::int32_t r, std::int32_t f);
  /// The code of the cell read last from field `f`, as `FieldReader::code` gives it; 0 in a dBASE
  /// III table.
  std::int16_t Code(std::int32_t f);
  /// The reader of field `f` of a container matrix; nullptr for a field without a descriptor and in
  /// a dBASE III table.
  FieldReader* Field(std::int32_t f);

 private:
  Storage& storage_;
  Location at_;
  std::int32_t records_;
  std::int32_t fields_;
  std::vector<std::optional<FieldReader>> readers_;  ///< of a container matrix
};

}  // namespace orv::storage
