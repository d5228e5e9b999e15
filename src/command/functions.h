// The built-in functions.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "command/context.h"
#include "command/ports.h"
#include "command/value.h"

namespace orv::command {

class Evaluator;

/// A function call as it stands in the text.
struct Call {
  std::string_view name;          // any letter case, leading dots included
  std::string_view argumentText;  // between the parentheses
  bool pointFollows = false;      // the character right after the ")" is "."
};

enum class CallKind : std::uint8_t {
  kNothing,    // an unknown function, or one that does nothing: empty text, the type stays
  kValue,      // the value is the result
  kReference,  // a cell reference: the value is empty, the "." behind the call belongs to it
};

/// As many argument values as a function works on at a time.
using ArgumentValues = std::array<Value, 3>;

/// Evaluates a call. The value is an operand: texts stand in quotes. `values` is room for arguments
/// that the caller keeps for the next call; neither it nor `value` may be used by the evaluator
/// itself during the call.
CallKind CallFunction(const Call& call, const Context& context, Evaluator& evaluator,
                      ArgumentValues& values, Value& value);

}  // namespace orv::command
