#include "inspect/descriptor_rescue.h"

#include <cstdint>
#include <iterator>
#include <string>

#include "inspect/sound_code.h"
#include "storage/cell_primitives.h"
#include "storage/chained_text.h"
#include "storage/dictionary.h"
#include "storage/field_style.h"
#include "storage/layout.h"
#include "storage/value_types.h"

namespace orv::inspect {

namespace layout = storage::layout;
namespace at = layout::descriptor;
namespace free_size = storage::free_size;
namespace style_code = storage::style_code;

namespace {

/// Whether the field's style goes with its cell size.
bool HasSizedCells(const storage::FieldStyle& style) {
  if (style.freeSize == free_size::kFixed) return style.cellSize > 0;
  return style.freeSize == free_size::kDictionary &&
         storage::DictionaryIndex::IsWidth(style.cellSize);
}

void CopyType(const RescueJob& job, const RescuedField& field) {
  const std::int16_t type = field.style.dataType;
  if (type < storage::type::kVariant || type > storage::type::kFile) {
    return job.log.ChangeOfField(
        field, "the data type code " + std::to_string(type) + " became 0 (variant)");
  }
  job.copy.file().WriteInt16(std::int64_t{field.to} + at::kDataType, type);
}

void CopyStyle(const RescueJob& job, const RescuedField& field) {
  const std::int64_t from = field.from;
  const std::int64_t to = field.to;
  const std::uint8_t style = job.source.ByteAt(from + at::kStyle);
  const bool sized = HasSizedCells(field.style);
  const bool known = (style >= style_code::kFree && style < style_code::kFixed) || sized ||
                     style == style_code::kCompressed;
  if (!known) {
    return job.log.ChangeOfField(
        field, "the style code " + std::to_string(style) + " with the cell size " +
                   std::to_string(job.source.Int16At(from + at::kCellSize)) +
                   " became the free style");
  }
  job.copy.file().WriteByte(to + at::kStyle, style);
  if (sized) job.copy.file().WriteInt16(to + at::kCellSize, field.style.cellSize);
}

/// The name, told to the log when it is not whole; `code` receives the name cell's code.
std::string ReadName(const RescueJob& job, const RescuedField& field, std::int16_t& code) {
  const std::int64_t cell = std::int64_t{field.from} + at::kTitleCell;
  std::string buffer;
  std::string name(storage::GetCell(static_cast<std::int32_t>(cell), job.source, code, buffer));
  const std::int64_t text = code < 0 ? std::int64_t{job.source.Int32At(cell + layout::cell::kText)}
                                     : cell + layout::cell::kText;
  if (!storage::IsWholeText(job.source, text, storage::LengthBytes(code))) {
    job.log.LoseOfRecord(
        field, 0, "the name can be read in part only: " + std::to_string(name.size()) + " bytes");
  }
  return name;
}

/// A name is written in the short form, however it was stored: it reads the same.
void CopyName(const RescueJob& job, const RescuedField& field) {
  std::int16_t code = 0;
  const std::string name = ReadName(job, field, code);
  if (!job.copy.HasRoom(std::ssize(name))) return;
  const std::int64_t cell = std::int64_t{field.to} + at::kTitleCell;
  storage::WriteChainedText(job.copy.file(), static_cast<std::int32_t>(cell + layout::cell::kText),
                            name, layout::kShortLengthBytes);
  job.copy.file().WriteInt16(cell, storage::EncodeCellCode({SoundCode(code).type, false, false}));
}

}  // namespace

void CopyDescriptor(const RescueJob& job, const RescuedField& field) {
  const std::int16_t code = job.source.Int16At(std::int64_t{field.from} + at::kFieldCode);
  job.copy.file().WriteInt16(std::int64_t{field.to} + at::kFieldCode, SoundTextCode(code));
  CopyType(job, field);
  CopyStyle(job, field);
  CopyName(job, field);
}

}  // namespace orv::inspect
