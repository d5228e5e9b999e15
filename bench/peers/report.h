// The results as a table and as JSON.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "peers/runner.h"

namespace orv::bench {

void PrintHeading(std::FILE* out);
/// One line for each entrant beside the engine.
void PrintResult(std::FILE* out, const Result& result);
/// How many of the required ratios were reached; true when all were and every workload ran.
bool PrintSummary(std::FILE* out, const std::vector<Result>& results);
/// A list of objects workload, ours_ns, peer, peer_ns, ratio, and must_reach where there is one.
void WriteJson(const std::string& file, const std::vector<Result>& results);

}  // namespace orv::bench
