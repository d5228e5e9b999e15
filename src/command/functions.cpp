#include "command/functions.h"

#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "command/evaluator.h"
#include "command/messages.h"
#include "command/operators.h"
#include "command/scanner.h"
#include "platform/code_page.h"
#include "storage/number_text.h"

namespace orv::command {
namespace {

constexpr std::string_view kTrue = "true";
constexpr std::size_t kLongestName = 11;

// What a function works with while it runs.
struct Work {
  const Arguments arguments;
  const bool pointFollows;
  const bool hasDots;
  const Context& context;
  Evaluator& evaluator;
  ArgumentValues& values;
  Value& value;

  // Evaluates argument `index` into the value of the same index.
  Value& Argument(std::size_t index) const {
    evaluator.Evaluate(arguments[index], context, values[index]);
    return values[index];
  }
  Services& services() const { return evaluator.services(); }
};

CallKind Fail(const Work& work, std::string_view text) {
  work.value.text = text;
  work.value.type = type::kError;
  return CallKind::kValue;
}

CallKind Give(const Work& work, std::int32_t number, std::int16_t typeCode) {
  work.value.text.clear();
  storage::AppendNumber(work.value.text, number);
  work.value.type = typeCode;
  return CallKind::kValue;
}

CallKind GiveQuoted(const Work& work, std::string_view text, std::int16_t typeCode) {
  work.value.text.assign(1, kQuote).append(text) += kQuote;
  work.value.type = typeCode;
  return CallKind::kValue;
}

// A number outside the type is no better than a text that is no number.
template <typename Whole>
std::optional<Whole> WholeNumber(const Value& argument) {
  if (!IsNumeric(argument.type)) return std::nullopt;
  const auto number = storage::RoundToInt32(NumberOf(argument.text));
  if (!number || *number < std::numeric_limits<Whole>::min() ||
      *number > std::numeric_limits<Whole>::max()) {
    return std::nullopt;
  }
  return static_cast<Whole>(*number);
}

CallKind GiveCell(const Work& work, const std::wstring& path, const CellReference& cell,
                  bool formula) {
  Services& services = work.services();
  std::string& text = work.value.text;
  services.ReadCell(path, cell.record, cell.field, formula, text);
  text.insert(0, 1, kQuote) += kQuote;
  // What could not be read has no type, and asking for one would lose the error code.
  work.value.type = services.Error().IsSet()
                        ? type::kVariant
                        : storage::TypeCode(services.CellTypeName(path, cell.record, cell.field));
  return CallKind::kValue;
}

CallKind Cell(const Work& work) {
  const auto record = WholeNumber<std::int32_t>(work.Argument(0));
  if (!record) return Fail(work, message::kInvalidRecord);
  const auto field = WholeNumber<std::int16_t>(work.Argument(1));
  if (!field) return Fail(work, message::kInvalidField);
  const CellReference cell{*record, *field};
  if (!work.pointFollows) {
    const Context& context = work.context;
    return GiveCell(work, work.hasDots ? context.outerPath : context.path, cell, false);
  }
  if (work.context.reference != nullptr) *work.context.reference = cell;
  work.value.text.clear();
  work.value.type = type::kCellReference;
  return CallKind::kReference;
}

// The path is the argument as it is written, not an expression.
std::wstring PathArgument(const Work& work) {
  return platform::ToWide(platform::Trim(work.arguments[0]));
}

CallKind MatrixCell(const Work& work) {
  const auto record = WholeNumber<std::int32_t>(work.Argument(1));
  if (!record) return Fail(work, message::kInvalidRecord);
  const auto field = WholeNumber<std::int16_t>(work.Argument(2));
  if (!field) return Fail(work, message::kInvalidField);
  Value& formula = work.values[0];
  work.evaluator.Evaluate(work.arguments[3], work.context, formula);
  return GiveCell(work, PathArgument(work), {*record, *field}, formula.text == kTrue);
}

CallKind Instr(const Work& work) {
  const auto start = WholeNumber<std::int32_t>(work.Argument(0));
  if (!start) return Fail(work, message::kInvalidEntering);
  const Value& text = work.Argument(1);
  if (text.type != type::kString) return Fail(work, message::kInvalidFirst);
  const Value& part = work.Argument(2);
  if (part.type != type::kString) return Fail(work, message::kInvalidSecond);
  return Give(work, PositionOf(part.text, text.text, *start), type::kReal);
}

CallKind Field(const Work& work) {
  const auto field = WholeNumber<std::int16_t>(work.Argument(0));
  if (!field) return Fail(work, message::kInvalidFieldNumber);
  const Value& wanted = work.Argument(1);
  if (wanted.type != type::kString) return Fail(work, message::kInvalidFirst);
  return Give(work, work.services().FindFirst(work.context.path, *field, wanted.text),
              type::kInteger);
}

CallKind RecPos(const Work& work) {
  if (platform::Trim(work.arguments[2]).empty()) return CallKind::kNothing;
  const Value& wanted = work.Argument(1);
  const auto field = WholeNumber<std::int16_t>(work.Argument(2));
  if (!field) return Fail(work, message::kInvalidFieldNumber);
  return Give(work, work.services().FindFirst(PathArgument(work), *field, wanted.text),
              type::kInteger);
}

CallKind Str(const Work& work) {
  const Value& number = work.Argument(0);
  if (!IsNumeric(number.type)) return Fail(work, message::kTypeMismuch);
  return GiveQuoted(work, number.text, type::kString);
}

CallKind Val(const Work& work) {
  const std::optional<double> number = ValueOfText(work.Argument(0).text);
  if (!number) {
    work.services().Error().Set(storage::code::kOverflow);
    return Fail(work, message::kOverflow);
  }
  work.value.text.clear();
  storage::AppendNumber(work.value.text, *number);
  work.value.type = type::kReal;
  return CallKind::kValue;
}

CallKind If(const Work& work) {
  const std::size_t branch = work.Argument(0).text == kTrue ? 1 : 2;
  const Value& chosen = work.Argument(branch);
  if (chosen.type == type::kError) return Fail(work, chosen.text);
  return GiveQuoted(work, chosen.text, chosen.type);
}

struct Function {
  std::string_view name;
  CallKind (*run)(const Work&);
};

constexpr std::array<Function, 8> kFunctions = {{{"cell", Cell},
                                                 {"matrix_cell", MatrixCell},
                                                 {"instr", Instr},
                                                 {"field", Field},
                                                 {"recpos", RecPos},
                                                 {"str", Str},
                                                 {"val", Val},
                                                 {"if", If}}};

const Function* FindFunction(std::string_view name) {
  if (name.size() > kLongestName) return nullptr;
  std::array<char, kLongestName> folded{};
  for (std::size_t i = 0; i < name.size(); ++i) folded[i] = platform::FoldCase(name[i]);
  const std::string_view lower(folded.data(), name.size());
  for (const Function& function : kFunctions) {
    if (function.name == lower) return &function;
  }
  return nullptr;
}

}  // namespace

std::int32_t PositionOf(std::string_view part, std::string_view text, std::int32_t start) noexcept {
  if (start < 1) return 0;
  if (part.empty()) return start;
  const std::size_t at = text.find(part, static_cast<std::size_t>(start) - 1);
  return at == std::string_view::npos ? 0 : static_cast<std::int32_t>(at + 1);
}

std::optional<double> ValueOfText(std::string_view text) noexcept {
  const double number = storage::LeadingNumber(text);
  return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

CallKind CallFunction(const Call& call, const Context& context, Evaluator& evaluator,
                      ArgumentValues& values, Value& value) {
  const std::size_t first = call.name.find_first_not_of('.');
  const std::size_t dots = first == std::string_view::npos ? call.name.size() : first;
  const Function* const function = FindFunction(call.name.substr(dots));
  if (function == nullptr) return CallKind::kNothing;
  return function->run({SplitArguments(call.argumentText), call.pointFollows, dots > 0, context,
                        evaluator, values, value});
}

}  // namespace orv::command
