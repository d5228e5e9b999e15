// The cell service.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "storage/cell_code.h"
#include "storage/field_class.h"
#include "storage/path_resolver.h"
#include "storage/type_tables.h"

namespace orv::storage {

/// Finds, reads and writes cells by path. One for the engine.
class CellClass final : public CellFinder {
 public:
  CellClass(PathResolver& resolver, FieldClass& fields, TypeTables& types, const Ports& ports,
            ErrorCode& error)
      : resolver_(resolver), fields_(fields), types_(types), ports_(ports), error_(error) {}

  /// The text of cell (`rec`, `fld`) of the matrix or view, with `frml` as its type's formula gives
  /// it; records below 1 read the field's name. `isMtx` receives whether the cell holds a matrix.
  /// Record -1 sets 20 and gives "<Error=20>", a record beyond a view 20 and "[Error=20]"; other
  /// failures raise or leave their code and give the empty text. The view is good until the next
  /// call.
  std::string_view SvrGetCellValue(const std::wstring& p, std::int32_t rec, std::int16_t fld,
                                   bool& isMtx, bool frml);

  /// Writes the text into cell (`rec`, `fld`) by the field's style. Record -1 sets 20, other
  /// records below 1 name the field, a record beyond the matrix 9. After an error nothing was
  /// written.
  void SvrSetCellValue(std::string_view v, const std::wstring& p, std::int32_t rec,
                       std::int16_t fld);

  /// The same read by location, without formula: record 0 or below is the name.
  std::string_view ReadCell(const Location& at, std::int32_t rec, std::int16_t fld, bool& isMtx);

  std::int32_t FindNestedMatrix(std::int32_t matrix, std::int32_t r, std::int16_t f,
                                platform::File& file) override;

  /// Accepts its arguments and does nothing.
  void Area();
  /// Returns nothing.
  void Cell();

 private:
  bool MapToUnderlying(const Location& at, std::int32_t& rec, std::int16_t& fld);
  std::string_view ReadUnderlying(const Location& at, std::int32_t rec, std::int16_t fld,
                                  bool& isMtx);
  std::string_view ReadDbase(const Location& at, std::int32_t rec, std::int16_t fld);
  std::string_view ReadOther(const Location& at, std::int32_t descriptor, std::int32_t rec);
  /// The field's descriptor; 0, with 255, for an empty slot of the field table.
  std::int32_t DescriptorOf(const Location& at, std::int16_t fld) {
    const std::int32_t descriptor = fields_.GetFieldPos(at.position, fld, *at.file);
    if (descriptor >= 1) return descriptor;
    error_.Set(code::kBadArgument);
    return 0;
  }

  PathResolver& resolver_;
  FieldClass& fields_;
  TypeTables& types_;
  const Ports& ports_;
  ErrorCode& error_;
  std::int16_t code_ = 0;  ///< of the cell read last
  std::string buffer_;
};

}  // namespace orv::storage
