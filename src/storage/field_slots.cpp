#include "storage/field_slots.h"

#include <algorithm>
#include <string>

#include "storage/bytes.h"
#include "storage/chain_array.h"
#include "storage/layout.h"

namespace orv::storage {

using layout::kPointerBytes;
using platform::File;
using platform::Raise;
using platform::RunTimeError;
namespace field_table = layout::field_table;

namespace {

class SlotsWriter {
 public:
  SlotsWriter(File& file, std::int32_t table, const FieldSlotsChange& change)
      : file_(file),
        table_(table),
        change_(change),
        last_(change.first + static_cast<int>(change.slots.size()) - 1),
        front_(file.Int32At(std::int64_t{table} + field_table::kChain)) {}

  void Store() {
    if (change_.after > change_.before) {
      StoreMore();
    } else {
      StoreFewer();
    }
  }

 private:
  /// A run of neighbouring slots inside one block.
  struct Run {
    std::int64_t position;
    int first;
    int count;
  };

  void StoreMore() {
    for (const Run& run : Runs(std::max<int>(change_.before, front_) + 1, last_)) Write(run);
    if (change_.before <= front_) return WriteFront(change_.after);
    WriteCount();
    std::vector<Run> visible = Runs(front_ + 1, change_.before);
    std::reverse(visible.begin(), visible.end());
    for (const Run& run : visible) Write(run);
    WriteFront(change_.after);
  }

  void StoreFewer() {
    if (change_.before <= front_) return WriteFront(change_.after);
    WriteFront(change_.before);
    for (const Run& run : Runs(front_ + 1, last_)) Write(run);
    WriteCount();
  }

  /// The slots of the change from `from` to `to`, block by block.
  std::vector<Run> Runs(int from, int to) {
    std::vector<Run> runs;
    for (int f = std::max(from, change_.first); f <= to;) {
      const ChainRun found = FindChainRun(file_, Chain(), f, kPointerBytes);
      if (found.count == 0) Raise(RunTimeError::kSubscript);
      const int count = static_cast<int>(std::min<std::int64_t>(found.count, to - f + 1));
      runs.push_back({found.position, f, count});
      f += count;
    }
    return runs;
  }

  void Write(const Run& run) {
    std::string bytes;
    for (int f = run.first; f < run.first + run.count; ++f) AppendInteger(bytes, SlotOf(f));
    file_.Write(run.position, bytes);
  }

  /// The count and the slots of the first block in one write.
  void WriteFront(std::int16_t count) {
    const int last = std::min(last_, front_);
    if (last < change_.first) return WriteCount(count);
    const std::int64_t from = std::int64_t{table_} + field_table::kFields;
    constexpr std::int64_t kSlots =
        field_table::kChain - field_table::kFields + layout::kChainHeadBytes;
    const std::int64_t bytes = kSlots + std::int64_t{last} * kPointerBytes;
    if (!file_.Contains(from, bytes)) Raise(RunTimeError::kSubscript);
    std::string front(file_.View(from, bytes));
    PatchInteger(front, 0, count);
    for (int f = change_.first; f <= last; ++f) {
      PatchInteger(front, static_cast<std::size_t>(kSlots + std::int64_t{f - 1} * kPointerBytes),
                   SlotOf(f));
    }
    file_.Write(from, front);
  }

  void WriteCount() { WriteCount(change_.after); }
  void WriteCount(std::int16_t count) {
    file_.WriteInt16(std::int64_t{table_} + field_table::kFields, count);
  }

  std::int32_t Chain() const { return table_ + field_table::kChain; }
  std::int32_t SlotOf(int f) const {
    return change_.slots[static_cast<std::size_t>(f - change_.first)];
  }

  File& file_;
  std::int32_t table_;
  const FieldSlotsChange& change_;
  int last_;
  std::int32_t front_;  ///< slots in the first block
};

}  // namespace

std::vector<std::int32_t> ReadFieldSlots(File& file, std::int32_t table, int first, int last) {
  std::vector<std::int32_t> slots;
  for (int f = first; f <= last; ++f) {
    slots.push_back(
        ReadChainEntry(file, table + field_table::kChain, f, kPointerBytes, false).value);
  }
  return slots;
}

void StoreFieldSlots(File& file, std::int32_t table, const FieldSlotsChange& change) {
  SlotsWriter(file, table, change).Store();
}

}  // namespace orv::storage
