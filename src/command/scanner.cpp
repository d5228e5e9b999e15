#include "command/scanner.h"

#include <algorithm>

#include "command/value.h"
#include "platform/code_page.h"

namespace orv::command {
namespace {

constexpr std::size_t kByteCount = 256;
constexpr std::string_view kOperatorCharacters("+-*/\\^()[],=<>\0", 15);

constexpr std::array<bool, kByteCount> MakeOperatorTable() {
  std::array<bool, kByteCount> table{};
  for (const char c : kOperatorCharacters) table[static_cast<unsigned char>(c)] = true;
  return table;
}

constexpr std::array<bool, kByteCount> kIsOperator = MakeOperatorTable();

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

bool IsExponent(std::string_view text) {
  if (text.empty() || (text[0] != 'E' && text[0] != 'e')) return false;
  const std::size_t digits = text.size() > 1 && (text[1] == '+' || text[1] == '-') ? 2 : 1;
  return digits < text.size() && SkipDigits(text, digits) == text.size();
}

bool EqualsIgnoringCase(std::string_view text, std::string_view lower) {
  return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
                    [](char a, char b) { return platform::FoldCase(a) == b; });
}

bool IsLogicLiteral(std::string_view text) {
  return EqualsIgnoringCase(text, "true") || EqualsIgnoringCase(text, "false");
}

}  // namespace

bool IsOperatorCharacter(char c) noexcept { return kIsOperator[static_cast<unsigned char>(c)]; }

Operator OperatorAt(std::string_view text, std::size_t at) noexcept {
  switch (text[at]) {
    case '=':
      return Operator::kEqual;
    case '<':
      return text.substr(at + 1, 1) == ">" ? Operator::kUnequal : Operator::kLess;
    case '>':
      return Operator::kGreater;
    case '+':
      return Operator::kPlus;
    case '-':
      return Operator::kMinus;
    case '*':
      return Operator::kMultiply;
    case '/':
      return Operator::kDivide;
    case '\\':
      return Operator::kDivideWhole;
    case '^':
      return Operator::kPower;
    default:
      return Operator::kNone;
  }
}

std::size_t EndOfString(std::string_view text, std::size_t open) noexcept {
  const std::size_t close = text.find(kQuote, open + 1);
  return close == std::string_view::npos ? text.size() : close + 1;
}

std::size_t MatchingParenthesis(std::string_view text, std::size_t open) noexcept {
  std::size_t depth = 0;
  std::size_t at = open;
  while (at < text.size()) {
    const char c = text[at];
    if (c == kQuote) {
      at = EndOfString(text, at);
      continue;
    }
    if (c == '(') ++depth;
    if (c == ')' && --depth == 0) return at;
    ++at;
  }
  return text.size();
}

Arguments SplitArguments(std::string_view text) noexcept {
  Arguments arguments;
  std::size_t count = 0;
  std::size_t start = 0;
  int depth = 0;
  std::size_t at = 0;
  while (at < text.size()) {
    const char c = text[at];
    if (c == kQuote) {
      at = EndOfString(text, at);
      continue;
    }
    if (c == '(' || c == '[') ++depth;
    if (c == ')' || c == ']') --depth;
    if (c == ',' && depth <= 0) {
      arguments[count++] = text.substr(start, at - start);
      if (count == arguments.size()) return arguments;
      start = at + 1;
    }
    ++at;
  }
  arguments[count] = text.substr(start);
  return arguments;
}

bool IsNumberLiteral(std::string_view text) noexcept {
  const std::size_t first = !text.empty() && text[0] == '-' ? 1 : 0;
  const std::size_t whole = SkipDigits(text, first);
  const bool hasPoint = whole < text.size() && text[whole] == '.';
  const std::size_t end = hasPoint ? SkipDigits(text, whole + 1) : whole;
  const std::size_t digits = end - first - (hasPoint ? 1 : 0);
  return digits > 0 && (end == text.size() || IsExponent(text.substr(end)));
}

std::int16_t LiteralType(std::string_view token) noexcept {
  if (token.empty()) return type::kVariant;
  if (token[0] == kQuote) return type::kString;
  if (!IsNumberLiteral(token)) return type::kVariant;
  return token.find('.') == std::string_view::npos ? type::kInteger : type::kReal;
}

bool StandsBare(std::string_view text, std::int16_t typeCode) noexcept {
  switch (typeCode) {
    case type::kVariant:
    case type::kError:
      return true;
    case type::kInteger:
    case type::kNumber:
    case type::kReal:
      return IsNumberLiteral(text);
    case type::kLogic:
      return IsLogicLiteral(text);
    default:
      return false;
  }
}

std::string_view WithoutQuotes(std::string_view text) noexcept {
  const bool enclosed = text.size() >= 2 && text.front() == kQuote && text.back() == kQuote;
  return enclosed ? text.substr(1, text.size() - 2) : text;
}

}  // namespace orv::command
