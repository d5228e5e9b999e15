#include "inspect/chained_data_rescue.h"

#include <algorithm>
#include <string_view>

#include "inspect/sound_code.h"
#include "storage/cell_batch.h"
#include "storage/cell_primitives.h"
#include "storage/chain_array.h"
#include "storage/chained_text.h"
#include "storage/layout.h"

namespace orv::inspect {

namespace layout = storage::layout;

void ChainedDataRescue::CopyFree(const RescuedField& field, std::int32_t records) {
  ChainEntries entries(job_.source, field.start, layout::kPointerBytes);
  const std::int64_t all = entries.Count();
  const bool surplus = all > records;  // empty slots behind the records are none
  TellEnd(field, entries, surplus ? std::max<std::int64_t>(entries.LastUsed(), records) : all,
          records);
  const std::int64_t count = std::min<std::int64_t>(all, records);
  if (count == 0 || !job_.copy.HasRoom(count * layout::kPointerBytes)) return;
  const std::int32_t block =
      storage::AppendChainBlock(job_.copy.file(), count, layout::kPointerBytes);
  job_.copy.file().WriteInt32(field.to, block);
  CopyCells(field, entries, count, std::int64_t{block} + layout::kChainHeadBytes);
}

std::optional<PackedField> ChainedDataRescue::CopyFixed(const RescuedField& field,
                                                        std::int32_t records) {
  const std::int32_t width = field.style.cellSize;
  if (width < 1) {
    job_.log.LoseOfField(field, "cells of " + std::to_string(width) + " bytes cannot be read");
    return std::nullopt;
  }
  ChainEntries entries(job_.source, field.start, width);
  const std::int64_t all = entries.Count();
  TellEnd(field, entries, all, records);
  const std::int64_t count = std::min<std::int64_t>(all, records);
  if (count == 0 || !job_.copy.HasRoom(count * width)) return std::nullopt;
  const std::int32_t block = storage::AppendChainBlock(job_.copy.file(), count, width);
  CopyEntries(entries, count, width, std::int64_t{block} + layout::kChainHeadBytes);
  job_.copy.file().WriteInt32(field.to, block);
  job_.log.CountCells(count);
  return PackedField{field, static_cast<std::int32_t>(count)};
}

/// Tells where the data, which has entries for `count` records, ends too early or too late.
void ChainedDataRescue::TellEnd(const RescuedField& field, const ChainEntries& entries,
                                std::int64_t count, std::int32_t records) {
  if (count > records) {
    job_.log.LoseOfRecord(field, std::int64_t{records} + 1,
                          "the field has data for " + std::to_string(count) +
                              " records, which are left out behind the last of " +
                              std::to_string(records));
  }
  if (count >= records || !entries.broken()) return;
  job_.log.LoseOfRecord(field, count + 1,
                        "the field's data breaks off: records " + std::to_string(count + 1) +
                            " to " + std::to_string(records) + " cannot be reached");
}

/// Copies the cells of the first `count` records; `slot` is the first record's in the copy.
void ChainedDataRescue::CopyCells(const RescuedField& field, ChainEntries& entries,
                                  std::int64_t count, std::int64_t slot) {
  for (std::int64_t r = 1; r <= count;) {
    const storage::ChainRun run = entries.Run(r);
    const std::int64_t end = std::min(r + run.count, count + 1);
    for (std::int64_t from = run.position; r < end; ++r) {
      CopyCell(field, r, job_.source.Int32At(from), slot);
      if (job_.copy.full()) return;
      from += layout::kPointerBytes;
      slot += layout::kPointerBytes;
    }
  }
}

void ChainedDataRescue::CopyCell(const RescuedField& field, std::int64_t r, std::int32_t cell,
                                 std::int64_t slot) {
  if (cell == 0) return;
  if (!job_.source.Contains(cell, layout::cell::kText)) {
    return job_.log.LoseOfRecord(field, r, "the cell's pointer leads to " + std::to_string(cell));
  }
  if (job_.source.Int16At(cell) < 0) return CopyNested(field, r, cell, slot);
  CopyText(field, r, cell, slot);
}

void ChainedDataRescue::CopyText(const RescuedField& field, std::int64_t r, std::int32_t cell,
                                 std::int64_t slot) {
  std::int16_t code = 0;
  const std::string_view text = storage::GetCell(cell, job_.source, code, buffer_);
  if (!storage::IsWholeText(job_.source, std::int64_t{cell} + layout::cell::kText,
                            storage::LengthBytes(code))) {
    job_.log.LoseOfRecord(
        field, r, "the text can be read in part only: " + std::to_string(text.size()) + " bytes");
  }
  job_.copy.AddText(slot, SoundTextCode(code), text);
}

void ChainedDataRescue::CopyNested(const RescuedField& field, std::int64_t r, std::int32_t cell,
                                   std::int64_t slot) {
  if (const auto obstacle = matrices_.Obstacle(cell, *field.matrix)) {
    return CopyTitle(field, r, cell, slot, *obstacle);
  }
  const std::string step = "/[" + std::to_string(r) + "," + std::to_string(field.number) + "]";
  const std::int32_t copy = matrices_.Enter(cell, *field.matrix, step);
  if (copy == 0) return;
  job_.copy.file().WriteInt32(slot, copy);
  job_.log.CountCells(1);
}

/// Of a matrix that cannot be copied as one.
void ChainedDataRescue::CopyTitle(const RescuedField& field, std::int64_t r, std::int32_t cell,
                                  std::int64_t slot, const std::string& obstacle) {
  std::int16_t code = 0;
  const std::string_view title = storage::GetCell(cell, job_.source, code, buffer_);
  job_.log.LoseOfRecord(
      field, r, "the matrix cannot be copied: " + obstacle + "; its title arrives as a text");
  job_.copy.AddText(slot, storage::NewCellCode(layout::cell::kPlainType, title), title);
}

/// Copies the bytes of the first `count` entries to `to` in the copy.
void ChainedDataRescue::CopyEntries(ChainEntries& entries, std::int64_t count, std::int64_t width,
                                    std::int64_t to) {
  for (std::int64_t r = 1; r <= count;) {
    const storage::ChainRun run = entries.Run(r);
    const std::int64_t taken = std::min(run.count, count - r + 1);
    job_.copy.file().Write(to, job_.source.View(run.position, taken * width));
    to += taken * width;
    r += taken;
  }
}

}  // namespace orv::inspect
