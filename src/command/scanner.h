// The characters of the command language: operators, strings, brackets, literals.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orv::command {

inline constexpr char kQuote = '"';

/// Operator codes. They also identify operators outside the language: fixed. Their order matters: a
/// code below kMultiply binds weaker than one from kMultiply on.
enum class Operator : std::uint8_t {
  kNone = 0,  // brackets, commas and the end: they end a token but apply no operation
  kEqual = 236,
  kLess = 237,
  kGreater = 238,
  kUnequal = 239,
  kPlus = 242,
  kMinus = 243,
  kMultiply = 244,
  kDivide = 245,
  kDivideWhole = 246,
  kPower = 247,
};

inline bool IsMultiplicative(Operator op) { return op >= Operator::kMultiply; }

/// Whether the character ends a token outside a string. Character 0 is one of them.
bool IsOperatorCharacter(char c) noexcept;
/// The operator at `at`; "<" directly followed by ">" is one operator of two characters.
Operator OperatorAt(std::string_view text, std::size_t at) noexcept;

/// The index of the ")" that belongs to the "(" at `open`, quotes respected; the text's length when
/// there is none.
std::size_t MatchingParenthesis(std::string_view text, std::size_t open) noexcept;
/// The index behind the string that the quote at `open` opens; the text's length when nothing
/// closes it.
std::size_t EndOfString(std::string_view text, std::size_t open) noexcept;

/// Argument texts as written; the missing ones are empty. What stands behind the fifth is ignored.
using Arguments = std::array<std::string_view, 5>;
/// Splits at each "," outside strings, parentheses and square brackets.
Arguments SplitArguments(std::string_view text) noexcept;

/// Whether the text is a number literal: digits with at most one point, a sign in front and an
/// exponent behind allowed (results have them).
bool IsNumberLiteral(std::string_view text) noexcept;
/// The type that a token has by its text alone: string when it begins with a quote, integer for a
/// number without a point, real for one with a point, otherwise 0.
std::int16_t LiteralType(std::string_view token) noexcept;

/// Whether a finished value can stand in an expression without quotes and be read again as what it
/// is.
bool StandsBare(std::string_view text, std::int16_t typeCode) noexcept;

/// The text between its enclosing quotes; the text itself when it has none.
std::string_view WithoutQuotes(std::string_view text) noexcept;

}  // namespace orv::command
