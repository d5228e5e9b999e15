#include "query/field_form.h"

#include "platform/code_page.h"

namespace orv::query {

using command::Operator;

namespace {

constexpr char kFieldLetter = 'f';

/// Index of the "(" of the field form; npos for a condition of another form.
std::size_t OpeningParenthesis(std::string_view condition) {
  const std::size_t letter = condition.find_first_not_of(platform::kBlank);
  if (letter == std::string_view::npos || platform::FoldCase(condition[letter]) != kFieldLetter) {
    return std::string_view::npos;
  }
  const std::size_t open = condition.find_first_not_of(platform::kBlank, letter + 1);
  return open != std::string_view::npos && condition[open] == '(' ? open : std::string_view::npos;
}

}  // namespace

bool HasFieldForm(std::string_view condition) {
  return OpeningParenthesis(condition) != std::string_view::npos;
}

std::optional<FieldForm> ReadFieldForm(std::string_view condition) {
  const std::size_t open = OpeningParenthesis(condition);
  if (open == std::string_view::npos) return std::nullopt;
  const std::size_t close = command::MatchingParenthesis(condition, open);
  if (close >= condition.size()) return std::nullopt;
  const std::string_view field = platform::Trim(condition.substr(open + 1, close - open - 1));
  if (field.empty()) return std::nullopt;
  for (std::size_t i = close + 1; i < condition.size(); ++i) {
    if (condition[i] == '=') return FieldForm{field, Operator::kEqual, condition.substr(i + 1)};
    if (condition[i] == '<' && i + 1 < condition.size() && condition[i + 1] == '>') {
      return FieldForm{field, Operator::kUnequal, condition.substr(i + 2)};
    }
  }
  return std::nullopt;
}

}  // namespace orv::query
