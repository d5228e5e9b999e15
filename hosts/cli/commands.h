// The commands of `orv`, a group a function. Each declares its commands on the application; parsing
// the command line then runs the one that was called.
#pragma once

#include <CLI/CLI.hpp>

namespace orv::cli {

void AddFileCommands(CLI::App& app);       ///< new, info, title
void AddStructureCommands(CLI::App& app);  ///< add-fields, add-records, delete-field, nest
void AddCellCommands(CLI::App& app);       ///< get, set
void AddShowCommands(CLI::App& app);       ///< show, filter
void AddImportCommand(CLI::App& app);
void AddQueryCommands(CLI::App& app);    ///< exec, find
void AddPropertyCommand(CLI::App& app);  ///< props
void AddStyleCommands(CLI::App& app);    ///< style, analyse
void AddExportCommands(CLI::App& app);   ///< export, sort
void AddCompactCommand(CLI::App& app);
void AddCheckCommand(CLI::App& app);
void AddDumpCommand(CLI::App& app);
void AddRescueCommand(CLI::App& app);
void AddHostCommand(CLI::App& app);

}  // namespace orv::cli
