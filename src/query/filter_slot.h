// One slot of the filtered views: what is visible of a matrix through a view.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orv::query {

/// A run of neighbouring underlying records, both ends included.
struct RecordRun {
  std::int32_t up = 0;
  std::int32_t end = 0;

  std::int64_t Length() const { return std::int64_t{end} - up + 1; }
};

/// The record cache of a slot: the runs in the order of the visible records. They take twelve bytes
/// each, their index included.
class RunTable {
 public:
  /// Makes the table `count` runs long, all (0, 0).
  void Resize(std::int32_t count);
  std::int32_t Count() const { return static_cast<std::int32_t>(runs_.size()); }

  /// Run `pos`, from 1; raises 9 outside the table.
  const RecordRun& Get(std::int32_t pos) const;
  void Set(std::int32_t pos, RecordRun run);

  /// The underlying record of visible record `r`: what a walk over the runs finds that counts the
  /// records before each run and stops at the first run with which the count reaches `r`; -1 when
  /// no run does. A number below 1 is counted back from the first run. Logarithmic; a record of the
  /// run asked last, or of the one behind it, costs no search.
  std::int32_t Find(std::int32_t r) const;

 private:
  static constexpr std::int32_t kNone = -1;

  void BuildIndex() const;
  std::int32_t Walk(std::int32_t r) const;
  bool Reaches(std::size_t run, std::int32_t r) const { return through_[run] >= r; }
  std::int32_t Before(std::size_t run) const { return run == 0 ? 0 : through_[run - 1]; }

  std::vector<RecordRun> runs_;
  /// The records up to and including each run; empty while it is not built, or where the sums do
  /// not ascend within 32 bits, which only runs set by hand can bring about: then the runs are
  /// walked.
  mutable std::vector<std::int32_t> through_;
  mutable bool indexed_ = false;
  mutable std::size_t last_ = 0;
};

/// A slot is free while its path is empty; a free slot has no counts, no stamp and no caches.
struct FilterSlot {
  std::wstring path;
  std::int32_t records = 0;
  std::int16_t fields = 0;
  /// Seconds since midnight when the view was completed; 0 until then.
  float timer = 0;
  /// Visible field f is entry f - 1.
  std::vector<std::int16_t> fieldMap;
  RunTable runs;
  /// Which filling of the slot this is; 0 for a free slot.
  std::uint64_t claim = 0;
};

}  // namespace orv::query
