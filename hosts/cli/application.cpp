#include "cli/application.h"

#include <exception>
#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/session.h"
#include "cli/words.h"

namespace orv::cli {
namespace {

constexpr const char* kDescription =
    "Works on ORV container files, which hold tables whose cells may hold tables, and on dBASE III "
    "tables in place.";

constexpr const char* kFooter =
    "A matrix inside a file is named by steps: orv show towns.orv '/[3,2]' shows the one in record "
    "3, field 2.\n\"orv COMMAND --help\" describes a command. Exit status: 0 done, 1 failed, 2 "
    "called wrongly, 3 damage found or data lost.";

// Shows a word in brackets only where it may be left out, and no types of words: all are texts.
class HelpFormatter final : public CLI::Formatter {
 public:
  std::string make_option_opts(const CLI::Option* option) const override {
    return option->get_positional() ? std::string() : CLI::Formatter::make_option_opts(option);
  }
  std::string make_option_usage(const CLI::Option* option) const override {
    const std::string name = option->get_name(true);
    return option->get_type_name() == kOptionalWord ? "[" + name + "]" : name;
  }
};

void AddCommands(CLI::App& app) {
  AddFileCommands(app);
  AddShowCommands(app);
  AddCellCommands(app);
  AddStructureCommands(app);
  AddImportCommand(app);
  AddQueryCommands(app);
  AddPropertyCommand(app);
  AddStyleCommands(app);
  AddExportCommands(app);
  AddCompactCommand(app);
  AddCheckCommand(app);
  AddDumpCommand(app);
  AddRescueCommand(app);
  AddHostCommand(app);
}

int Report(const char* sentence, ExitStatus status) {
  std::cout.flush();
  std::cerr << "orv: " << sentence << std::endl;
  return status;
}

int ReportParseError(const CLI::App& app, const CLI::ParseError& error, int argc, char** argv) {
  // A request for help is an error to the parser too.
  if (error.get_exit_code() == 0) {
    app.exit(error);
    return kSuccess;
  }
  std::string sentence = error.what();
  if (app.get_subcommands().empty()) {
    sentence = argc < 2 ? "a command is missing" : "there is no command " + std::string(argv[1]);
  }
  return Report((sentence + "; --help tells more").c_str(), kBadUsage);
}

}  // namespace

int RunApplication(int argc, char** argv) {
  CLI::App app(kDescription, "orv");
  auto formatter = std::make_shared<HelpFormatter>();
  formatter->column_width(28);
  formatter->label("SUBCOMMAND", "COMMAND");
  formatter->label("Subcommands", "Commands");
  app.formatter(formatter);
  app.footer(kFooter);
  app.require_subcommand(1);
  AddCommands(app);
  const ConsoleSession session;
  try {
    ExitStatus status = kSuccess;
    try {
      app.parse(argc, argv);
    } catch (const DamageFound&) {
      status = kDamaged;
    }
    std::cout.flush();
    if (!std::cout) return Report("standard output could not be written", kFailed);
    return status;
  } catch (const CLI::ParseError& error) {
    return ReportParseError(app, error, argc, argv);
  } catch (const BadUsage& error) {
    return Report(error.what(), kBadUsage);
  } catch (const std::exception& error) {
    return Report(error.what(), kFailed);
  }
}

}  // namespace orv::cli
