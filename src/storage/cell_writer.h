// Writing the cells of a container matrix by their field's style.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/file.h"
#include "storage/chain_array.h"
#include "storage/error_code.h"
#include "storage/field_style.h"
#include "storage/layout.h"
#include "storage/type_tables.h"

namespace orv::storage {

class CellWriter {
 public:
  CellWriter(platform::File& file, std::int32_t matrix, TypeTables& types, ErrorCode& error)
      : file_(file), matrix_(matrix), types_(types), error_(error) {}

  /// Names the field: the name stays in its form, a long one continues in further pieces.
  void WriteName(std::int32_t descriptor, std::string_view text);

  /// Writes record `r`'s cell of field `f` (whose descriptor is given), giving the field's data
  /// room first. A record outside the matrix raises 9. A value that the style cannot hold leaves
  /// its code; after any error the cell is as it was.
  void Write(std::int32_t descriptor, std::int32_t r, std::int16_t f, std::string_view text);

 private:
  void WriteFree(std::int32_t descriptor, std::int32_t r, std::int16_t f, std::string_view text);
  /// Writes over the cell that the pointer slot leads to.
  void Overwrite(std::int32_t slot, std::int32_t r, std::int16_t f, std::string_view text);
  /// The pointer slot of record `r` in a free field's data; a count of 0 when the data ends before.
  ChainRun FindEntry(std::int32_t descriptor, std::int32_t r) const {
    return FindChainRun(file_, file_.Int32At(descriptor), r, layout::kPointerBytes);
  }
  /// The same after the data was given an entry for every record.
  ChainRun MakeEntry(std::int32_t descriptor, std::int32_t r);
  /// Writes by a style that keeps no cell by itself.
  void WriteOther(std::int32_t descriptor, std::int32_t r, std::string_view text);
  void WriteFixed(std::int32_t descriptor, std::int32_t r, const FieldStyle& style,
                  std::string_view text);

  platform::File& file_;
  std::int32_t matrix_;
  TypeTables& types_;
  ErrorCode& error_;
};

}  // namespace orv::storage
