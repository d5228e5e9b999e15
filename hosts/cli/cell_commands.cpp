// get, set.
#include <iostream>
#include <memory>

#include "cli/commands.h"
#include "cli/matrix.h"
#include "cli/read_file.h"
#include "cli/utf8.h"
#include "cli/words.h"
#include "platform/code_page.h"

namespace orv::cli {
namespace {

constexpr WordHelp kRecord{"RECORD", "the record's number; 0 is the field's name"};
constexpr WordHelp kField{"FIELD", "the field's number or name"};

void AddGet(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("get", "Print one cell");
  struct Options {
    explicit Options(CLI::App& owner) : words(owner, {kRecord, kField}) {}
    Words words;
    bool formula = false;
    bool raw = false;
  };
  const auto options = std::make_shared<Options>(command);
  command.add_flag("--formula", options->formula, "evaluate the formula of the cell's type");
  command.add_flag("--raw", options->raw,
                   "write the cell's bytes as they are stored, without a line end");
  command.callback([options] {
    const Words& words = options->words;
    Matrix matrix(words.TargetOf().Path());
    const std::int32_t record = Int32Word(words.Word(0), kRecord.name);
    const CellText cell = matrix.Cell(record, matrix.FieldNumber(words.Word(1)), options->formula);
    if (options->raw) {
      std::cout << platform::ToBytes(cell.text);
    } else {
      std::cout << ToUtf8(cell.text) << '\n';
    }
  });
}

void AddSet(CLI::App& app) {
  CLI::App& command = *app.add_subcommand(
      "set", "Write one cell; a value that begins with \"-\" follows the word --");
  struct Options {
    explicit Options(CLI::App& owner)
        : words(owner, {kRecord, kField, {"VALUE", "the new text"}}) {}
    Words words;
    bool fromFile = false;
  };
  const auto options = std::make_shared<Options>(command);
  command.add_flag("--from-file", options->fromFile,
                   "VALUE names a file whose bytes are stored as they are (pictures, files)");
  command.callback([options] {
    const Words& words = options->words;
    Matrix matrix(words.TargetOf().Path());
    const std::int32_t record = Int32Word(words.Word(0), kRecord.name);
    const std::string& value = words.Word(2);
    matrix.SetCell(record, matrix.FieldNumber(words.Word(1)),
                   options->fromFile ? platform::ToWide(ReadFile(value)) : WideArgument(value));
  });
}

}  // namespace

void AddCellCommands(CLI::App& app) {
  AddGet(app);
  AddSet(app);
}

}  // namespace orv::cli
