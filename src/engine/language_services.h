// The command language joined to the storage: what it reads, and where the storage calls it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "command/evaluator.h"
#include "command/ports.h"
#include "storage/storage.h"

namespace orv::engine {

/// Serves the language from the storage, and the storage with subscripts and formulas from the
/// language.
class LanguageServices final : public command::Services,
                               public storage::SubscriptPort,
                               public storage::FormulaPort {
 public:
  explicit LanguageServices(storage::Storage& storage) : storage_(storage), evaluator_(*this) {}

  command::Evaluator& evaluator() { return evaluator_; }
  /// Runs a command in the context of a cell; nothing when no statement was ended.
  std::optional<std::string> Run(std::string_view text, const std::wstring& path,
                                 std::int32_t record, std::int16_t field);

  std::int32_t Records(const std::wstring& path) override;
  std::int32_t Fields(const std::wstring& path) override;
  void ReadCell(const std::wstring& path, std::int32_t record, std::int16_t field, bool formula,
                std::string& text) override;
  std::string_view CellTypeName(const std::wstring& path, std::int32_t record,
                                std::int16_t field) override;
  std::int32_t FindFirst(const std::wstring& path, std::int16_t field,
                         std::string_view value) override;
  storage::ErrorCode& Error() override { return storage_.error; }
  std::unique_ptr<command::Column> OpenColumn(const std::wstring& path,
                                              std::int16_t field) override;

  double ReadSubscript(const std::wstring& expression, const std::wstring& pathSoFar) override;
  std::string EvaluateFormula(const std::wstring& path, std::int32_t record, std::int16_t field,
                              std::int16_t typeNumber, std::string_view text) override;

 private:
  class FormulaRun;

  storage::Storage& storage_;
  command::Evaluator evaluator_;
  std::int32_t formulasUnderWay_ = 0;
  std::int32_t formulasStarted_ = 0;  ///< since the outermost of them
};

}  // namespace orv::engine
