#include "command/condition.h"

#include <utility>

namespace orv::command {

Condition::Condition(std::string_view expression, std::wstring path, std::int16_t field,
                     Evaluator& evaluator)
    : expression_(expression),
      path_(std::move(path)),
      field_(field),
      evaluator_(evaluator),
      compiled_(CompiledExpression::Compile(expression_, path_, evaluator)) {}

bool Condition::Holds(std::int32_t record) {
  const Context context(path_, record, field_);
  if (compiled_ != nullptr) return compiled_->IsTrueFor(context);
  evaluator_.Evaluate(expression_, context, value_);
  return value_.text == "true";
}

}  // namespace orv::command
