#include "engine/language_services.h"

#include <utility>

#include "command/statements.h"
#include "command/subscript.h"
#include "engine/record_members.h"
#include "query/search.h"
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
  FieldColumn(LanguageServices& services, Storage& storage, std::wstring path, std::int16_t field,
              const Location& at, std::int32_t descriptor)
      : services_(services),
        storage_(storage),
        path_(std::move(path)),
        field_(field),
        at_(at),
        reader_(*at.file, at.position, descriptor, &storage.types) {}

  std::string_view Text(std::int32_t record, std::string& /*room*/) override {
    read_ = record;
    return reader_.Read(record);
  }

  std::string_view TypeName(std::int32_t record) override {
    if (record != read_) return services_.CellTypeName(path_, record, field_);
    const std::int16_t type = storage::DecodeCellCode(reader_.code()).type;
    const TypeProperty* name = storage_.types.Find(*at_.file, at_.position, type, kTypeName);
    return name == nullptr ? std::string_view() : std::string_view(name->text);
  }

 private:
  LanguageServices& services_;
  Storage& storage_;
  std::wstring path_;
  std::int16_t field_;
  Location at_;
  FieldReader reader_;
  std::int32_t read_ = 0;  ///< the record read last
};

/// The formulas that one formula may set going in all.
constexpr std::int32_t kMostFormulas = 100'000;

}  // namespace

/// A formula under way. Each may read two cells whose formulas read two others in turn, so that the
/// bound on nesting is none on the work.
class LanguageServices::FormulaRun {
 public:
  explicit FormulaRun(LanguageServices& services) : services_(services) {
    if (services_.formulasUnderWay_ == 0) services_.formulasStarted_ = 0;
    if (++services_.formulasStarted_ > kMostFormulas) {
      platform::Raise(platform::RunTimeError::kOutOfStack);
    }
    ++services_.formulasUnderWay_;
  }
  ~FormulaRun() { --services_.formulasUnderWay_; }
  FormulaRun(const FormulaRun&) = delete;
  FormulaRun& operator=(const FormulaRun&) = delete;

 private:
  LanguageServices& services_;
};

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
  return query::Search(storage_).FindEqual(path, field, value);
}

std::unique_ptr<command::Column> LanguageServices::OpenColumn(const std::wstring& path,
                                                              std::int16_t field) {
  const Location at = storage_.resolver.ResolvePath(path);
  const bool isPlain = !storage_.error.IsSet() && at.IsMatrix() && !at.IsView();
  storage_.error.Clear();  // whoever reads the cell itself meets the failure again
  if (!isPlain || field < 1 || field > storage_.FieldCount(at)) return nullptr;
  const std::int32_t descriptor = storage_.fields.GetFieldPos(at.position, field, *at.file);
  if (descriptor < 1) return nullptr;
  return std::make_unique<FieldColumn>(*this, storage_, path, field, at, descriptor);
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
  const FormulaRun run(*this);
  return Run(command, path, record, field).value_or(std::string());
}

}  // namespace orv::engine
