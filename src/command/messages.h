// The messages of the command language. Hosts compare against these texts: they are part of the
// interface, misspellings included.
#pragma once

#include <string_view>

namespace orv::command::message {

// Operators.
inline constexpr std::string_view kTypeMismatch = "[Type mismatch]";
inline constexpr std::string_view kInvalidCommand = "[Invalid command]";
inline constexpr std::string_view kDivisionByZero = "[Division by zero]";
inline constexpr std::string_view kOverflow = "[Overflow]";

// Functions. `str` spells its mismatch in its own way.
inline constexpr std::string_view kTypeMismuch = "[Type mismuch]";
inline constexpr std::string_view kInvalidRecord = "[Invalid Record value]";
inline constexpr std::string_view kInvalidField = "[Invalid Field value]";
inline constexpr std::string_view kInvalidFieldNumber = "[Invalid field number]";
inline constexpr std::string_view kInvalidEntering = "[Invalid entering value]";
inline constexpr std::string_view kInvalidFirst = "[Invalid first value]";
inline constexpr std::string_view kInvalidSecond = "[Invalid second value]";

// Statements.
inline constexpr std::string_view kInvalidUse = "[Invalid use of propertie]";
inline constexpr std::string_view kExpectedExpression = "[Expected expression]";
inline constexpr std::string_view kErrorAcure = "[Error acure]";

}  // namespace orv::command::message
