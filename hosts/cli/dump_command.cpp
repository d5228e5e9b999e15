// dump.
#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/display.h"
#include "cli/failure.h"
#include "cli/raw_file.h"
#include "cli/utf8.h"
#include "cli/words.h"
#include "inspect/dump.h"
#include "inspect/inspection.h"
#include "platform/code_page.h"
#include "storage/matrix_path.h"

namespace orv::cli {
namespace {

using inspect::DumpItem;
using inspect::DumpLimits;
using inspect::DumpRow;

constexpr std::size_t kGreatestText = 60;

/// The text in quotes on one line, cut unless everything is asked for.
std::string TextOf(const DumpRow& row, bool all) {
  const std::size_t shown = all ? row.text.size() : std::min(row.text.size(), kGreatestText);
  std::string text =
      '"' + ToUtf8(Visible(platform::ToWide(std::string_view(row.text).substr(0, shown)))) + '"';
  if (shown < row.text.size()) {
    text += " and " + Counted(static_cast<std::int64_t>(row.text.size() - shown), "more byte");
  }
  return text;
}

void PrintItem(const DumpItem& item, bool all) {
  if (item.isRemark) {
    std::cout << "! position " << item.position << ": " << item.name << '\n';
    return;
  }
  std::cout << item.name << " at " << item.position << ", " << Counted(item.bytes, "byte") << '\n';
  constexpr std::size_t kOffsetColumns = 8;
  constexpr std::size_t kLabelColumns = 16;
  for (const DumpRow& row : item.rows) {
    std::string label = row.label;
    label.resize(std::max(label.size(), kLabelColumns), ' ');
    std::cout << PadLeft("+" + std::to_string(row.offset), kOffsetColumns) << "  " << label << ' '
              << (row.isText ? TextOf(row, all) : row.value) << '\n';
  }
}

/// The steps behind the file name; "/" alone names the top matrix, as in what `check` prints.
std::vector<storage::PathStep> StepsOf(const Target& target) {
  if (target.steps() == L"/") return {};
  storage::ErrorCode error;
  try {
    auto steps = storage::SplitPath(target.Path(), nullptr, error).steps;
    if (!error.IsSet()) return steps;
  } catch (const platform::RunTimeFailure& failure) {
    error.Set(failure.number());
  }
  throw Failure(ErrorSentence(target.Path(), error.value()));
}

void Dump(const Target& target, bool all) {
  const auto file = OpenBytes(target);
  if (inspect::KindOf(*file) != inspect::FileKind::kContainer) {
    throw Failure(ToUtf8(target.FilePart()) + ": no container file");
  }
  DumpLimits limits;
  if (all) limits.entries = DumpLimits::kNone;
  const auto print = [all](const DumpItem& item) { PrintItem(item, all); };
  if (target.steps().empty()) {
    inspect::DumpFile(*file, limits, print);
  } else if (!inspect::DumpMatrix(*file, StepsOf(target), limits, print)) {
    throw Failure(ToUtf8(target.Path()) + ": the path leads to no matrix of the file");
  }
  CheckIntact(*file, target);
}

}  // namespace

void AddDumpCommand(CLI::App& app) {
  CLI::App& command = *app.add_subcommand(
      "dump", "Print the structures of a container file with their positions and fields");
  struct Options {
    explicit Options(CLI::App& owner) : words(owner) {}
    Words words;
    bool all = false;
  };
  const auto options = std::make_shared<Options>(command);
  command.add_flag("--all", options->all, "long arrays and texts whole");
  command.callback([options] { Dump(options->words.TargetOf(), options->all); });
}

}  // namespace orv::cli
