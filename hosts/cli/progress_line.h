// One line that says how far a long operation is.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orv::cli {

/// How far an operation is, in its own units (records, entries).
struct ProgressState {
  std::wstring_view label;
  std::int64_t done = 0;
  std::int64_t total = 0;
  std::chrono::duration<double> elapsed{};
};

/// The label, a bar, the share done, the counts, the rate and the time that remains at this rate,
/// as UTF-8 in at most `columns` columns. The label gives way first, then the bar; a rate is named
/// once it can be measured.
std::string ProgressLine(const ProgressState& state, std::size_t columns);

/// Share, counts, rate and remaining time alone, for a log: " 50 %  500/1000  250/s  2 s left".
std::string ProgressFigures(const ProgressState& state);

/// "4 s", "2 min 5 s", "3 h 20 min".
std::string DurationText(std::chrono::duration<double> duration);

}  // namespace orv::cli
