// The built-in names.
#pragma once

#include <cstdint>
#include <string_view>

#include "command/context.h"
#include "command/ports.h"
#include "command/value.h"

namespace orv::command {

enum class NameKind : std::uint8_t {
  kNoName,    // the token is a literal
  kLogic,     // "true" or "false", in any letter case: the token itself stays in the text
  kReplaced,  // the token gives way to the value
};

/// What kind of name a token is, letter case ignored; nothing is read.
NameKind KindOfName(std::string_view token) noexcept;

/// Looks a token up as a built-in name, letter case ignored. For kReplaced the value is an operand:
/// a text stands in quotes; type 0 means that the type is to be taken from the text.
NameKind LookUpName(std::string_view token, const Context& context, Services& services,
                    Value& value);

}  // namespace orv::command
