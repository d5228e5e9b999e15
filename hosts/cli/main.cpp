// The `orv` command.
#include "cli/application.h"

int main(int argc, char** argv) { return orv::cli::RunApplication(argc, argv); }
