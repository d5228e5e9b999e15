#include "inspect/packed_check.h"

#include <optional>
#include <unordered_set>

#include "inspect/dictionary_check.h"
#include "inspect/sound_code.h"
#include "storage/cell_batch.h"
#include "storage/chain_array.h"
#include "storage/dictionary.h"
#include "storage/field_style.h"
#include "storage/layout.h"

namespace orv::inspect {

namespace layout = storage::layout;
namespace at = layout::descriptor;
using storage::DictionaryIndex;
using storage::FieldReader;

namespace {

bool IsDictionary(const PackedField& packed) {
  return packed.field.style.freeSize == storage::free_size::kDictionary;
}

/// The record's text; nothing when it cannot be read.
std::optional<std::string> TextOf(FieldReader& reader, std::int32_t r) {
  try {
    return std::string(reader.Read(r));
  } catch (const platform::RunTimeFailure&) {
    return std::nullopt;
  }
}

}  // namespace

void PackedCheck::Verify(const PackedField& packed) {
  if (!HasDictionary(packed)) return Unpack(packed, "its dictionary is not to be had");
  if (job_.copy.full() || ReadsAsBefore(packed)) return;
  Unpack(packed, "its cells would read differently");
}

bool PackedCheck::HasDictionary(const PackedField& packed) {
  if (!IsDictionary(packed)) return true;
  const RescuedField& field = packed.field;
  const std::int32_t index = job_.copy.file().Int32At(field.to);
  DictionaryCheck check(job_.copy.file());
  return !check.Check(
      {{}, field.matrix->to, field.to, index, field.style.cellSize, packed.records});
}

bool PackedCheck::ReadsAsBefore(const PackedField& packed) {
  const RescuedField& field = packed.field;
  platform::File& target = job_.copy.file();
  FieldReader before = SourceReader(field);
  FieldReader after(target, field.matrix->to, field.to, &targetTypes_);
  const DictionaryIndex index(target.Int32At(field.to), field.style.cellSize);
  std::unordered_set<std::int32_t> compared{0};  // index 0 is the empty text everywhere
  for (std::int32_t r = 1; r <= packed.records; ++r) {
    if (IsDictionary(packed) && !compared.insert(index.Read(target, r)).second) continue;
    const std::optional<std::string> text = TextOf(before, r);
    if (text && text != TextOf(after, r)) return false;
  }
  return true;
}

void PackedCheck::Unpack(const PackedField& packed, const std::string& why) {
  const RescuedField& field = packed.field;
  MakeFree(field);
  job_.log.ChangeOfField(field, "the field arrives in the free style: " + why);
  if (!job_.copy.HasRoom(std::int64_t{packed.records} * layout::kPointerBytes)) return;
  FieldReader before = SourceReader(field);
  job_.log.CountCells(-packed.records);
  const std::int64_t unread = CopyTexts(packed, before);
  if (unread > 0) {
    job_.log.LoseOfField(field, std::to_string(unread) + " cells cannot be read");
  }
  if (IsDictionary(packed)) TellMissingValues(packed, before);
}

void PackedCheck::MakeFree(const RescuedField& field) {
  const std::int64_t descriptor = field.to;
  platform::File& target = job_.copy.file();
  target.WriteByte(descriptor + at::kStyle, storage::style_code::kFree);
  target.WriteInt16(descriptor + at::kCellSize, 0);
  target.WriteInt32(descriptor + at::kData, 0);
}

/// Writes the texts into new free cells; returns how many cannot be read.
std::int64_t PackedCheck::CopyTexts(const PackedField& packed, FieldReader& before) {
  const RescuedField& field = packed.field;
  const std::int32_t block =
      storage::AppendChainBlock(job_.copy.file(), packed.records, layout::kPointerBytes);
  job_.copy.file().WriteInt32(field.to, block);
  const std::int16_t type =
      SoundCode(job_.source.Int16At(std::int64_t{field.from} + at::kFieldCode)).type;
  std::int64_t unread = 0;
  std::int64_t slot = std::int64_t{block} + layout::kChainHeadBytes;
  for (std::int32_t r = 1; r <= packed.records && !job_.copy.full(); ++r) {
    const std::optional<std::string> text = TextOf(before, r);
    if (!text) ++unread;
    if (text && !text->empty()) job_.copy.AddText(slot, storage::NewCellCode(type, *text), *text);
    slot += layout::kPointerBytes;
  }
  job_.copy.Flush();
  return unread;
}

/// Without a dictionary the engine reads every index as the empty text.
void PackedCheck::TellMissingValues(const PackedField& packed, FieldReader& before) {
  const DictionaryIndex index(packed.field.start, packed.field.style.cellSize);
  std::int64_t missing = 0;
  for (std::int32_t r = 1; r <= packed.records; ++r) {
    const std::optional<std::string> text = TextOf(before, r);
    if (text && text->empty() && index.Read(job_.source, r) != 0) ++missing;
  }
  if (missing == 0) return;
  job_.log.LoseOfField(packed.field, std::to_string(missing) + " cells have an index and no value");
}

FieldReader PackedCheck::SourceReader(const RescuedField& field) {
  return {job_.source, field.matrix->from, field.from, &sourceTypes_};
}

}  // namespace orv::inspect
