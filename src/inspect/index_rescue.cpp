#include "inspect/index_rescue.h"

#include <algorithm>
#include <limits>
#include <string>

#include "inspect/dictionary_check.h"
#include "storage/bytes.h"
#include "storage/chain_array.h"
#include "storage/dictionary.h"

namespace orv::inspect {

using storage::DictionaryIndex;

namespace {

/// How many of the records have an entry inside the file.
std::int64_t CountPresent(const RescueJob& job, const RescuedField& field, std::int32_t records) {
  const std::int64_t room = job.source.Length() + 1 - field.start - DictionaryIndex::kHeadBytes;
  return std::clamp<std::int64_t>(room / field.style.cellSize, 0, records);
}

/// Values of the field's dictionary. Without one there is no limit: the field will be unpacked,
/// which tells what is missing.
std::int64_t CountValues(const RescueJob& job, const RescuedField& field, std::int64_t present) {
  DictionaryCheck dictionary(job.source);
  return dictionary
      .CountValues({{}, field.matrix->from, field.from, field.start, field.style.cellSize, present})
      .value_or(std::numeric_limits<std::int32_t>::max());
}

/// The bytes of the index in the copy; the first `present` entries are the source's.
std::string IndexBlock(const RescueJob& job, const RescuedField& field, std::int64_t present,
                       std::int32_t records) {
  const DictionaryIndex index(field.start, field.style.cellSize);
  std::string block(DictionaryIndex::kHeadBytes, '\0');
  storage::PatchInteger(block, 0, DictionaryIndex::kTag);
  const std::int64_t values = CountValues(job, field, present);
  std::int64_t wrong = 0;
  std::int32_t first = 0;
  for (std::int32_t r = 1; r <= records; ++r) {
    std::int32_t value = r <= present ? index.Read(job.source, r) : 0;
    if (value < 0 || value > values) {
      if (++wrong == 1) first = r;
      value = 0;
    }
    DictionaryIndex::AppendEntry(block, index.width(), value);
  }
  if (wrong > 0) {
    job.log.LoseOfRecord(field, first,
                         "from here on " + std::to_string(wrong) +
                             " cells have an index above the dictionary's " +
                             std::to_string(values) + " values");
  }
  storage::AppendInteger(block, std::int32_t{0});
  return block;
}

}  // namespace

std::optional<PackedField> CopyIndex(const RescueJob& job, const RescuedField& field,
                                     std::int32_t records) {
  const std::int32_t width = field.style.cellSize;
  if (!DictionaryIndex::IsWidth(width)) {
    job.log.LoseOfField(field,
                        "index entries of " + std::to_string(width) + " bytes cannot be read");
    return std::nullopt;
  }
  const std::int64_t present = CountPresent(job, field, records);
  if (field.start < 1 || present < records) {
    job.log.LoseOfRecord(field, present + 1, "the index ends before this record");
  }
  if (field.start < 1 || !job.copy.HasRoom(std::int64_t{records} * width)) return std::nullopt;
  const std::string block = IndexBlock(job, field, present, records);
  const std::int32_t start = storage::EndOfFile(job.copy.file());
  job.copy.file().Write(start, block);
  job.copy.file().WriteInt32(field.to, start);
  job.log.CountCells(records);
  return PackedField{field, records};
}

}  // namespace orv::inspect
