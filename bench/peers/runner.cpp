#include "peers/runner.h"

namespace orv::bench {
namespace {

struct Timed {
  Pass pass;
  double perOperation = 0;
};

Timed Time(const Entrant& entrant, TimeKind kind) {
  if (entrant.prepare) entrant.prepare();
  const double start = Now(kind);
  const Pass pass = entrant.run();
  const double took = Now(kind) - start;
  if (pass.operations < 1) throw NotMeasured(entrant.name + ": no operation was done");
  return {pass, pass.nanoseconds.value_or(took) / static_cast<double>(pass.operations)};
}

void Measure(const Workload& workload, int repetitions, TimeKind time, Result& result) {
  std::vector<std::vector<double>> times(workload.entrants.size());
  for (int repetition = 0; repetition < repetitions; ++repetition) {
    std::uint64_t check = 0;
    for (std::size_t i = 0; i < workload.entrants.size(); ++i) {
      const Timed timed = Time(workload.entrants[i], time);
      if (i == 0) check = timed.pass.check;
      if (timed.pass.check != check) {
        throw NotMeasured(workload.entrants[i].name + " came to another result than the engine");
      }
      times[i].push_back(timed.perOperation);
    }
  }
  for (std::size_t i = 0; i < workload.entrants.size(); ++i) {
    const Entrant& entrant = workload.entrants[i];
    result.figures.push_back({entrant.name, Median(times[i]), entrant.mustReach});
  }
}

}  // namespace

Result Run(const Workload& workload, int repetitions, TimeKind time) {
  Result result{workload.name, workload.unit, {}, {}};
  try {
    Measure(workload, repetitions, time, result);
  } catch (const std::exception& failure) {
    result.failure = failure.what();
  }
  return result;
}

}  // namespace orv::bench
