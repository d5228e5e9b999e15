#include "command/operators.h"

#include <cmath>
#include <limits>
#include <string>

#include "command/messages.h"
#include "storage/number_text.h"

namespace orv::command {
namespace {

using Kind = NumberOutcome::Kind;

constexpr std::string_view kTrue = "True";

// Only the first comma is a decimal sign.
template <typename Number, Number (*Read)(std::string_view) noexcept>
Number ReadNumber(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return Read(text);
  std::string pointed(text);
  pointed[comma] = '.';
  return Read(pointed);
}

NumberOutcome Failure(std::string_view text, std::int16_t errorCode) {
  return {Kind::kFailure, false, 0, text, errorCode};
}

NumberOutcome Overflow() { return Failure(message::kOverflow, storage::code::kOverflow); }

NumberOutcome DivisionByZero() {
  return Failure(message::kDivisionByZero,
                 static_cast<std::int16_t>(platform::RunTimeError::kDivisionByZero));
}

NumberOutcome Logic(bool value) { return {Kind::kLogic, value, 0, {}, 0}; }

NumberOutcome Result(double number) {
  return std::isfinite(number) ? NumberOutcome{Kind::kDouble, false, number, {}, 0} : Overflow();
}

NumberOutcome Result(float number) {
  return std::isfinite(number)
             ? NumberOutcome{Kind::kSingle, false, static_cast<double>(number), {}, 0}
             : Overflow();
}

// The quotient is a 32-bit number, whatever the precision of the operands.
NumberOutcome DivideWhole(double a, double b) {
  const auto dividend = storage::RoundToInt32(a);
  const auto divisor = storage::RoundToInt32(b);
  if (!dividend || !divisor) return Overflow();
  if (*divisor == 0) return DivisionByZero();
  const std::int64_t quotient = std::int64_t{*dividend} / *divisor;
  if (quotient > std::numeric_limits<std::int32_t>::max()) return Overflow();
  return Result(static_cast<double>(quotient));
}

template <typename Number>
NumberOutcome RaiseToPower(Number a, Number b) {
  if (a == 0 && b < 0) return DivisionByZero();
  const Number power = std::pow(a, b);
  if (std::isnan(power)) return Failure(message::kInvalidCommand, storage::code::kInvalidCall);
  return Result(power);
}

template <typename Number>
NumberOutcome ComputeIn(Operator op, Number a, Number b) {
  switch (op) {
    case Operator::kEqual:
      return Logic(!(a < b || a > b));
    case Operator::kLess:
      return Logic(a < b);
    case Operator::kGreater:
      return Logic(a > b);
    case Operator::kPlus:
      return Result(a + b);
    case Operator::kMinus:
      return Result(a - b);
    case Operator::kMultiply:
      return Result(a * b);
    case Operator::kDivide:
      return b == 0 ? DivisionByZero() : Result(a / b);
    case Operator::kDivideWhole:
      return DivideWhole(static_cast<double>(a), static_cast<double>(b));
    case Operator::kPower:
      return RaiseToPower(a, b);
    default:
      return {};  // numbers know no "<>": the first operand stands
  }
}

void SetError(Value& result, std::string_view text) {
  result.text = text;
  result.type = type::kError;
}

void SetLogic(Value& result, bool value) {
  result.text = value ? "true" : "false";
  result.type = type::kLogic;
}

void SetOperand(Value& result, std::string_view text, std::int16_t typeCode) {
  result.text = text;
  result.type = typeCode;
}

void SetLogicOrRefuse(Value& result, std::optional<bool> value) {
  if (!value) return SetError(result, message::kInvalidCommand);
  SetLogic(result, *value);
}

template <typename Number>
void SetNumber(Value& result, Number number, std::int16_t typeCode) {
  // Without quotes a currency value would be taken for a plain number when the text is scanned
  // again.
  const bool quoted = typeCode == type::kCurrency;
  result.text.assign(quoted ? 1 : 0, kQuote);
  storage::AppendNumber(result.text, number);
  if (quoted) result.text += kQuote;
  result.type = typeCode;
}

void SetOutcome(const NumberOutcome& outcome, std::string_view first, std::int16_t typeCode,
                storage::ErrorCode& errorCode, Value& result) {
  switch (outcome.kind) {
    case Kind::kLogic:
      return SetLogic(result, outcome.logic);
    case Kind::kDouble:
      return SetNumber(result, outcome.number, typeCode);
    case Kind::kSingle:
      return SetNumber(result, static_cast<float>(outcome.number), typeCode);
    case Kind::kFirst:
      return SetOperand(result, first, typeCode);
    case Kind::kFailure:
      errorCode.Set(outcome.errorCode);
      return SetError(result, outcome.message);
  }
}

void SetJoined(Value& result, std::string_view a, std::string_view b) {
  result.text.assign(1, kQuote).append(a).append(b) += kQuote;
  result.type = type::kString;
}

bool IsRealOrNumber(std::int16_t typeCode) {
  return typeCode == type::kReal || typeCode == type::kNumber;
}

}  // namespace

double NumberOf(std::string_view text) { return ReadNumber<double, storage::LeadingNumber>(text); }

float SingleOf(std::string_view text) { return ReadNumber<float, storage::LeadingSingle>(text); }

NumberOutcome Compute(Operator op, double a, double b) { return ComputeIn(op, a, b); }

NumberOutcome Compute(Operator op, float a, float b) { return ComputeIn(op, a, b); }

std::optional<bool> CompareTexts(Operator op, std::string_view a, std::string_view b) noexcept {
  switch (op) {
    case Operator::kEqual:
      return a == b;
    case Operator::kLess:
      return a < b;
    case Operator::kGreater:
      return a > b;
    case Operator::kUnequal:
      return a != b;
    default:
      return std::nullopt;
  }
}

// Only the text "True" counts as true. The comparisons of the language produce "true", which does
// not; this asymmetry must stay.
std::optional<bool> CompareLogic(Operator op, std::string_view a, std::string_view b) noexcept {
  const bool equal = (a == kTrue) == (b == kTrue);
  if (op == Operator::kEqual) return equal;
  if (op == Operator::kUnequal) return !equal;
  return std::nullopt;
}

Rule RuleFor(std::int16_t typeA, std::int16_t typeB) noexcept {
  if (typeA > type::kReal && typeA != typeB) return Rule::kMismatch;
  switch (typeA) {
    case type::kInteger:
      return IsRealOrNumber(typeB) ? Rule::kSingle : Rule::kDouble;
    case type::kNumber:
    case type::kReal:
    case type::kCurrency:
      return Rule::kSingle;
    case type::kLogic:
      return Rule::kLogic;
    case type::kString:
      return Rule::kString;
    case type::kError:
      return Rule::kKeep;
    default:
      return Rule::kInvalid;
  }
}

std::int16_t SingleType(std::int16_t typeA) noexcept {
  return typeA == type::kCurrency ? type::kCurrency : type::kReal;
}

void ApplyOperator(Operator op, const Operand& a, const Operand& b, storage::ErrorCode& errorCode,
                   Value& result) {
  const std::string_view first = WithoutQuotes(a.text);
  const std::string_view second = WithoutQuotes(b.text);
  switch (RuleFor(a.type, b.type)) {
    case Rule::kMismatch:
      return SetError(result, message::kTypeMismatch);
    case Rule::kInvalid:
      return SetError(result, message::kInvalidCommand);
    case Rule::kKeep:
      return SetOperand(result, a.text, a.type);
    case Rule::kDouble:
      return SetOutcome(Compute(op, NumberOf(first), NumberOf(second)), a.text, a.type, errorCode,
                        result);
    case Rule::kSingle:
      return SetOutcome(Compute(op, SingleOf(first), SingleOf(second)), a.text, SingleType(a.type),
                        errorCode, result);
    case Rule::kLogic:
      return SetLogicOrRefuse(result, CompareLogic(op, first, second));
    case Rule::kString:
      if (op == Operator::kPlus) return SetJoined(result, first, second);
      return SetLogicOrRefuse(result, CompareTexts(op, first, second));
  }
}

}  // namespace orv::command
