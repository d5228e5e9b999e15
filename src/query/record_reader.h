// Reading one field of a location record by record.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "storage/field_reader.h"
#include "storage/storage.h"

namespace orv::query {

/// The cells of field `fld` of a matrix, a dBASE III table or a view, found once and then read by
/// the location's own record numbers. Gives what `CellClass::ReadCell` gives, failures and error
/// codes included. Good for a loop, as long as the field keeps its style and its file stays open.
class RecordReader {
 public:
  /// Raises 9 for a field beyond the table.
  RecordReader(storage::Storage& storage, const storage::Location& at, std::int16_t fld);

  /// The text of record `r`'s cell, from record 1 on; good until the next call or write.
  std::string_view Read(std::int32_t r);
  /// Whether the record read last has a cell of its own: a pointer, bytes in the field's data, or
  /// an entry of the dictionary.
  bool HasCell() const;

 private:
  storage::Storage& storage_;
  storage::Location at_;
  std::int16_t field_;
  std::optional<storage::FieldReader> reader_;  ///< of a container's field
  bool lastIsEmpty_ = true;
};

}  // namespace orv::query
