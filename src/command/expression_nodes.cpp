#include "command/expression_nodes.h"

#include "command/messages.h"
#include "storage/number_text.h"

namespace orv::command {
namespace {

// An operand as the names and functions give it: a text in quotes, or bare.
void SetOperand(FastValue& value, const Value& operand) {
  const bool quoted = !operand.text.empty() && operand.text[0] == kQuote;
  const std::int16_t typeCode =
      operand.type == type::kVariant ? LiteralType(operand.text) : operand.type;
  value.SetText(WithoutQuotes(operand.text), typeCode, quoted);
}

std::optional<std::int32_t> WholeNumber(const FastValue& value) {
  if (!IsNumeric(value.type)) return std::nullopt;
  return storage::RoundToInt32(DoubleOf(value));
}

// In quotes an untyped text is a string for whatever comes next.
std::int16_t TypeInQuotes(std::int16_t typeCode) {
  return typeCode == type::kVariant ? type::kString : typeCode;
}

}  // namespace

void LiteralNode::Evaluate(const Context& /*context*/, FastValue& value) { value = value_; }

void RecordNode::Evaluate(const Context& context, FastValue& value) {
  value.SetDouble(context.record, type::kInteger);
}

void NameNode::Evaluate(const Context& context, FastValue& value) {
  LookUpName(token_, context, evaluator_.services(), value_);
  SetOperand(value, value_);
}

void CallNode::Evaluate(const Context& context, FastValue& value) {
  const CallKind kind =
      CallFunction({token_, argumentText_, false}, context, evaluator_, values_, value_);
  if (kind == CallKind::kNothing) return value.SetText({}, LiteralType(token_), false);
  SetOperand(value, value_);
}

void ParenthesesNode::Evaluate(const Context& context, FastValue& value) {
  inner_->Evaluate(context, value);
  value.quoted = !StandsBare(value);
}

void ChainNode::Evaluate(const Context& context, FastValue& value) {
  first_->Evaluate(context, value);
  std::size_t room = 0;
  for (Step& step : steps_) {
    FastValue operand;
    step.operand->Evaluate(context, operand);
    if (step.readAgain) ReadAgain(value);
    // The value may refer to the room that was used last.
    room = 1 - room;
    ApplyFast(step.op, value, operand, errorCode_, rooms_[room]);
    if (deferred_) ReadAgain(value);
  }
}

void CellNode::Evaluate(const Context& context, FastValue& value) {
  if (record_ == nullptr) return Read(context, context.record, value);
  record_->Evaluate(context, value);
  const std::optional<std::int32_t> record = WholeNumber(value);
  if (!record) return value.SetError(message::kInvalidRecord);
  Read(context, *record, value);
}

void CellNode::Read(const Context& context, std::int32_t record, FastValue& value) {
  storage::ErrorCode& errorCode = services_.Error();
  if (column_ != nullptr && record >= 1) {
    errorCode.Clear();
    const std::string_view text = column_->Text(record, room_);
    return value.SetText(text, TypeOf(column_->TypeName(record)), true);
  }
  services_.ReadCell(context.path, record, field_, false, room_);
  const std::int16_t typeCode = errorCode.IsSet()
                                    ? type::kString
                                    : TypeOf(services_.CellTypeName(context.path, record, field_));
  value.SetText(room_, typeCode, true);
}

std::int16_t CellNode::TypeOf(std::string_view name) {
  if (name == lastTypeName_) return lastType_;
  lastTypeName_ = name;
  lastType_ = TypeInQuotes(storage::TypeCode(name));
  return lastType_;
}

void ValNode::Evaluate(const Context& context, FastValue& value) {
  argument(0).Evaluate(context, value);
  std::string text;
  const bool isText =
      value.form == FastValue::Form::kText || value.form == FastValue::Form::kLiteral;
  if (!isText) AppendText(text, value);
  const std::optional<double> number = ValueOfText(isText ? value.text : text);
  if (number) return value.SetDouble(*number, type::kReal);
  errorCode().Set(storage::code::kOverflow);
  value.SetError(message::kOverflow);
}

void StrNode::Evaluate(const Context& context, FastValue& value) {
  argument(0).Evaluate(context, value);
  if (!IsNumeric(value.type)) return value.SetError(message::kTypeMismuch);
  room_.clear();
  AppendText(room_, value);
  value.SetText(room_, type::kString, true);
}

void IfNode::Evaluate(const Context& context, FastValue& value) {
  argument(0).Evaluate(context, value);
  argument(IsTrue(value) ? 1 : 2).Evaluate(context, value);
  value.quoted = value.type != type::kError;
  value.type = TypeInQuotes(value.type);
}

// A value of type string has its text at hand: no number has that type.
void InstrNode::Evaluate(const Context& context, FastValue& value) {
  argument(0).Evaluate(context, value);
  const std::optional<std::int32_t> start = WholeNumber(value);
  if (!start) return value.SetError(message::kInvalidEntering);
  FastValue text;
  argument(1).Evaluate(context, text);
  if (text.type != type::kString) return value.SetError(message::kInvalidFirst);
  FastValue part;
  argument(2).Evaluate(context, part);
  if (part.type != type::kString) return value.SetError(message::kInvalidSecond);
  value.SetDouble(PositionOf(part.text, text.text, *start), type::kReal);
}

}  // namespace orv::command
