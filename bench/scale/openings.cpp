#include <algorithm>

#include "scale/plots.h"

namespace orv::bench {
namespace {

/// A file that takes longer to open is opened less often.
int OpeningCount(std::int32_t records) {
  constexpr std::int64_t kRecordsWalked = 20000000;
  return static_cast<int>(std::clamp<std::int64_t>(kRecordsWalked / records, 10, 200));
}

/// The record that opening `n` of `count` reads: spread evenly, half of them in each half.
std::int32_t SpreadRecord(std::int32_t records, int n, int count) {
  return static_cast<std::int32_t>(std::int64_t{records} * (2 * n + 1) / (2 * count)) + 1;
}
std::int32_t FirstRecord(std::int32_t, int, int) { return 1; }

using RecordToRead = std::int32_t (*)(std::int32_t records, int n, int count);

Point OpeningPoint(const char* curve, EngineTable& table, std::int32_t records,
                   RecordToRead recordToRead) {
  const int count = OpeningCount(records);
  Check expected;
  for (int n = 0; n < count; ++n) {
    expected.Add(std::string_view(CellText(recordToRead(records, n, count), kCity)));
  }
  return {curve, static_cast<double>(records),
          [&table, records, count, recordToRead] {
            Check check;
            for (int n = 0; n < count; ++n) {
              const std::wstring text = table.ReadCell(recordToRead(records, n, count), kCity);
              check.Add(std::wstring_view(text));
              table.Close();
            }
            return Pass{count, check.sum()};
          },
          expected.sum()};
}

}  // namespace

Plot Openings(const SizedTables& tables) {
  constexpr double kMicrosecond = 1000;
  Plot plot{"openings",        "Opening, reading one cell, closing",
            {"records", true}, {"µs an opening", true},
            kMicrosecond,      {}};
  for (const auto& pair : tables.pairs()) {
    plot.points.push_back(
        OpeningPoint("filled at once, any record", pair->loaded, pair->records, SpreadRecord));
  }
  for (const auto& pair : tables.pairs()) {
    plot.points.push_back(OpeningPoint("grown record by record, any record", pair->grown,
                                       pair->records, SpreadRecord));
  }
  for (const auto& pair : tables.pairs()) {
    plot.points.push_back(OpeningPoint("grown record by record, first record", pair->grown,
                                       pair->records, FirstRecord));
  }
  return plot;
}

}  // namespace orv::bench
