#include "storage/cell_class.h"

#include "storage/cell_primitives.h"
#include "storage/cell_writer.h"
#include "storage/field_reader.h"
#include "storage/layout.h"
#include "storage/matrix.h"
#include "storage/records.h"

namespace orv::storage {

using platform::File;

namespace {

constexpr std::int32_t kRefusedRecord = -1;
constexpr std::int32_t kBeyondView = -1;
/// The two texts differ deliberately: angle brackets for the refused record, square ones beyond a
/// view.
constexpr std::string_view kRefusedText = "<Error=20>";
constexpr std::string_view kBeyondViewText = "[Error=20]";

}  // namespace

std::string_view CellClass::SvrGetCellValue(const std::wstring& p, std::int32_t rec,
                                            std::int16_t fld, bool& isMtx, bool frml) {
  error_.Clear();
  isMtx = false;
  if (rec == kRefusedRecord) {
    error_.Set(code::kRecordNumber);
    return kRefusedText;
  }
  const Location at = resolver_.ResolvePath(p);
  if (error_.IsSet()) return {};
  if (!at.IsTable()) {
    error_.Set(code::kBadArgument);
    return {};
  }
  std::int32_t record = rec;
  std::int16_t field = fld;
  if (at.IsView() && !MapToUnderlying(at, record, field)) return kBeyondViewText;
  const std::string_view text = ReadUnderlying(at, record, field, isMtx);
  if (!frml || at.IsDbase() || ports_.formulas == nullptr) return text;
  // The formula may read other cells through this very service, so it gets a text of its own.
  const std::string own(text);
  std::string result =
      ports_.formulas->EvaluateFormula(p, rec, fld, DecodeCellCode(code_).type, own);
  buffer_ = std::move(result);
  return buffer_;
}

/// Turns the numbers of a view into the matrix's own; false, with 20, for a record beyond the view.
bool CellClass::MapToUnderlying(const Location& at, std::int32_t& rec, std::int16_t& fld) {
  fld = ports_.filters->GetCashFld(at.filter, fld);
  if (rec < 1) return true;
  rec = ports_.filters->GetFilterValue(at.filter, rec);
  if (rec != kBeyondView) return true;
  error_.Set(code::kRecordNumber);
  return false;
}

std::string_view CellClass::ReadCell(const Location& at, std::int32_t rec, std::int16_t fld,
                                     bool& isMtx) {
  isMtx = false;
  if (at.IsView() && !MapToUnderlying(at, rec, fld)) return kBeyondViewText;
  return ReadUnderlying(at, rec, fld, isMtx);
}

std::string_view CellClass::ReadUnderlying(const Location& at, std::int32_t rec, std::int16_t fld,
                                           bool& isMtx) {
  code_ = 0;
  if (at.IsDbase()) return ReadDbase(at, rec, fld);
  const std::int32_t descriptor = DescriptorOf(at, fld);
  if (descriptor < 1) return {};
  std::string_view text;
  if (rec >= 1 && HoldsFreeCells(descriptor, *at.file)) {
    const FreeCell cell = ReadFreeCell(*at.file, at.position, descriptor, rec, buffer_);
    text = cell.text;
    code_ = cell.code;
  } else {
    text = ReadOther(at, descriptor, rec);
  }
  isMtx = code_ < 0;
  return text;
}

std::string_view CellClass::ReadDbase(const Location& at, std::int32_t rec, std::int16_t fld) {
  if (rec >= 1) return ports_.dbase->ReadCell(*at.file, rec, fld);
  buffer_ = ports_.dbase->FieldName(*at.file, fld);
  return buffer_;
}

/// The field's name, or a cell of a style that keeps no cell by itself.
std::string_view CellClass::ReadOther(const Location& at, std::int32_t descriptor,
                                      std::int32_t rec) {
  if (rec < 1)
    return GetCell(descriptor + layout::descriptor::kTitleCell, *at.file, code_, buffer_);
  FieldReader reader(*at.file, at.position, descriptor, &types_);
  const std::string_view text = reader.Read(rec);
  code_ = reader.code();
  if (at.file->Owns(text)) return text;
  buffer_ = text;  // gathered in the reader, which ends here
  return buffer_;
}

void CellClass::SvrSetCellValue(std::string_view v, const std::wstring& p, std::int32_t rec,
                                std::int16_t fld) {
  error_.Clear();
  if (rec == kRefusedRecord) {
    error_.Set(code::kRecordNumber);
    return;
  }
  const Location at = resolver_.ResolvePath(p);
  if (error_.IsSet()) return;
  if (!at.IsTable()) {
    error_.Set(code::kBadArgument);
    return;
  }
  if (at.IsView() && !MapToUnderlying(at, rec, fld)) return;
  if (at.IsDbase()) {
    ports_.dbase->WriteCell(*at.file, rec, fld, v);
    return;
  }
  const std::int32_t descriptor = DescriptorOf(at, fld);
  if (descriptor < 1) return;
  CellWriter writer(*at.file, at.position, types_, error_);
  if (rec < 1) {
    writer.WriteName(descriptor, v);
  } else {
    writer.Write(descriptor, rec, fld, v);
  }
  if (at.throughProperties) types_.Clear();
}

std::int32_t CellClass::FindNestedMatrix(std::int32_t matrix, std::int32_t r, std::int16_t f,
                                         File& file) {
  const std::int32_t descriptor = fields_.GetFieldPos(matrix, f, file);
  if (descriptor < 1 || StyleOf(descriptor, file).freeSize != free_size::kFree) return 0;
  FieldReader reader(file, matrix, descriptor, nullptr);
  reader.Read(r);
  return reader.code() < 0 ? reader.cell() : 0;
}

void CellClass::Area() {}

void CellClass::Cell() {}

}  // namespace orv::storage
