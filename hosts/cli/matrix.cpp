#include "cli/matrix.h"

#include <charconv>

#include "cli/encoding.h"
#include "cli/failure.h"
#include "cli/target.h"
#include "cli/utf8.h"
#include "platform/code_page.h"
#include "storage/cell_code.h"

namespace orv::cli {

std::int16_t Matrix::ErrorCode() {
  const Value code = engine_.ErrorCode();
  return code.Int16() == nullptr ? std::int16_t{0} : *code.Int16();
}

void Matrix::Fail(std::int16_t code) const { throw Failure(ErrorSentence(path_, code)); }

void Matrix::Check() {
  if (const std::int16_t code = ErrorCode(); code != 0) Fail(code);
}

FileKind Matrix::Kind() {
  const std::int16_t kind = engine_.IsORVorDBF(path_);
  Check();
  return kind == 1 ? FileKind::kContainer : kind == 2 ? FileKind::kDbase : FileKind::kUnknown;
}

bool Matrix::Exists() { return engine_.Records(path_) >= 0 && ErrorCode() == 0; }

std::wstring Matrix::Title() {
  std::wstring title = engine_.GetTitle(path_);
  Check();
  return title;
}

void Matrix::SetTitle(std::wstring title) {
  engine_.SetTitle(title, path_);
  Check();
}

std::int32_t Matrix::Records() {
  const std::int32_t records = engine_.Records(path_);
  Check();
  if (records < 0) throw Failure(ToUtf8(path_) + ": there is no matrix at this path");
  return records;
}

std::int16_t Matrix::Fields() {
  const std::int32_t fields = engine_.Fields(path_);
  Check();
  if (fields < 0) throw Failure(ToUtf8(path_) + ": there is no matrix at this path");
  return static_cast<std::int16_t>(fields);
}

CellText Matrix::Cell(std::int32_t record, std::int16_t field, bool formula) {
  Boolean isMatrix = Boolean::kFalse;
  Boolean evaluate = ToBoolean(formula);
  CellText cell;
  cell.text = engine_.GetCellValue(path_, record, field, isMatrix, evaluate);
  Check();
  cell.isMatrix = IsTrue(isMatrix);
  return cell;
}

std::int16_t Matrix::TypeNumber(std::int32_t record, std::int16_t field) {
  const std::int16_t code = engine_.GetID(path_, record, field);
  Check();
  return storage::DecodeCellCode(code).type;
}

bool Matrix::IsDbase() {
  if (!isDbase_) isDbase_ = Kind() == FileKind::kDbase;
  return *isDbase_;
}

void Matrix::SetCell(std::int32_t record, std::int16_t field, std::wstring text) {
  if (IsDbase()) text = platform::ToWide(ToCp866(text));
  engine_.SetCellValue(text, path_, record, field);
  Check();
}

std::int16_t Matrix::FieldNumber(std::string_view numberOrName) {
  std::int16_t number = 0;
  const char* const end = numberOrName.data() + numberOrName.size();
  const auto [rest, problem] = std::from_chars(numberOrName.data(), end, number);
  if (problem == std::errc() && rest == end) return number;
  const std::wstring name = platform::FoldCase(WideArgument(numberOrName));
  const std::int16_t fields = Fields();
  for (std::int16_t field = 1; field <= fields; ++field) {
    const std::wstring own = FieldName(field);
    if (platform::FoldCase(platform::Trim(own)) == name) return field;
  }
  throw BadUsage(ToUtf8(path_) + " has no field named \"" + std::string(numberOrName) + "\"");
}

void Matrix::AddFields(std::int16_t count, std::int16_t at) {
  engine_.CmdAddFld(path_, count, at);
  Check();
}

void Matrix::DeleteField(std::int16_t field) {
  engine_.CmdDelFld(path_, field);
  Check();
}

void Matrix::AddRecords(std::int32_t count, std::int32_t at) {
  engine_.CmdAddRecord(path_, count, at);
  Check();
}

void Matrix::PutMatrix(std::int32_t record, std::int16_t field, std::wstring title) {
  engine_.PutMatrix(path_, record, field, title);
  Check();
}

FieldStyle Matrix::Style(std::int16_t field) {
  FieldStyle style;
  Boolean fixedType = Boolean::kFalse;
  Boolean unique = Boolean::kFalse;
  engine_.GetFldStyle(path_, field, style.freeSize, style.cellSize, fixedType, unique,
                      style.dataType);
  Check();
  style.fixedType = IsTrue(fixedType);
  style.unique = IsTrue(unique);
  return style;
}

void Matrix::SetStyle(std::int16_t field, const FieldStyle& style) {
  FieldStyle passed = style;
  Boolean fixedType = ToBoolean(passed.fixedType);
  Boolean unique = ToBoolean(passed.unique);
  engine_.SetFldStyle(path_, field, passed.freeSize, passed.cellSize, fixedType, unique,
                      passed.dataType);
  Check();
}

std::int16_t Matrix::DbaseWidth(std::int16_t field) {
  const Value width = engine_.dBASEFldSize(path_, field);
  Check();
  return width.Int16() == nullptr ? std::int16_t{0} : *width.Int16();
}

}  // namespace orv::cli
