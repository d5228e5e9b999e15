// The field form of a filter's condition: f(field) = value, f(field) <> value.
#pragma once

#include <optional>
#include <string_view>

#include "command/scanner.h"

namespace orv::query {

/// The parts of a condition in the field form, as written.
struct FieldForm {
  std::string_view field;  ///< an expression that gives a field number or a field name
  command::Operator op = command::Operator::kEqual;  ///< kEqual or kUnequal
  std::string_view value;                            ///< an expression
};

/// Whether the condition begins with "f(", in any letter case, blanks in front and between allowed.
/// Other conditions that begin with that letter are general ones.
bool HasFieldForm(std::string_view condition);

/// Takes a condition in the field form apart: the field expression runs to the parenthesis that
/// closes it, the operator is the first "=" or "<>" behind it, the value is the rest. Nothing for
/// an empty field expression, unbalanced parentheses or a missing operator.
std::optional<FieldForm> ReadFieldForm(std::string_view condition);

}  // namespace orv::query
