// orv_bench_scale: how the cost of a call grows with the table and with paths.
#include <filesystem>

#include <CLI/CLI.hpp>

#include "scale/plots.h"
#include "scale/report.h"
#include "support/number_text.h"
#include "support/run_options.h"

namespace orv::bench {
namespace {

struct Options {
  RunOptions run;
  std::int32_t records = 4000000;
};

std::string MegabytesOf(const std::string& file) {
  constexpr double kMebibyte = 1024 * 1024;
  return Rounded(static_cast<double>(std::filesystem::file_size(file)) / kMebibyte);
}

void PrintConditions(const Options& options, const SizedTables& tables) {
  const TablePair& last = *tables.pairs().back();
  std::printf(
      "Medians of %d passes, %s time. The files of %s records by 8 fields have %s MiB (filled at "
      "once) and %s MiB (grown); a file ends at 2,048.\n\n",
      options.run.repetitions, options.run.processorTime ? "processor" : "wall",
      Grouped(last.records).c_str(), MegabytesOf(last.loadedFile).c_str(),
      MegabytesOf(last.grownFile).c_str());
}

void RunAll(const Options& options) {
  const BenchFolder folder(options.run.folder);
  std::fprintf(stderr, "orv_bench_scale: making tables of up to %d records\n", options.records);
  const SizedTables tables(folder, options.records);
  PrintConditions(options, tables);
  std::vector<MeasuredPlot> plots;
  const auto measure = [&](Plot plot) {
    Engine().CloseAll();
    std::fprintf(stderr, "orv_bench_scale: %s\n", plot.name.c_str());
    std::vector<Figure> figures = Measure(plot, options.run.repetitions, options.run.timeKind());
    plots.push_back({std::move(plot), std::move(figures)});
    PrintTable(stdout, plots.back());
  };
  measure(CellReads(tables));
  measure(Openings(tables));
  measure(PathDepths(folder));
  measure(PathsInTurn(folder));
  if (!options.run.json.empty()) WriteJson(options.run.json, plots);
}

}  // namespace
}  // namespace orv::bench

int main(int argc, char** argv) {
  orv::bench::Options options;
  CLI::App app("How the cost of a call grows with the table and with paths.");
  options.run.AddTo(app);
  app.add_option("--records", options.records, "records of the greatest table")
      ->check(CLI::Range(orv::bench::SizedTables::kLeast, orv::bench::SizedTables::kGreatest));
  CLI11_PARSE(app, argc, argv);
  try {
    orv::bench::RunAll(options);
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "orv_bench_scale: %s\n", failure.what());
    return 1;
  }
}
