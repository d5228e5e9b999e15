// The built-in functions.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
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

/// The position of `part` within `text`, searching from position `start` on, letter case counting;
/// 0 when it is not there or the start is below 1. An empty part is found at the start.
std::int32_t PositionOf(std::string_view part, std::string_view text, std::int32_t start) noexcept;

/// The number that `val` gives for a text without quotes; nothing when it is out of range.
std::optional<double> ValueOfText(std::string_view text) noexcept;

}  // namespace orv::command
