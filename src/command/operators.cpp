#include "command/operators.h"

#include <cmath>
#include <limits>
#include <string>

#include "command/messages.h"
#include "storage/number_text.h"

namespace orv::command {
namespace {

void SetError(Value& result, std::string_view text) {
  result.text = text;
  result.type = type::kError;
}

void SetLogic(Value& result, bool value) {
  result.text = value ? "true" : "false";
  result.type = type::kLogic;
}

void SetOperand(Value& result, const Operand& operand) {
  result.text = operand.text;
  result.type = operand.type;
}

// Only the first comma is a decimal sign.
template <typename Number, Number (*Read)(std::string_view) noexcept>
Number ReadNumber(std::string_view operandText) {
  const std::string_view text = WithoutQuotes(operandText);
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return Read(text);
  std::string pointed(text);
  pointed[comma] = '.';
  return Read(pointed);
}

void SetOverflow(Value& result, storage::ErrorCode& errorCode) {
  errorCode.Set(storage::code::kOverflow);
  SetError(result, message::kOverflow);
}

void SetDivisionByZero(Value& result, storage::ErrorCode& errorCode) {
  errorCode.Set(platform::RunTimeError::kDivisionByZero);
  SetError(result, message::kDivisionByZero);
}

template <typename Number>
void SetNumber(Value& result, Number number, std::int16_t typeCode, storage::ErrorCode& errorCode) {
  if (!std::isfinite(number)) return SetOverflow(result, errorCode);
  // Without quotes a currency value would be taken for a plain number when the text is scanned
  // again.
  const bool quoted = typeCode == type::kCurrency;
  result.text.assign(quoted ? 1 : 0, kQuote);
  storage::AppendNumber(result.text, number);
  if (quoted) result.text += kQuote;
  result.type = typeCode;
}

template <typename Number>
void DivideWhole(Number a, Number b, std::int16_t typeCode, storage::ErrorCode& errorCode,
                 Value& result) {
  const auto dividend = storage::RoundToInt32(static_cast<double>(a));
  const auto divisor = storage::RoundToInt32(static_cast<double>(b));
  if (!dividend || !divisor) return SetOverflow(result, errorCode);
  if (*divisor == 0) return SetDivisionByZero(result, errorCode);
  const std::int64_t quotient = std::int64_t{*dividend} / *divisor;
  if (quotient > std::numeric_limits<std::int32_t>::max()) return SetOverflow(result, errorCode);
  SetNumber(result, static_cast<double>(quotient), typeCode, errorCode);
}

template <typename Number>
void RaiseToPower(Number a, Number b, std::int16_t typeCode, storage::ErrorCode& errorCode,
                  Value& result) {
  if (a == 0 && b < 0) return SetDivisionByZero(result, errorCode);
  const Number power = std::pow(a, b);
  if (std::isnan(power)) {
    errorCode.Set(storage::code::kInvalidCall);
    return SetError(result, message::kInvalidCommand);
  }
  SetNumber(result, power, typeCode, errorCode);
}

template <typename Number>
void ApplyToNumbers(Operator op, Number a, Number b, const Operand& first,
                    storage::ErrorCode& errorCode, Value& result) {
  switch (op) {
    case Operator::kEqual:
      return SetLogic(result, !(a < b || a > b));
    case Operator::kLess:
      return SetLogic(result, a < b);
    case Operator::kGreater:
      return SetLogic(result, a > b);
    case Operator::kPlus:
      return SetNumber(result, a + b, first.type, errorCode);
    case Operator::kMinus:
      return SetNumber(result, a - b, first.type, errorCode);
    case Operator::kMultiply:
      return SetNumber(result, a * b, first.type, errorCode);
    case Operator::kDivide:
      if (b == 0) return SetDivisionByZero(result, errorCode);
      return SetNumber(result, a / b, first.type, errorCode);
    case Operator::kDivideWhole:
      return DivideWhole(a, b, first.type, errorCode, result);
    case Operator::kPower:
      return RaiseToPower(a, b, first.type, errorCode, result);
    default:
      // Numbers know no "<>": the first operand stands as it is.
      return SetOperand(result, first);
  }
}

void ApplyToDoubles(Operator op, const Operand& a, const Operand& b, storage::ErrorCode& errorCode,
                    Value& result) {
  ApplyToNumbers(op, NumberOf(a.text), NumberOf(b.text), a, errorCode, result);
}

// Single precision on purpose: "real" loses what does not fit it.
void ApplyToSingles(Operator op, const Operand& a, const Operand& b, std::int16_t typeCode,
                    storage::ErrorCode& errorCode, Value& result) {
  ApplyToNumbers(op, SingleOf(a.text), SingleOf(b.text), {a.text, typeCode}, errorCode, result);
}

// Only the text "True" counts as true. The comparisons of the language produce "true", which does
// not; this asymmetry must stay.
void ApplyToLogic(Operator op, const Operand& a, const Operand& b, Value& result) {
  const auto isTrue = [](const Operand& o) { return WithoutQuotes(o.text) == "True"; };
  if (op == Operator::kEqual) return SetLogic(result, isTrue(a) == isTrue(b));
  if (op == Operator::kUnequal) return SetLogic(result, isTrue(a) != isTrue(b));
  SetError(result, message::kInvalidCommand);
}

void ApplyToStrings(Operator op, const Operand& a, const Operand& b, Value& result) {
  const std::string_view first = WithoutQuotes(a.text);
  const std::string_view second = WithoutQuotes(b.text);
  switch (op) {
    case Operator::kEqual:
      return SetLogic(result, first == second);
    case Operator::kLess:
      return SetLogic(result, first < second);
    case Operator::kGreater:
      return SetLogic(result, first > second);
    case Operator::kUnequal:
      return SetLogic(result, first != second);
    case Operator::kPlus:
      result.text.assign(1, kQuote).append(first).append(second) += kQuote;
      result.type = type::kString;
      return;
    default:
      SetError(result, message::kInvalidCommand);
  }
}

bool IsRealOrNumber(std::int16_t typeCode) {
  return typeCode == type::kReal || typeCode == type::kNumber;
}

}  // namespace

double NumberOf(std::string_view operandText) {
  return ReadNumber<double, storage::LeadingNumber>(operandText);
}

float SingleOf(std::string_view operandText) {
  return ReadNumber<float, storage::LeadingSingle>(operandText);
}

void ApplyOperator(Operator op, const Operand& a, const Operand& b, storage::ErrorCode& errorCode,
                   Value& result) {
  if (a.type > type::kReal && a.type != b.type) return SetError(result, message::kTypeMismatch);
  switch (a.type) {
    case type::kInteger:
      if (!IsRealOrNumber(b.type)) return ApplyToDoubles(op, a, b, errorCode, result);
      return ApplyToSingles(op, a, b, type::kReal, errorCode, result);
    case type::kNumber:
    case type::kReal:
      return ApplyToSingles(op, a, b, type::kReal, errorCode, result);
    case type::kCurrency:
      return ApplyToSingles(op, a, b, type::kCurrency, errorCode, result);
    case type::kLogic:
      return ApplyToLogic(op, a, b, result);
    case type::kString:
      return ApplyToStrings(op, a, b, result);
    case type::kError:
      return SetOperand(result, a);
    default:
      return SetError(result, message::kInvalidCommand);
  }
}

}  // namespace orv::command
