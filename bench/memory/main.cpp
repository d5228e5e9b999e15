// orv_bench_memory: how much memory of its own the engine takes.
#include <cstdio>

#include <CLI/CLI.hpp>

#include "memory/cases.h"
#include "support/number_text.h"

namespace orv::bench {
namespace {

struct Options {
  std::string folder;
  std::int32_t records = 1000000;
};

void PrintHeading(std::int32_t records) {
  std::printf(
      "%s records. Heap that the engine holds, in KiB and in bytes a thing.\n\n"
      "| case | after it, KiB | at most, KiB | files closed, KiB | things | after it, bytes | "
      "at most, bytes | bound, bytes |\n"
      "|---|---:|---:|---:|---:|---:|---:|---|\n",
      Grouped(records).c_str());
}

std::string BoundOf(const Usage& usage) {
  if (!usage.GivesBack()) return "**closing keeps too much**";
  if (!usage.bound) return "";
  return Grouped(*usage.bound) + (usage.Exceeds() ? ": **exceeded**" : ": kept");
}

void Print(const Usage& usage) {
  constexpr double kKibibyte = 1024;
  const auto kibibytes = [](std::int64_t bytes) {
    return Rounded(static_cast<double>(bytes) / kKibibyte);
  };
  const auto each = [&](std::int64_t bytes) {
    return Rounded(static_cast<double>(bytes) / static_cast<double>(usage.things));
  };
  const std::string things =
      Grouped(usage.things) + " " + usage.thing + (usage.things == 1 ? "" : "s");
  std::printf("| %s | %s | %s | %s | %s | %s | %s | %s |\n", usage.what.c_str(),
              kibibytes(usage.after).c_str(), kibibytes(usage.most).c_str(),
              kibibytes(usage.closed).c_str(), things.c_str(), each(usage.after).c_str(),
              each(usage.most).c_str(), BoundOf(usage).c_str());
  std::fflush(stdout);
}

bool RunAll(const Options& options) {
  const BenchFolder folder(options.folder);
  bool kept = true;
  PrintHeading(options.records);
  for (const Case& run : AllCases(folder, options.records)) {
    const Usage usage = run();
    Print(usage);
    kept = kept && !usage.Exceeds() && usage.GivesBack();
  }
  std::printf("\n");
  return kept;
}

}  // namespace
}  // namespace orv::bench

int main(int argc, char** argv) {
  orv::bench::Options options;
  CLI::App app("How much memory of its own the engine takes.");
  app.add_option("--folder", options.folder, "make the tables below this directory");
  app.add_option("--records", options.records, "records of the tables")
      ->check(CLI::Range(1000, 4000000));
  CLI11_PARSE(app, argc, argv);
  try {
    return orv::bench::RunAll(options) ? 0 : 1;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "orv_bench_memory: %s\n", failure.what());
    return 2;
  }
}
