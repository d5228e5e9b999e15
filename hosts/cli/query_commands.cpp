// exec, find.
#include <iostream>
#include <memory>

#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/matrix.h"
#include "cli/utf8.h"
#include "cli/words.h"

namespace orv::cli {
namespace {

std::string TextOf(const Value& value) {
  if (value.Text() != nullptr) return ToUtf8(*value.Text());
  if (value.Int16() != nullptr) return std::to_string(*value.Int16());
  if (value.Int32() != nullptr) return std::to_string(*value.Int32());
  return {};
}

void AddExec(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("exec", "Run a command in the context of a cell");
  struct Options {
    explicit Options(CLI::App& owner)
        : words(owner, {{"COMMAND", "the command, such as '=records*2;'"}}) {}
    Words words;
    std::int32_t record = 1;
    std::string field = "1";
  };
  const auto options = std::make_shared<Options>(command);
  command.add_option("--record", options->record, "the record of the context")
      ->capture_default_str();
  command.add_option("--field", options->field, "the field of the context, by number or name")
      ->capture_default_str();
  command.callback([options] {
    Matrix matrix(options->words.TargetOf().Path());
    std::wstring text = WideArgument(options->words.Word(0));
    std::wstring path = matrix.path();
    std::int16_t field = matrix.FieldNumber(options->field);
    const Value value = matrix.engine().ExecCmd(text, path, options->record, field);
    std::cout << TextOf(value) << '\n';
    matrix.Check();
  });
}

struct FindOptions {
  explicit FindOptions(CLI::App& owner) : words(owner, {{"TEXT", "the text sought"}}) {}

  Words words;
  std::string field = "0";
  std::int32_t from = 1;
  bool contains = false;
  bool ignoreCase = false;
  bool all = false;
};

// The first match at or after `from`, or -1.
std::int32_t FindFirst(Matrix& matrix, const FindOptions& options, std::int32_t from) {
  std::wstring path = matrix.path();
  std::wstring text = WideArgument(options.words.Word(0));
  std::int16_t field = matrix.FieldNumber(options.field);
  std::int16_t region = 0;
  std::int16_t direction = 0;
  Boolean inCell = ToBoolean(options.contains);
  Boolean caseCounts = ToBoolean(!options.ignoreCase);
  const std::int32_t record =
      matrix.engine().MtxFindFirst(path, from, field, text, region, inCell, direction, caseCounts);
  matrix.Check();
  return record;
}

void Find(const FindOptions& options) {
  Matrix matrix(options.words.TargetOf().Path());
  if (matrix.Kind() == FileKind::kDbase) {
    throw Failure(ToUtf8(matrix.path()) + ": dBASE III tables cannot be searched; import it first");
  }
  const std::int32_t records = matrix.Records();
  std::int32_t record = FindFirst(matrix, options, options.from);
  if (record < 1) throw Failure("not found");
  std::cout << record << '\n';
  while (options.all && record < records) {
    const std::int32_t next = FindFirst(matrix, options, record + 1);
    // A search in a view starts at its first record again.
    if (next <= record) return;
    record = next;
    std::cout << record << '\n';
  }
}

void AddFind(CLI::App& app) {
  CLI::App& command =
      *app.add_subcommand("find", "Print the number of the first record that holds a text");
  const auto options = std::make_shared<FindOptions>(command);
  command.add_option("--field", options->field, "search this field, by number or name; 0 is any")
      ->capture_default_str();
  command.add_option("--from", options->from, "the record to begin with")->capture_default_str();
  command.add_flag("--contains", options->contains, "the cell may hold more than the text");
  command.add_flag("--ignore-case", options->ignoreCase, "letter case does not matter");
  command.add_flag("--all", options->all, "print all matches (not in a filtered view)");
  command.callback([options] { Find(*options); });
}

}  // namespace

void AddQueryCommands(CLI::App& app) {
  AddFind(app);
  AddExec(app);
}

}  // namespace orv::cli
