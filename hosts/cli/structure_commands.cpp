// add-fields, add-records, delete-field, nest.
#include <memory>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/matrix.h"
#include "cli/structure.h"
#include "cli/words.h"

namespace orv::cli {
namespace {

void AddAddFields(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("add-fields", "Insert fields into a matrix");
  struct Options {
    explicit Options(CLI::App& owner) : words(owner) {}
    Words words;
    std::vector<std::string> names;
    std::int16_t count = 1;
    std::int32_t at = 0;
  };
  const auto options = std::make_shared<Options>(command);
  auto* const name = command.add_option("--name", options->names, "a field; may be repeated")
                         ->allow_extra_args(false);
  command.add_option("--count", options->count, "how many fields without a name")
      ->check(CLI::PositiveNumber)
      ->capture_default_str()
      ->excludes(name);
  command.add_option("--at", options->at,
                     "the number of the first new field; by default behind the last one");
  command.callback([options] {
    Matrix matrix(options->words.TargetOf().Path());
    const std::int16_t at = FieldInsertPosition(matrix, options->at);
    if (options->names.empty()) {
      matrix.AddFields(options->count, at);
    } else {
      AddNamedFields(matrix, WideArguments(options->names), at);
    }
  });
}

void AddAddRecords(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("add-records", "Insert empty records into a matrix");
  struct Options {
    explicit Options(CLI::App& owner) : words(owner) {}
    Words words;
    std::int32_t count = 1;
    std::int32_t at = 0;
  };
  const auto options = std::make_shared<Options>(command);
  command.add_option("--count", options->count, "how many")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  command
      .add_option("--at", options->at,
                  "the number of the first new record; by default behind the last one, and at the "
                  "last record's number behind it as well")
      ->check(CLI::PositiveNumber);
  command.callback([options] {
    Matrix matrix(options->words.TargetOf().Path());
    matrix.AddRecords(options->count, options->at == 0 ? matrix.Records() + 1 : options->at);
  });
}

void AddDeleteField(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("delete-field", "Delete a field with its cells");
  struct Options {
    explicit Options(CLI::App& owner) : words(owner, {{"FIELD", "the field's number or name"}}) {}
    Words words;
  };
  const auto options = std::make_shared<Options>(command);
  command.callback([options] {
    Matrix matrix(options->words.TargetOf().Path());
    matrix.DeleteField(matrix.FieldNumber(options->words.Word(0)));
  });
}

void AddNest(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("nest", "Put an empty matrix into a cell");
  struct Options {
    explicit Options(CLI::App& owner)
        : words(owner, {{"RECORD", "the cell's record"}, {"FIELD", "the field's number or name"}}) {
    }
    Words words;
    std::string title;
    std::vector<std::string> names;
  };
  const auto options = std::make_shared<Options>(command);
  command.add_option("--title", options->title,
                     "the new matrix's title; by default the cell's text");
  command.add_option("--field", options->names, "a field to begin with; may be repeated")
      ->allow_extra_args(false);
  command.callback([options] {
    Matrix matrix(options->words.TargetOf().Path());
    const std::int32_t record = Int32Word(options->words.Word(0), "RECORD");
    const std::int16_t field = matrix.FieldNumber(options->words.Word(1));
    if (record < 1) throw BadUsage("records count from 1");
    if (matrix.Cell(record, field).isMatrix) {
      throw Failure("the cell holds a matrix already");
    }
    matrix.PutMatrix(record, field, WideArgument(options->title));
    Matrix nested(CellPath(matrix.path(), record, field));
    AddNamedFields(nested, WideArguments(options->names), 1);
  });
}

}  // namespace

void AddStructureCommands(CLI::App& app) {
  AddAddFields(app);
  AddAddRecords(app);
  AddDeleteField(app);
  AddNest(app);
}

}  // namespace orv::cli
