#include "query/filter_slot.h"

#include <algorithm>
#include <limits>

#include "platform/run_time_error.h"

namespace orv::query {

using platform::Raise;
using platform::RunTimeError;

namespace {

std::int32_t RecordOf(const RecordRun& run, std::int64_t before, std::int32_t r) {
  const std::int64_t record = run.up + (r - before) - 1;
  if (record < std::numeric_limits<std::int32_t>::min() ||
      record > std::numeric_limits<std::int32_t>::max()) {
    Raise(RunTimeError::kOverflow);
  }
  return static_cast<std::int32_t>(record);
}

}  // namespace

void RunTable::Resize(std::int32_t count) {
  if (count < 0) Raise(RunTimeError::kSubscript);
  runs_.assign(static_cast<std::size_t>(count), {});
  runs_.shrink_to_fit();
  indexed_ = false;
}

const RecordRun& RunTable::Get(std::int32_t pos) const {
  if (pos < 1 || pos > Count()) Raise(RunTimeError::kSubscript);
  return runs_[static_cast<std::size_t>(pos - 1)];
}

void RunTable::Set(std::int32_t pos, RecordRun run) {
  if (pos < 1 || pos > Count()) Raise(RunTimeError::kSubscript);
  runs_[static_cast<std::size_t>(pos - 1)] = run;
  indexed_ = false;
}

std::int32_t RunTable::Find(std::int32_t r) const {
  if (!indexed_) BuildIndex();
  if (through_.empty()) return Walk(r);
  std::size_t run = last_;
  if (!Reaches(run, r) && run + 1 < through_.size()) ++run;
  if (!Reaches(run, r) || (run > 0 && Reaches(run - 1, r))) {
    run = static_cast<std::size_t>(std::lower_bound(through_.begin(), through_.end(), r) -
                                   through_.begin());
  }
  if (run == through_.size()) return kNone;
  last_ = run;
  return RecordOf(runs_[run], Before(run), r);
}

void RunTable::BuildIndex() const {
  indexed_ = true;
  last_ = 0;
  through_.clear();
  through_.reserve(runs_.size());
  std::int64_t through = 0;
  for (const RecordRun& run : runs_) {
    through += run.Length();
    if (run.Length() < 0 || through > std::numeric_limits<std::int32_t>::max()) {
      through_.clear();
      return;
    }
    through_.push_back(static_cast<std::int32_t>(through));
  }
}

std::int32_t RunTable::Walk(std::int32_t r) const {
  std::int64_t before = 0;
  for (const RecordRun& run : runs_) {
    if (before + run.Length() >= r) return RecordOf(run, before, r);
    before += run.Length();
  }
  return kNone;
}

}  // namespace orv::query
