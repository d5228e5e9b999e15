// host.
#include <iostream>

#include "cli/commands.h"
#include "cli/host.h"

namespace orv::cli {

void AddHostCommand(CLI::App& app) {
  CLI::App& command = *app.add_subcommand(
      "host",
      "Drive the engine by JSON: a request a line on standard input, a reply a line on standard "
      "output");
  command.callback([] { RunHost(std::cin, std::cout); });
}

}  // namespace orv::cli
