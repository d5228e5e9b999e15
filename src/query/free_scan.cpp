#include "query/free_scan.h"

#include <algorithm>
#include <cstring>

#include "storage/cell_primitives.h"
#include "storage/chain_array.h"
#include "storage/layout.h"

namespace orv::query {

namespace layout = storage::layout;

namespace {

/// How far ahead of the comparison the cells are fetched. Cells lie scattered, their pointers do
/// not.
constexpr std::int32_t kFetchAhead = 16;
/// The longest short-form cell: code, length, text, next pointer.
constexpr std::int64_t kShortCellBytes =
    layout::cell::kText + layout::kShortLengthBytes + 255 + layout::kPointerBytes;

template <typename Integer>
Integer Load(const char* bytes) {
  Integer value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

}  // namespace

std::int32_t FreeScan::FindNext(std::int32_t from, std::int32_t to) {
  while (from <= to) {
    const storage::ChainRun run = storage::FindChainRun(file_, start_, from, layout::kPointerBytes);
    if (run.count == 0) return emptyMatches_ ? from : 0;  // the data ends here, the records do not
    const auto last = static_cast<std::int32_t>(std::min<std::int64_t>(to, from + run.count - 1));
    const std::int32_t found = ScanBlock(run.position, from, last);
    if (found > 0) return found;
    from = last + 1;
  }
  return 0;
}

std::int32_t FreeScan::ScanBlock(std::int64_t entries, std::int32_t from, std::int32_t to) {
  const std::int64_t length = file_.Length();
  const char* const bytes = file_.View(1, length).data();
  const char* const pointers = bytes + entries - 1;
  const std::int64_t lastShort = length - kShortCellBytes + 1;
  const std::int32_t count = to - from + 1;
  for (std::int32_t i = 0; i < count; ++i) {
    if (i + kFetchAhead < count) {
      const auto ahead =
          Load<std::int32_t>(pointers + std::ptrdiff_t{i + kFetchAhead} * layout::kPointerBytes);
      if (ahead > 0 && ahead < length) __builtin_prefetch(bytes + ahead);
    }
    const auto position = Load<std::int32_t>(pointers + std::ptrdiff_t{i} * layout::kPointerBytes);
    if (position < 1) {
      if (emptyMatches_) return from + i;
      continue;
    }
    if (position <= lastShort) {
      const char* const cell = bytes + position - 1;
      const auto code = Load<std::int16_t>(cell);
      const std::size_t size = static_cast<unsigned char>(cell[layout::cell::kText]);
      const char* const text = cell + layout::cell::kText + layout::kShortLengthBytes;
      const auto next = Load<std::int32_t>(text + size);
      if (code >= 0 && code < layout::cell::kLongForm && next == 0) {
        if (pattern_.Matches({text, size})) return from + i;
        continue;
      }
    }
    if (CellMatches(position)) return from + i;
  }
  return 0;
}

bool FreeScan::CellMatches(std::int32_t position) {
  std::int16_t code = 0;
  return pattern_.Matches(storage::GetCell(position, file_, code, buffer_));
}

}  // namespace orv::query
