#include "query/filter_condition.h"

#include <limits>
#include <memory>

#include "command/condition.h"
#include "command/operators.h"
#include "platform/run_time_error.h"
#include "storage/number_text.h"

namespace orv::query {

using command::Context;
using command::Operator;
using command::Value;
using platform::Raise;
using platform::RunTimeError;

namespace {

constexpr std::string_view kTrue = "true";
constexpr std::string_view kUnique = "unique";

std::string CellExpression(std::int16_t field) {
  return "cell(rec," + storage::NumberText(std::int32_t{field}) + ")";
}

std::string InQuotes(std::string_view text) {
  return std::string(1, command::kQuote).append(text) + command::kQuote;
}

std::int16_t ToFieldNumber(std::string_view text) {
  const auto number = storage::RoundToInt32(storage::LeadingNumber(text));
  if (!number || *number < std::numeric_limits<std::int16_t>::min() ||
      *number > std::numeric_limits<std::int16_t>::max()) {
    Raise(RunTimeError::kOverflow);
  }
  return static_cast<std::int16_t>(*number);
}

}  // namespace

Value FilterCondition::Evaluate(std::string_view expression) const {
  return evaluator_.Evaluate(expression, Context(base_.path(), 0, 0));
}

bool FilterCondition::Read(std::string_view condition) {
  if (!HasFieldForm(condition)) {
    expression_ = condition;
    return true;
  }
  const std::optional<FieldForm> form = ReadFieldForm(condition);
  if (!form) {
    storage_.error.Set(storage::code::kInvalidCall);
    return false;
  }
  if (!ReadFieldNumber(form->field)) return false;
  Value value = Evaluate(form->value);
  if (value.type == command::type::kError) {
    storage_.error.Set(storage::code::kTypeMismatch);
    return false;
  }
  if (field_ < 1) Raise(RunTimeError::kInvalidCall);
  operator_ = form->op;
  value_ = std::move(value.text);
  ChooseMode();
  return true;
}

bool FilterCondition::ReadFieldNumber(std::string_view expression) {
  const Value field = Evaluate(expression);
  if (field.type == command::type::kInteger) {
    field_ = ToFieldNumber(field.text);
    return true;
  }
  if (field.type == command::type::kString) {
    field_ = storage_.fields.GetFieldIdByName(base_.path(), field.text);
    return !storage_.error.IsSet();
  }
  storage_.error.Set(storage::code::kTypeMismatch);
  return false;
}

void FilterCondition::ChooseMode() {
  const storage::Location& at = base_.at();
  if (!at.IsView() && !at.endsInProperties) {
    mode_ = FilterMode::kDirect;
  } else if (value_ == kUnique) {
    mode_ = FilterMode::kUnique;
  } else if (value_.find(command::kQuote) == std::string::npos) {
    const std::string_view op = operator_ == Operator::kEqual ? "=" : "<>";
    expression_ = CellExpression(field_).append(op) + InQuotes(value_);
  }
}

std::function<bool(std::int32_t)> FilterCondition::MakeTest() const {
  if (expression_.empty()) return [this](std::int32_t record) { return CellMatches(record); };
  const auto condition =
      std::make_shared<command::Condition>(expression_, base_.path(), std::int16_t{0}, evaluator_);
  return [condition](std::int32_t record) { return condition->Holds(record); };
}

/// Compares the cell with a value that holds quotes, which no expression can spell out; otherwise
/// as the expression would.
bool FilterCondition::CellMatches(std::int32_t record) const {
  const Value cell = evaluator_.Evaluate(CellExpression(field_), Context(base_.path(), record, 0));
  const std::string left = InQuotes(cell.text);
  const std::string right = InQuotes(value_);
  const std::int16_t type =
      cell.type == command::type::kVariant ? command::type::kString : cell.type;
  Value result;
  command::ApplyOperator(operator_, {left, type}, {right, command::type::kString}, storage_.error,
                         result);
  return result.text == kTrue;
}

}  // namespace orv::query
