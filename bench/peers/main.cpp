// orv_bench_peers: the engine beside what its users might take instead, measured in one run.
#include <regex>

#include <CLI/CLI.hpp>

#include "peers/report.h"
#include "peers/workloads.h"
#include "support/run_options.h"

namespace orv::bench {
namespace {

struct Options {
  RunOptions run;
  std::string only;
  std::int32_t records = 1000000;
};

std::vector<Planned> Plan(const std::string& only) {
  std::vector<Planned> plan;
  AddReadingWorkloads(plan);
  AddWritingWorkloads(plan);
  AddQueryWorkloads(plan);
  AddOpeningWorkloads(plan);
  AddDbaseWorkloads(plan);
  if (only.empty()) return plan;
  const std::regex wanted(only, std::regex::icase);
  std::erase_if(plan, [&](const Planned& p) { return !std::regex_search(p.name, wanted); });
  return plan;
}

Result RunOne(const Planned& planned, Stores& stores, const Options& options) {
  try {
    return Run(planned.make(stores), options.run.repetitions, stores.timeKind());
  } catch (const NotMeasured& failure) {
    return {planned.name, "", {}, failure.what()};
  }
}

bool RunAll(const Options& options) {
  const BenchFolder folder(options.run.folder);
  Stores stores(folder, options.records, options.run.timeKind());
  std::vector<Result> results;
  PrintHeading(stdout);
  for (const Planned& planned : Plan(options.only)) {
    results.push_back(RunOne(planned, stores, options));
    PrintResult(stdout, results.back());
  }
  if (!options.run.json.empty()) WriteJson(options.run.json, results);
  return PrintSummary(stdout, results);
}

}  // namespace
}  // namespace orv::bench

int main(int argc, char** argv) {
  orv::bench::Options options;
  CLI::App app("The engine beside SQLite, LMDB, shapelib and a bare loop over the same bytes.");
  options.run.AddTo(app);
  app.add_option("--only", options.only, "run the workloads whose names match this expression");
  app.add_option("--records", options.records, "records of the table")
      ->check(CLI::Range(1000, 10000000));
  CLI11_PARSE(app, argc, argv);
  try {
    return orv::bench::RunAll(options) ? 0 : 1;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "orv_bench_peers: %s\n", failure.what());
    return 2;
  }
}
