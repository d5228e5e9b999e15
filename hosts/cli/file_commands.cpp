// new, title, info.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/info.h"
#include "cli/matrix.h"
#include "cli/structure.h"
#include "cli/utf8.h"
#include "cli/words.h"

namespace orv::cli {
namespace {

void AddNew(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("new", "Create a container file with one empty matrix");
  struct Options {
    std::string file;
    std::string title;
    std::vector<std::string> names;
    bool force = false;
  };
  const auto options = std::make_shared<Options>();
  command.add_option("FILE", options->file, "the file to create")->required();
  command.add_option("--title", options->title, "the matrix's title");
  command.add_option("--field", options->names, "a field to begin with; may be repeated")
      ->allow_extra_args(false);
  command.add_flag("--force", options->force, "overwrite an existing file without asking");
  command.callback([options] {
    const Target target(options->file, "");
    CreateFile(target, WideArgument(options->title), options->force);
    Matrix matrix(target.Path());
    AddNamedFields(matrix, WideArguments(options->names), 1);
  });
}

void AddTitle(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("title", "Show or change the title of a matrix");
  struct Options {
    explicit Options(CLI::App& owner) : words(owner) {}
    Words words;
    std::string title;
  };
  const auto options = std::make_shared<Options>(command);
  const CLI::Option* const set = command.add_option("--set", options->title, "the new title");
  command.callback([options, set] {
    Matrix matrix(options->words.TargetOf().Path());
    if (set->count() > 0) {
      matrix.SetTitle(WideArgument(options->title));
    } else {
      std::cout << ToUtf8(matrix.Title()) << '\n';
    }
  });
}

void AddInfo(CLI::App& app) {
  CLI::App& command = *app.add_subcommand(
      "info", "Describe a file: its kind and size, its matrices with their fields");
  struct Options {
    explicit Options(CLI::App& owner) : words(owner) {}
    Words words;
    InfoLimits limits;
  };
  const auto options = std::make_shared<Options>(command);
  command
      .add_option("--nested", options->limits.nested,
                  "how many nested matrices of each matrix are listed")
      ->capture_default_str()
      ->check(CLI::NonNegativeNumber);
  command.add_option("--depth", options->limits.depth, "how deep the tree is followed")
      ->capture_default_str()
      ->check(CLI::Range(0, kGreatestDepth));
  command.callback([options] { WriteInfo(options->words.TargetOf(), options->limits, std::cout); });
}

}  // namespace

void AddFileCommands(CLI::App& app) {
  AddNew(app);
  AddInfo(app);
  AddTitle(app);
}

}  // namespace orv::cli
