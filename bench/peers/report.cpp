#include "peers/report.h"

#include <fstream>

#include <nlohmann/json.hpp>

namespace orv::bench {
namespace {

double Ratio(const Figure& ours, const Figure& peer) { return peer.nanoseconds / ours.nanoseconds; }

bool Reaches(const Figure& ours, const Figure& peer) { return Ratio(ours, peer) >= peer.mustReach; }

}  // namespace

void PrintHeading(std::FILE* out) {
  std::fprintf(out, "%-46s %12s  %-30s %12s %8s  %s\n", "workload (ns per operation)", "engine",
               "beside", "ns", "ratio", "must reach");
}

void PrintResult(std::FILE* out, const Result& result) {
  const std::string title = result.workload + " (" + result.unit + ")";
  if (!result.failure.empty()) {
    std::fprintf(out, "%-46s not measured: %s\n", title.c_str(), result.failure.c_str());
    return;
  }
  const Figure& ours = result.figures.front();
  for (std::size_t i = 1; i < result.figures.size(); ++i) {
    const Figure& peer = result.figures[i];
    std::fprintf(out, "%-46s %12.1f  %-30s %12.1f %7.2fx  ", title.c_str(), ours.nanoseconds,
                 peer.name.c_str(), peer.nanoseconds, Ratio(ours, peer));
    if (peer.mustReach > 0) {
      std::fprintf(out, "%gx %s", peer.mustReach, Reaches(ours, peer) ? "reached" : "NOT REACHED");
    }
    std::fputc('\n', out);
  }
  std::fflush(out);
}

bool PrintSummary(std::FILE* out, const std::vector<Result>& results) {
  int required = 0;
  int reached = 0;
  int failed = 0;
  for (const Result& result : results) {
    if (!result.failure.empty()) ++failed;
    for (const Figure& peer : result.figures) {
      if (peer.mustReach <= 0) continue;
      ++required;
      if (Reaches(result.figures.front(), peer)) ++reached;
    }
  }
  std::fprintf(out, "%d of %d required ratios reached", reached, required);
  if (failed > 0) std::fprintf(out, "; %d workloads not measured", failed);
  std::fputc('\n', out);
  return reached == required && failed == 0;
}

void WriteJson(const std::string& file, const std::vector<Result>& results) {
  nlohmann::ordered_json rows = nlohmann::ordered_json::array();
  for (const Result& result : results) {
    for (std::size_t i = 1; i < result.figures.size(); ++i) {
      const Figure& ours = result.figures.front();
      const Figure& peer = result.figures[i];
      nlohmann::ordered_json row = {{"workload", result.workload},
                                    {"ours_ns", ours.nanoseconds},
                                    {"peer", peer.name},
                                    {"peer_ns", peer.nanoseconds},
                                    {"ratio", Ratio(ours, peer)}};
      if (peer.mustReach > 0) row["must_reach"] = peer.mustReach;
      rows.push_back(std::move(row));
    }
  }
  std::ofstream out(file);
  out << rows.dump(2) << '\n';
  if (!out.flush()) throw std::runtime_error("cannot write " + file);
}

}  // namespace orv::bench
