#include "support/run_options.h"

namespace orv::bench {

void RunOptions::AddTo(CLI::App& app) {
  app.add_option("--json", json, "write the results to this file");
  app.add_option("--folder", folder, "make the tables below this directory");
  app.add_option("--repetitions", repetitions, "passes of everything that is measured")
      ->check(CLI::Range(1, 1000));
  app.add_flag("--processor-time", processorTime,
               "measure processor time instead of the wall's, on a busy machine");
}

}  // namespace orv::bench
