// What the command language reads from the storage. The language writes nothing.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "storage/error_code.h"

namespace orv::command {

/// The cells of one field of one matrix, found once and then read record by record, for records
/// from 1 on. Each call gives what the call of Services with the same path, field and formula flag
/// false gives, failures included; the caller clears the error code. A column must not outlive the
/// structures it was found in: whoever holds one drops it before anything is written.
class Column {
 public:
  virtual ~Column() = default;
  /// The view is valid until the next call of Text on this column or change of `room`, which the
  /// column may use to put the text together; calls on other columns leave it alone.
  virtual std::string_view Text(std::int32_t record, std::string& room) = 0;
  /// As Services::CellTypeName, for the record that was read last.
  virtual std::string_view TypeName(std::int32_t record) = 0;
};

/// The storage as the language sees it. Any call may raise a run-time failure, which passes through
/// the language to the public member, and any call may run the language again (a cell whose type
/// has a formula).
class Services {
 public:
  virtual ~Services() = default;

  /// Number of records (fields) of the matrix, or of the filtered view, that the path names.
  virtual std::int32_t Records(const std::wstring& path) = 0;
  virtual std::int32_t Fields(const std::wstring& path) = 0;
  /// The text of a cell replaces `text`; with `formula` the cell's formula is evaluated. The error
  /// code is cleared first, as whenever a cell is read by its path.
  virtual void ReadCell(const std::wstring& path, std::int32_t record, std::int16_t field,
                        bool formula, std::string& text) = 0;
  /// The value of the property "type" of the cell's type, empty when it has none. The view is valid
  /// until the next call. Not asked after a read that left an error code.
  virtual std::string_view CellTypeName(const std::wstring& path, std::int32_t record,
                                        std::int16_t field) = 0;
  /// The first record from record 1 on whose field holds exactly the value, letter case counting;
  /// -1 when there is none.
  virtual std::int32_t FindFirst(const std::wstring& path, std::int16_t field,
                                 std::string_view value) = 0;
  /// The error code that the language shares with the storage.
  virtual storage::ErrorCode& Error() = 0;
  /// The field's cells for a condition that is tested record by record; nothing when the path or
  /// the field has no such fast access.
  virtual std::unique_ptr<Column> OpenColumn(const std::wstring& path, std::int16_t field) = 0;
};

}  // namespace orv::command
