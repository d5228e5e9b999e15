// The command line as a whole.
#pragma once

namespace orv::cli {

/// Parses the command line, runs the command and returns the exit status. Reports failures on
/// standard error.
int RunApplication(int argc, char** argv);

}  // namespace orv::cli
