// export, sort.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string_view>

#include "cli/commands.h"
#include "cli/display.h"
#include "cli/failure.h"
#include "cli/matrix.h"
#include "cli/saving.h"
#include "cli/session.h"
#include "cli/utf8.h"
#include "cli/words.h"

namespace orv::cli {
namespace {

struct ExportOptions {
  explicit ExportOptions(CLI::App& owner) : words(owner, {{"TARGET", "the file to write"}}) {}

  Words words;
  bool text = false;
  bool container = false;
  bool withProperties = false;
  std::string fieldSeparator = "\\t";
  std::string recordSeparator = "\\r\\n";
  bool force = false;
};

// "\t", "\n", "\r" and "\\" become the characters they stand for.
std::wstring Separator(const std::string& typed) {
  std::wstring text = WideArgument(typed);
  for (std::size_t at = 0; at + 1 < text.size(); ++at) {
    if (text[at] != L'\\') continue;
    constexpr std::wstring_view kLetters = L"tnr\\";
    constexpr std::wstring_view kMeant = L"\t\n\r\\";
    const std::size_t known = kLetters.find(text[at + 1]);
    if (known != std::wstring_view::npos) text.replace(at, 2, 1, kMeant[known]);
  }
  return text;
}

void Export(const ExportOptions& options) {
  if (options.text == options.container) throw BadUsage("give one of --text and --container");
  if (options.text && options.withProperties) {
    throw BadUsage("--with-properties belongs to --container");
  }
  const Target target = options.words.TargetOf();
  Matrix matrix(target.Path());
  const std::int32_t records = matrix.Records();
  const std::wstring file = WideArgument(options.words.Word(0));
  std::error_code failure;
  if (std::filesystem::equivalent(target.File(), NativePath(file), failure)) {
    throw BadUsage("a file cannot be exported into itself");
  }
  const ConsoleSession session(
      ConsoleChoices{Separator(options.fieldSeparator), Separator(options.recordSeparator), false});
  const SaveKind kind = options.text             ? SaveKind::kText
                        : options.withProperties ? SaveKind::kContainerWithProperties
                                                 : SaveKind::kContainer;
  SaveMatrix(matrix, file, kind, options.force, session);
  std::cout << Counted(records, "record") << '\n';
}

void AddExport(CLI::App& app) {
  CLI::App& command =
      *app.add_subcommand("export", "Write a matrix as text or as a container file of its own");
  const auto options = std::make_shared<ExportOptions>(command);
  command.add_flag("--text", options->text,
                   "delimited text in code page 1251, without quotes; the field names come first; "
                   "pictures and files in cells are written beside it");
  command.add_flag("--container", options->container, "a new container file");
  command.add_flag("--with-properties", options->withProperties,
                   "with --container: everything, nested matrices and properties included");
  command.add_option("--field-separator", options->fieldSeparator, "between cells, for --text")
      ->capture_default_str();
  command.add_option("--record-separator", options->recordSeparator, "between records, for --text")
      ->capture_default_str();
  command.add_flag("--force", options->force, "overwrite an existing file without asking");
  command.callback([options] { Export(*options); });
}

void AddSort(CLI::App& app) {
  CLI::App& command = *app.add_subcommand(
      "sort",
      "Check that a matrix can be sorted by a field and sort it in memory; the file stays "
      "as it is");
  struct Options {
    explicit Options(CLI::App& owner) : words(owner, {{"FIELD", "the field's number or name"}}) {}
    Words words;
  };
  const auto options = std::make_shared<Options>(command);
  command.callback([options] {
    Matrix matrix(options->words.TargetOf().Path());
    std::int16_t field = matrix.FieldNumber(options->words.Word(0));
    const std::int32_t records = matrix.Records();
    std::wstring path = matrix.path();
    const ConsoleSession session;
    matrix.engine().SortData(path, field);
    matrix.Check();
    session.Check("the sort");
    std::cout << Counted(records, "record") << " sorted in memory; the file is unchanged\n";
  });
}

}  // namespace

void AddExportCommands(CLI::App& app) {
  AddExport(app);
  AddSort(app);
}

}  // namespace orv::cli
