#include "storage/field_data.h"

#include <algorithm>

#include "platform/code_page.h"
#include "storage/cell_primitives.h"
#include "storage/chain_array.h"
#include "storage/chain_directory.h"
#include "storage/dictionary.h"
#include "storage/field_reader.h"
#include "storage/layout.h"

namespace orv::storage {

using layout::kPointerBytes;
using platform::Raise;
using platform::RunTimeError;

void FieldData::Examine(std::int32_t matrix, TypeTables& types) {
  width_ = 0;
  style_ = StyleOf(descriptor_, file_);
  if (style_.freeSize == free_size::kFixed) {
    width_ = style_.cellSize;
    const FixedFormat format = FixedFormatOf(file_, matrix, descriptor_, style_, &types);
    if (!format.IsNumeric()) empty_ = platform::kBlank;
  }
  if (style_.freeSize == free_size::kDictionary && DictionaryIndex::IsWidth(style_.cellSize)) {
    width_ = style_.cellSize;
  }
}

void FieldData::Allocate(std::int32_t count) {
  start_ = AppendChainBlock(file_, count, width_, empty_);
  file_.WriteInt32(descriptor_, start_);
}

void FieldData::GrowOther(std::int32_t used, std::int32_t count) {
  if (style_.freeSize == free_size::kDictionary) return GrowIndex(used, count);
  const std::int64_t present = ChainLength(file_, start_, width_);
  if (present >= count) return;
  AddFixedRecords(static_cast<std::int32_t>(present) + 1, start_,
                  count - static_cast<std::int32_t>(present), file_, style_.cellSize, empty_);
}

/// An index is one contiguous block: a larger one, with room to spare, takes its place.
void FieldData::GrowIndex(std::int32_t used, std::int32_t count) {
  constexpr std::int64_t kShareToSpare = 8;
  constexpr std::int64_t kLeastToSpare = 16;
  IndexRoom& room = ChainDirectory::Of(file_).indexRoom();
  const auto known = room.find(start_);
  if (count <= used || (known != room.end() && count <= known->second)) return;
  const std::int64_t capacity = count + count / kShareToSpare + kLeastToSpare;
  const std::int32_t block = EndOfFile(file_);
  const std::int64_t bytes = DictionaryIndex::kHeadBytes + capacity * width_ + kPointerBytes;
  file_.WriteZeros(block, bytes);
  file_.Write(block, file_.View(start_, DictionaryIndex::kHeadBytes + std::int64_t{used} * width_));
  file_.WriteInt32(descriptor_, block);
  start_ = block;
  room[block] = capacity;
}

void FieldData::MoveUp(std::int32_t from, std::int32_t count, std::int32_t distance) {
  if (style_.freeSize == free_size::kDictionary) {
    const DictionaryIndex index(start_, width_);
    file_.Move(index.EntryPosition(from), index.EntryPosition(std::int64_t{from} + distance),
               std::int64_t{count} * width_);
  } else {
    MoveChainEntries(file_, start_, from, count, distance, width_);
  }
  Fill(from, distance);
}

void FieldData::Fill(std::int64_t from, std::int64_t count) {
  if (style_.freeSize == free_size::kDictionary) {
    file_.WriteZeros(DictionaryIndex(start_, width_).EntryPosition(from), count * width_);
    return;
  }
  while (count > 0) {
    const ChainRun run = FindChainRun(file_, start_, from, width_);
    if (run.count == 0) Raise(RunTimeError::kSubscript);
    const std::int64_t entries = std::min(run.count, count);
    file_.Fill(run.position, entries * width_, empty_);
    from += entries;
    count -= entries;
  }
}

}  // namespace orv::storage
