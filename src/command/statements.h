// Commands: sequences of statements.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "command/context.h"
#include "command/evaluator.h"

namespace orv::command {

/// The mode of a command that a host or a formula runs.
inline constexpr std::int16_t kCommandMode = 1;
/// From this mode on only assignments may have a "=".
inline constexpr std::int16_t kPropertyMode = 2;

/// Runs a command text and returns its result; nothing when no statement was ended by a ";". The
/// error code is not cleared here (an assignment looks at what it finds there): the caller does it.
/// Misuse of "=" and of "set " leaves error code 255.
std::optional<std::string> RunCommand(std::string_view text, std::int16_t mode,
                                      const Context& context, Evaluator& evaluator);

}  // namespace orv::command
