// Binary operators.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "command/scanner.h"
#include "command/value.h"
#include "storage/error_code.h"

namespace orv::command {

/// An operand as it stands in the expression: a string with its quotes.
struct Operand {
  std::string_view text;
  std::int16_t type = type::kVariant;
};

/// Applies the operator; the result is an operand again (a string and a currency value in quotes).
/// A failure is a result of type error. A division by zero also leaves error code 11, a result
/// beyond the number's range 6, a power without a real value 5. The result must not share its
/// buffer with the operands.
void ApplyOperator(Operator op, const Operand& a, const Operand& b, storage::ErrorCode& errorCode,
                   Value& result);

// The pieces of it, for evaluations that keep numbers as numbers.

/// How an operation is carried out; the types of the operands decide it.
enum class Rule : std::uint8_t {
  kMismatch,  // "[Type mismatch]"
  kInvalid,   // "[Invalid command]"
  kKeep,      // the first operand, an error, stands
  kDouble,    // as double precision numbers; the result is an integer
  kSingle,    // as single precision numbers; the result has SingleType
  kLogic,
  kString,
};
Rule RuleFor(std::int16_t typeA, std::int16_t typeB) noexcept;
/// The type of a result by Rule::kSingle: currency stays currency, all else becomes real.
std::int16_t SingleType(std::int16_t typeA) noexcept;

/// The numbers of a text that stands without quotes: its leading number, the first comma being read
/// as the decimal point.
double NumberOf(std::string_view text);
float SingleOf(std::string_view text);

/// What an operation on two numbers comes to.
struct NumberOutcome {
  enum class Kind : std::uint8_t { kLogic, kDouble, kSingle, kFirst, kFailure };
  Kind kind = Kind::kFirst;    // kFirst: the first operand stands as it is
  bool logic = false;          // of kLogic
  double number = 0;           // of kDouble and kSingle; finite
  std::string_view message;    // of kFailure
  std::int16_t errorCode = 0;  // of kFailure, to be left behind
};
NumberOutcome Compute(Operator op, double a, double b);
NumberOutcome Compute(Operator op, float a, float b);

/// The result of a comparison of texts without their quotes, by bytes; nothing for an operator that
/// does not compare.
std::optional<bool> CompareTexts(Operator op, std::string_view a, std::string_view b) noexcept;
/// The same for logic values, given as their texts without quotes.
std::optional<bool> CompareLogic(Operator op, std::string_view a, std::string_view b) noexcept;

}  // namespace orv::command
