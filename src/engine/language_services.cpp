#include "engine/language_services.h"

#include "command/statements.h"
#include "command/subscript.h"
#include "engine/record_members.h"
#include "storage/cell_code.h"
#include "storage/field_reader.h"

namespace orv::engine {

using storage::FieldReader;
using storage::Location;
using storage::Storage;
using storage::TypeProperty;

namespace {

constexpr std::string_view kTypeName = "type";
constexpr std::string_view kFormula = "comp";

/// The cells of one field of a container matrix; conditions test them record by record.
class FieldColumn final : public command::Column {
 public:
  FieldColumn(Storage& storage, const Location& at, std::int32_t descriptor)
      : storage_(storage), at_(at), reader_(*at.file, at.position, descriptor, &storage.types) {}

  std::string_view Text(std::int32_t record, std::string& room) override {
    const std::string_view text = reader_.Read(record);
    if (at_.file->Owns(text)) return text;
    room = text;
    return room;
  }

  std::string_view TypeName(std::int32_t record) override {
    reader_.Read(record);
    const std::int16_t type = storage::DecodeCellCode(reader_.code()).type;
    const TypeProperty* name = storage_.types.Find(*at_.file, at_.position, type, kTypeName);
    return name == nullptr ? std::string_view() : std::string_view(name->text);
  }

 private:
  Storage& storage_;
  Location at_;
  FieldReader reader_;
};

}  // namespace

std::optional<std::string> LanguageServices::Run(std::string_view text, const std::wstring& path,
                                                 std::int32_t record, std::int16_t field) {
  return command::RunCommand(text, command::kCommandMode, command::Context(path, record, field),
                             evaluator_);
}

std::int32_t LanguageServices::Records(const std::wstring& path) {
  return engine::Records(storage_, path);
}

std::int32_t LanguageServices::Fields(const std::wstring& path) {
  return storage_.fields.SvrFields(path);
}

void LanguageServices::ReadCell(const std::wstring& path, std::int32_t record, std::int16_t field,
                                bool formula, std::string& text) {
  bool isMtx = false;
  text = storage_.cells.SvrGetCellValue(path, record, field, isMtx, formula);
}

std::string_view LanguageServices::CellTypeName(const std::wstring& path, std::int32_t record,
                                                std::int16_t field) {
  const Location at = storage_.resolver.ResolvePath(path);
  if (storage_.error.IsSet() || !at.IsMatrix()) return {};
  const std::int16_t word = CellCodeAt(storage_, at, record, field);
  const TypeProperty* name =
      storage_.types.Find(*at.file, at.position, storage::DecodeCellCode(word).type, kTypeName);
  return name == nullptr ? std::string_view() : std::string_view(name->text);
}

std::int32_t LanguageServices::FindFirst(const std::wstring& path, std::int16_t field,
                                         std::string_view value) {
  const Location at = storage_.resolver.ResolvePath(path);
  const std::int32_t records = storage_.error.IsSet() ? 0 : storage_.RecordCount(at);
  for (std::int32_t r = 1; r <= records; ++r) {
    bool isMtx = false;
    if (storage_.cells.ReadCell(at, r, field, isMtx) == value) return r;
  }
  return -1;
}

std::unique_ptr<command::Column> LanguageServices::OpenColumn(const std::wstring& path,
                                                              std::int16_t field) {
  const Location at = storage_.resolver.ResolvePath(path);
  if (storage_.error.IsSet() || !at.IsMatrix() || at.IsView()) return nullptr;
  const std::int32_t descriptor = storage_.fields.GetFieldPos(at.position, field, *at.file);
  if (descriptor < 1) return nullptr;
  return std::make_unique<FieldColumn>(storage_, at, descriptor);
}

double LanguageServices::ReadSubscript(const std::wstring& expression,
                                       const std::wstring& pathSoFar) {
  return command::ReadSubscript(expression, pathSoFar, evaluator_);
}

std::string LanguageServices::EvaluateFormula(const std::wstring& path, std::int32_t record,
                                              std::int16_t field, std::int16_t typeNumber,
                                              std::string_view text) {
  const Location at = storage_.resolver.ResolvePath(path);
  if (storage_.error.IsSet() || !at.IsMatrix()) return std::string(text);
  const TypeProperty* formula = storage_.types.Find(*at.file, at.position, typeNumber, kFormula);
  if (formula == nullptr || formula->text.empty()) return std::string(text);
  std::string command = formula->text;
  if (command.back() != ';') command += ';';
  return Run(command, path, record, field).value_or(std::string());
}

}  // namespace orv::engine
