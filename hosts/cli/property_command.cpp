// props.
#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>

#include "cli/commands.h"
#include "cli/display.h"
#include "cli/failure.h"
#include "cli/matrix.h"
#include "cli/utf8.h"
#include "cli/words.h"

namespace orv::cli {
namespace {

// What a lookup without a result leaves.
constexpr std::int16_t kNoProperty = 4;

// The fields of a type table and of the property lists in it.
constexpr std::int16_t kTypeNumber = 1;
constexpr std::int16_t kTypeKey = 2;
constexpr std::int16_t kTypeProperties = 3;
constexpr std::int16_t kPropertyName = 1;
constexpr std::int16_t kPropertyValue = 2;

struct PropertyOptions {
  explicit PropertyOptions(CLI::App& owner) : words(owner) {}

  Words words;
  std::optional<std::int32_t> record;
  std::string field = "1";
  std::string get;
  std::vector<std::string> set;
  bool formula = false;
};

struct Property {
  std::wstring name;
  CellText value;
};

std::vector<Property> PropertiesOf(const Matrix& types, std::int32_t row) {
  std::vector<Property> properties;
  Matrix list(CellPath(types.path(), row, kTypeProperties));
  if (!list.Exists()) return properties;
  const std::int32_t count = list.Records();
  for (std::int32_t record = 1; record <= count; ++record) {
    properties.push_back(
        {list.Cell(record, kPropertyName).text, list.Cell(record, kPropertyValue)});
  }
  return properties;
}

std::string ValueText(const CellText& value) {
  const std::string text = ToUtf8(Visible(value.text));
  return value.isMatrix ? "[" + text + "]" : text;
}

void ListTypes(const Matrix& matrix) {
  Matrix types(PropertyPath(matrix.path()));
  if (!types.Exists()) return;
  const std::int32_t count = types.Records();
  for (std::int32_t row = 1; row <= count; ++row) {
    const std::wstring key = types.Cell(row, kTypeKey).text;
    std::cout << "type " << ToUtf8(types.Cell(row, kTypeNumber).text)
              << (key.empty() ? "" : " (" + ToUtf8(key) + ")") << '\n';
    for (const Property& property : PropertiesOf(types, row)) {
      std::cout << "  " << ToUtf8(Visible(property.name)) << " = " << ValueText(property.value)
                << '\n';
    }
  }
}

// The property of a cell's type, or nothing when the type has no such property.
std::optional<std::wstring> Lookup(Matrix& matrix, std::int32_t record, std::int16_t field,
                                   std::wstring name, bool formula) {
  std::wstring path = matrix.path();
  Boolean evaluate = ToBoolean(formula);
  std::wstring value = matrix.engine().GetTypeValue(path, record, field, name, evaluate);
  if (matrix.ErrorCode() == kNoProperty) return std::nullopt;
  matrix.Check();
  return value;
}

// Every name that any type of the matrix has a property under, each once.
std::vector<std::wstring> PropertyNames(const Matrix& matrix) {
  std::vector<std::wstring> names;
  Matrix types(PropertyPath(matrix.path()));
  if (!types.Exists()) return names;
  const std::int32_t count = types.Records();
  for (std::int32_t row = 1; row <= count; ++row) {
    for (const Property& property : PropertiesOf(types, row)) {
      if (std::ranges::find(names, property.name) == names.end()) names.push_back(property.name);
    }
  }
  return names;
}

void Set(Matrix& matrix, std::int32_t record, std::int16_t field, const std::string& assignment) {
  const std::size_t equals = assignment.find('=');
  if (equals == std::string::npos || equals == 0) {
    throw BadUsage("--set takes NAME=VALUE, not \"" + assignment + "\"");
  }
  std::wstring path = matrix.path();
  std::wstring name = WideArgument(assignment.substr(0, equals));
  std::wstring value = WideArgument(assignment.substr(equals + 1));
  matrix.engine().SetTypeValue(path, record, field, name, value);
  matrix.Check();
}

void ShowOne(Matrix& matrix, std::int32_t record, std::int16_t field,
             const PropertyOptions& options) {
  const auto value = Lookup(matrix, record, field, WideArgument(options.get), options.formula);
  if (!value) matrix.Fail(kNoProperty);
  std::cout << ToUtf8(*value) << '\n';
}

void ShowAll(Matrix& matrix, std::int32_t record, std::int16_t field, bool formula) {
  for (const std::wstring& name : PropertyNames(matrix)) {
    const auto value = Lookup(matrix, record, field, name, formula);
    if (!value) continue;
    std::cout << ToUtf8(Visible(name)) << " = " << ToUtf8(Visible(*value)) << '\n';
  }
}

void Properties(const PropertyOptions& options) {
  Matrix matrix(options.words.TargetOf().Path());
  matrix.Records();
  if (!options.record) {
    if (!options.set.empty() || !options.get.empty()) {
      throw BadUsage("--set and --get need --record, and --field unless it is the first one");
    }
    return ListTypes(matrix);
  }
  const std::int16_t field = matrix.FieldNumber(options.field);
  for (const std::string& assignment : options.set) Set(matrix, *options.record, field, assignment);
  if (!options.get.empty()) return ShowOne(matrix, *options.record, field, options);
  if (options.set.empty()) ShowAll(matrix, *options.record, field, options.formula);
}

}  // namespace

void AddPropertyCommand(CLI::App& app) {
  CLI::App& command = *app.add_subcommand(
      "props", "List, read and change the properties of the types of cells and fields");
  const auto options = std::make_shared<PropertyOptions>(command);
  command.add_option("--record", options->record,
                     "the cell's record; 0 the field's name, -2 the field, -8 titles, -9 nested "
                     "matrices; without it the properties of all types are listed");
  command.add_option("--field", options->field, "the cell's field, by number or name")
      ->capture_default_str();
  command.add_option("--get", options->get, "print only the property of this name");
  command.add_option("--set", options->set, "NAME=VALUE: change a property; may be repeated")
      ->allow_extra_args(false);
  command.add_flag("--formula", options->formula, "run a value that is a command");
  command.callback([options] { Properties(*options); });
}

}  // namespace orv::cli
