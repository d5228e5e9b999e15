// Binary operators.
#pragma once

#include <cstdint>
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

/// The numbers of an operand's text, quotes left out: its leading number, a comma being read as the
/// decimal point.
double NumberOf(std::string_view operandText);
float SingleOf(std::string_view operandText);

/// Applies the operator; the result is an operand again (a string and a currency value in quotes).
/// A failure is a result of type error. A division by zero also leaves error code 11, a result
/// beyond the number's range 6, a power without a real value 5. The result must not share its
/// buffer with the operands.
void ApplyOperator(Operator op, const Operand& a, const Operand& b, storage::ErrorCode& errorCode,
                   Value& result);

}  // namespace orv::command
