// style, analyse.
#include <cstdint>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli/analysis.h"
#include "cli/commands.h"
#include "cli/display.h"
#include "cli/failure.h"
#include "cli/matrix.h"
#include "cli/session.h"
#include "cli/style_text.h"
#include "cli/utf8.h"
#include "cli/words.h"

namespace orv::cli {
namespace {

struct StyleOptions {
  explicit StyleOptions(CLI::App& owner)
      : words(owner, {{"FIELD", "the field's number or name"}}) {}

  Words words;
  std::string to;
  std::int16_t width = 0;
  std::string type = "variant";
  bool unique = false;
  bool force = false;
};

FieldStyle WantedStyle(const StyleOptions& options) {
  FieldStyle style;
  style.freeSize = *StyleSelector(options.to);
  style.cellSize = options.width;
  style.fixedType = style.freeSize != kFreeStyle;
  style.unique = options.unique;
  const auto type = DataTypeCode(options.type);
  if (!type) throw BadUsage("there is no data type \"" + options.type + "\"");
  style.dataType = *type;
  if (style.freeSize == kFixedStyle && style.cellSize < 1) {
    throw BadUsage("the style fixed needs --width");
  }
  return style;
}

// The hash of every text of the field. A conversion keeps texts only, so a matrix in a cell stops
// it here unless `force` is set.
std::vector<std::size_t> Texts(Matrix& matrix, std::int16_t field, bool force) {
  const std::int32_t records = matrix.Records();
  std::vector<std::size_t> hashes;
  for (std::int32_t record = 1; record <= records; ++record) {
    const CellText cell = matrix.Cell(record, field);
    if (cell.isMatrix && !force) {
      throw Failure(ToUtf8(matrix.path()) + ": record " + std::to_string(record) +
                    " holds a matrix, which the conversion would lose; --force converts all the "
                    "same");
    }
    hashes.push_back(std::hash<std::wstring>()(cell.text));
  }
  return hashes;
}

void TellChanges(const std::vector<std::size_t>& before, const std::vector<std::size_t>& after) {
  std::int64_t changed = 0;
  for (std::size_t i = 0; i < before.size(); ++i) changed += before[i] != after[i] ? 1 : 0;
  if (changed == 0) return;
  std::cerr << "orv: " << Counted(changed, "value") << " cannot be read back as before\n";
}

void Convert(Matrix& matrix, std::int16_t field, const StyleOptions& options) {
  const FieldStyle wanted = WantedStyle(options);
  const std::vector<std::size_t> before = Texts(matrix, field, options.force);
  const ConsoleSession session;
  matrix.SetStyle(field, wanted);
  session.Check("the conversion");
  if (matrix.Style(field).freeSize != wanted.freeSize) {
    throw Failure(ToUtf8(matrix.path()) + ": the field kept its style");
  }
  TellChanges(before, Texts(matrix, field, true));
}

void Style(const StyleOptions& options) {
  Matrix matrix(options.words.TargetOf().Path());
  const std::int16_t field = matrix.FieldNumber(options.words.Word(0));
  if (!options.to.empty()) Convert(matrix, field, options);
  if (matrix.Kind() == FileKind::kDbase) {
    std::cout << "width " << matrix.DbaseWidth(field) << '\n';
  } else {
    std::cout << StyleText(matrix.Style(field)) << '\n';
  }
}

void AddStyle(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("style", "Show or convert how a field is stored");
  const auto options = std::make_shared<StyleOptions>(command);
  command.add_option("--to", options->to, "convert to this style")
      ->check(CLI::IsMember({"free", "fixed", "dictionary"}));
  command.add_option("--width", options->width, "bytes a cell, for fixed");
  command.add_option("--type", options->type, "data type: string, integer, number and so on")
      ->capture_default_str();
  command.add_flag("--unique", options->unique, "mark the field's values as unique");
  command.add_flag("--force", options->force, "convert even where a cell holds a matrix");
  command.callback([options] { Style(*options); });
}

void AddAnalyse(CLI::App& app) {
  CLI::App& command = *app.add_subcommand(
      "analyse", "Tell what each field takes in the file and would take as a dictionary");
  struct Options {
    explicit Options(CLI::App& owner) : words(owner) {}
    Words words;
  };
  const auto options = std::make_shared<Options>(command);
  command.callback([options] {
    Matrix matrix(options->words.TargetOf().Path());
    WriteAnalysis(matrix, std::cout);
  });
}

}  // namespace

void AddStyleCommands(CLI::App& app) {
  AddStyle(app);
  AddAnalyse(app);
}

}  // namespace orv::cli
