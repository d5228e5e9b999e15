// Conditions that are tested record by record.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "command/compiled_expression.h"
#include "command/evaluator.h"

namespace orv::command {

/// An expression tested over the records of one matrix. It holds columns of the matrix: it must not
/// be kept across anything that writes.
class Condition {
 public:
  /// The evaluator must outlive the condition.
  Condition(std::string_view expression, std::wstring path, std::int16_t field,
            Evaluator& evaluator);

  /// Whether the expression's value has exactly the text "true" with this context record. Failures
  /// of the storage are raised.
  bool Holds(std::int32_t record);

  /// Whether the condition was compiled; otherwise each test rewrites the text.
  bool IsCompiled() const { return compiled_ != nullptr; }

 private:
  std::string expression_;
  std::wstring path_;
  std::int16_t field_;
  Evaluator& evaluator_;
  std::unique_ptr<CompiledExpression> compiled_;
  Value value_;
};

}  // namespace orv::command
