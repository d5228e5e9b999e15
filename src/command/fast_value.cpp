#include "command/fast_value.h"

#include <cmath>

#include "command/messages.h"
#include "command/operators.h"
#include "storage/number_text.h"

namespace orv::command {
namespace {

using Form = FastValue::Form;

// A whole number below these limits has all its digits in its text, so the text gives it back.
constexpr double kWholeDoubleLimit = 1e15;
constexpr double kWholeSingleLimit = 1e7;

bool IsWholeBelow(double number, double limit) {
  return std::abs(number) < limit && std::trunc(number) == number;
}

bool HasAllDigits(const FastValue& value) {
  return IsWholeBelow(value.number,
                      value.form == Form::kDouble ? kWholeDoubleLimit : kWholeSingleLimit);
}

std::string TextOf(const FastValue& value) {
  std::string text;
  AppendText(text, value);
  return text;
}

// The single nearest to the text of a double. The text is within 1e-15 of the number, so the
// nearest single is the same unless the number lies that close to the middle between two singles.
float SingleOfDouble(const FastValue& value) {
  constexpr double kLow = 1e-30;
  constexpr double kHigh = 1e30;
  constexpr double kMargin = 1e-14;
  const double number = value.number;
  const double size = std::abs(number);
  if (size < kLow || size > kHigh) return SingleOf(TextOf(value));
  const auto nearest = static_cast<float>(number);
  const auto exact = static_cast<double>(nearest);
  if (exact == number) return nearest;
  const float other = std::nextafter(nearest, number > exact ? HUGE_VALF : -HUGE_VALF);
  const double middle = (exact + static_cast<double>(other)) / 2;
  return std::abs(number - middle) > size * kMargin ? nearest : SingleOf(TextOf(value));
}

void SetOutcome(const NumberOutcome& outcome, std::int16_t typeCode, storage::ErrorCode& errorCode,
                FastValue& result) {
  switch (outcome.kind) {
    case NumberOutcome::Kind::kLogic:
      return result.SetLogic(outcome.logic);
    case NumberOutcome::Kind::kDouble:
    case NumberOutcome::Kind::kSingle:
      result.SetDouble(outcome.number, typeCode);
      if (outcome.kind == NumberOutcome::Kind::kSingle) result.form = Form::kSingle;
      result.quoted = typeCode == type::kCurrency;
      return;
    case NumberOutcome::Kind::kFirst:
      result.type = typeCode;
      return;
    case NumberOutcome::Kind::kFailure:
      errorCode.Set(outcome.errorCode);
      return result.SetError(outcome.message);
  }
}

void SetLogicOrRefuse(std::optional<bool> value, FastValue& result) {
  if (!value) return result.SetError(message::kInvalidCommand);
  result.SetLogic(*value);
}

// Texts of operands by Rule::kLogic and Rule::kString are texts: no number has these types.
void ApplyToTexts(Operator op, Rule rule, FastValue& a, const FastValue& b, std::string& room) {
  if (rule == Rule::kLogic) return SetLogicOrRefuse(CompareLogic(op, a.text, b.text), a);
  if (op != Operator::kPlus) return SetLogicOrRefuse(CompareTexts(op, a.text, b.text), a);
  room.assign(a.text).append(b.text);
  a.SetText(room, type::kString, true);
}

}  // namespace

void FastValue::SetText(std::string_view newText, std::int16_t typeCode, bool inQuotes) {
  text = newText;
  type = typeCode;
  form = Form::kText;
  quoted = inQuotes;
}

void FastValue::SetDouble(double newNumber, std::int16_t typeCode) {
  number = newNumber;
  type = typeCode;
  form = Form::kDouble;
  quoted = false;
}

void FastValue::SetLogic(bool value) { SetText(value ? "true" : "false", type::kLogic, false); }

void FastValue::SetError(std::string_view message) { SetText(message, type::kError, false); }

FastValue Literal(std::string_view text, std::int16_t typeCode) {
  FastValue value;
  value.SetText(text, typeCode, typeCode == type::kString);
  value.number = NumberOf(text);
  value.single = SingleOf(text);
  value.form = Form::kLiteral;
  return value;
}

double DoubleOf(const FastValue& value) {
  switch (value.form) {
    case Form::kText:
      return NumberOf(value.text);
    case Form::kLiteral:
      return value.number;
    default:
      // Minus zero has the text 0.
      return HasAllDigits(value) ? value.number + 0.0 : NumberOf(TextOf(value));
  }
}

float SingleOf(const FastValue& value) {
  switch (value.form) {
    case Form::kText:
      return SingleOf(value.text);
    case Form::kLiteral:
      return value.single;
    case Form::kDouble:
      if (HasAllDigits(value)) return static_cast<float>(value.number) + 0.0F;
      return SingleOfDouble(value);
    default:
      if (HasAllDigits(value)) return static_cast<float>(value.number) + 0.0F;
      return SingleOf(TextOf(value));
  }
}

void AppendText(std::string& text, const FastValue& value) {
  switch (value.form) {
    case Form::kDouble:
      return storage::AppendNumber(text, value.number);
    case Form::kSingle:
      return storage::AppendNumber(text, static_cast<float>(value.number));
    default:
      text.append(value.text);
  }
}

bool IsTrue(const FastValue& value) {
  const bool isText = value.form == Form::kText || value.form == Form::kLiteral;
  return isText && value.text == "true";
}

bool StandsBare(const FastValue& value) {
  const bool isText = value.form == Form::kText || value.form == Form::kLiteral;
  return isText ? StandsBare(value.text, value.type) : IsNumeric(value.type);
}

void ReadAgain(FastValue& value) {
  if (value.quoted || !IsNumeric(value.type)) return;
  if (value.form == Form::kText || value.form == Form::kLiteral) {
    value.type = LiteralType(value.text);
  } else {
    value.type = HasAllDigits(value) ? type::kInteger : LiteralType(TextOf(value));
  }
}

void ApplyFast(Operator op, FastValue& a, const FastValue& b, storage::ErrorCode& errorCode,
               std::string& room) {
  const Rule rule = RuleFor(a.type, b.type);
  switch (rule) {
    case Rule::kMismatch:
      return a.SetError(message::kTypeMismatch);
    case Rule::kInvalid:
      return a.SetError(message::kInvalidCommand);
    case Rule::kKeep:
      return;
    case Rule::kDouble:
      return SetOutcome(Compute(op, DoubleOf(a), DoubleOf(b)), a.type, errorCode, a);
    case Rule::kSingle:
      return SetOutcome(Compute(op, SingleOf(a), SingleOf(b)), SingleType(a.type), errorCode, a);
    case Rule::kLogic:
    case Rule::kString:
      return ApplyToTexts(op, rule, a, b, room);
  }
}

}  // namespace orv::command
