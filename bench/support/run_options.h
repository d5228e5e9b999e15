// The options that the comparing and the growing benchmarks share.
#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "support/timing.h"

namespace orv::bench {

struct RunOptions {
  std::string json;    ///< the file to write the results to; none when empty
  std::string folder;  ///< the directory to make the tables in; the system's temporary when empty
  int repetitions = 5;
  bool processorTime = false;

  /// Makes the command take these options; both must outlive its parsing.
  void AddTo(CLI::App& app);
  TimeKind timeKind() const { return processorTime ? TimeKind::kProcessor : TimeKind::kWall; }
};

}  // namespace orv::bench
