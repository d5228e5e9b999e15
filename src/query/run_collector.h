// Putting together the runs of a view under construction.
#pragma once

#include <cstdint>
#include <vector>

#include "query/filter_slot.h"

namespace orv::query {

/// Collects matching records, in ascending order, as runs of neighbours.
class RunCollector {
 public:
  /// Adds record `m` of the base, which is the underlying record `underlying`.
  ///
  /// Whether the record continues the last run is decided by its number in the base, before it is
  /// mapped. On a filtered base that is not the underlying one, so a run can come to span records
  /// that did not match, and neighbours can stand in runs of their own. Views on views depend on
  /// it: they must stay what they are.
  void Add(std::int32_t m, std::int32_t underlying) {
    if (!runs_.empty() && runs_.back().end == std::int64_t{m} - 1) {
      runs_.back().end = underlying;
    } else {
      runs_.push_back({underlying, underlying});
    }
    ++matched_;
  }
  /// Adds the records from `first` to `last` of an unfiltered base; none when `last` is below
  /// `first`.
  void AddRange(std::int32_t first, std::int32_t last) {
    if (last < first) return;
    Add(first, first);
    runs_.back().end = last;
    matched_ += last - first;
  }

  std::int32_t matched() const { return matched_; }
  const std::vector<RecordRun>& runs() const { return runs_; }

 private:
  std::vector<RecordRun> runs_;
  std::int32_t matched_ = 0;
};

}  // namespace orv::query
