// Running workloads: entrants in turn, several times over.
#pragma once

#include <string>
#include <vector>

#include "support/timing.h"
#include "support/workload.h"

namespace orv::bench {

/// An entrant's figure.
struct Figure {
  std::string name;
  double nanoseconds = 0;  ///< an operation, median of the repetitions
  double mustReach = 0;
};

struct Result {
  std::string workload;
  std::string unit;
  std::vector<Figure> figures;  ///< the engine first; empty when the workload failed
  std::string failure;
};

/// Runs the entrants one after the other, all of them once a repetition, so that whatever else the
/// machine does hits all alike. Entrants that come to different checks make the workload a failure.
Result Run(const Workload& workload, int repetitions, TimeKind time);

}  // namespace orv::bench
