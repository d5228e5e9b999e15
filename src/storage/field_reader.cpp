#include "storage/field_reader.h"

#include "platform/code_page.h"
#include "storage/cell_code.h"
#include "storage/cell_primitives.h"
#include "storage/dictionary.h"
#include "storage/layout.h"
#include "storage/matrix.h"
#include "storage/number_text.h"

namespace orv::storage {

using platform::File;
using platform::Raise;
using platform::RunTimeError;

FixedFormat FixedFormatOf(File& file, std::int32_t matrix, std::int32_t descriptor,
                          const FieldStyle& style, TypeTables* types) {
  FixedFormat format{style.cellSize, style.dataType, 0, false};
  if (types == nullptr) return format;
  const std::int16_t typeNumber = FieldTypeNumber(descriptor, file);
  const TypeProperty* type = types->Find(file, matrix, typeNumber, "type");
  format.intProperty = type != nullptr && type->text == kIntType;
  const TypeProperty* decimals = types->Find(file, matrix, typeNumber, "decimals");
  if (decimals != nullptr)
    format.decimals = RoundToInt32(LeadingNumber(decimals->text)).value_or(0);
  return format;
}

namespace {

/// Most cells are not longer.
constexpr int kUsualCellBytes = 48;

/// The cell whose pointer stands in the slot.
FreeCell CellOfSlot(const File& file, std::int64_t slot, std::string& buffer) {
  FreeCell cell;
  const std::int32_t position = file.Int32At(slot);
  if (position < 1) return cell;
  cell.position = position;
  file.Announce(std::int64_t{position} + kUsualCellBytes);  // it may lie across two cache lines
  cell.text = GetCell(position, file, cell.code, buffer);
  return cell;
}

}  // namespace

FreeCell ReadFreeCell(File& file, std::int32_t matrix, std::int32_t descriptor, std::int32_t r,
                      std::string& buffer) {
  if (r < 1 || r > ContainerRecordCount(file, matrix)) Raise(RunTimeError::kSubscript);
  const ChainRun run = FindChainRun(file, file.Int32At(descriptor), r, layout::kPointerBytes);
  return run.count == 0 ? FreeCell() : CellOfSlot(file, run.position, buffer);
}

FieldReader::FieldReader(File& file, std::int32_t matrix, std::int32_t descriptor,
                         TypeTables* types)
    : file_(file),
      types_(types),
      matrix_(matrix),
      descriptor_(descriptor),
      style_(StyleOf(descriptor, file)),
      start_(file.Int32At(descriptor)),
      records_(ContainerRecordCount(file, matrix)),
      fieldCode_(file.Int16At(std::int64_t{descriptor} + layout::descriptor::kFieldCode)) {
  if (style_.freeSize == free_size::kFixed) {
    format_ = FixedFormatOf(file_, matrix_, descriptor_, style_, types_);
  }
}

std::int16_t FieldReader::typeNumber() const { return DecodeCellCode(fieldCode_).type; }

std::string_view FieldReader::Read(std::int32_t r) {
  if (r < 1 || r > records_) Raise(RunTimeError::kSubscript);
  cell_ = 0;
  switch (style_.freeSize) {
    case free_size::kFree:
      return ReadFree(r);
    case free_size::kFixed:
      code_ = fieldCode_;
      return ReadFixed(r);
    case free_size::kDictionary:
      code_ = fieldCode_;
      return ReadDictionary(r);
    default:
      code_ = fieldCode_;
      return {};
  }
}

std::int64_t FieldReader::Reach() const {
  try {
    if (style_.freeSize == free_size::kFree) {
      return ChainLength(file_, start_, layout::kPointerBytes);
    }
    if (style_.freeSize == free_size::kFixed) return ChainLength(file_, start_, style_.cellSize);
  } catch (const platform::RunTimeFailure&) {
    return platform::kGreatestLength;
  }
  return style_.freeSize == free_size::kDictionary ? file_.Length() : 0;
}

/// Whether the data has an entry for record `r`; finds its block when it is not the one read last.
bool FieldReader::Reaches(std::int32_t r, std::int32_t entryBytes) {
  if (r >= runFirst_ && r < runFirst_ + run_.count) return true;
  run_ = FindChainRun(file_, start_, r, entryBytes);
  runFirst_ = r;
  return run_.count > 0;
}

/// A scan reads one record after the other: memory fetches the cell some records on meanwhile.
void FieldReader::AnnounceCellBehind(std::int32_t r) const {
  constexpr std::int32_t kAhead = 8;
  if (r + kAhead >= runFirst_ + run_.count) return;
  file_.Announce(file_.Int32At(EntryPosition(r + kAhead, layout::kPointerBytes)));
}

std::string_view FieldReader::ReadFree(std::int32_t r) {
  code_ = 0;
  if (!Reaches(r, layout::kPointerBytes)) return {};
  AnnounceCellBehind(r);
  const FreeCell cell = CellOfSlot(file_, EntryPosition(r, layout::kPointerBytes), buffer_);
  code_ = cell.code;
  cell_ = cell.position;
  return cell.text;
}

std::string_view FieldReader::ReadFixed(std::int32_t r) {
  if (!Reaches(r, style_.cellSize)) return {};
  const std::string_view bytes = file_.View(EntryPosition(r, style_.cellSize), style_.cellSize);
  if (!format_.IsNumeric()) return platform::Trim(bytes);
  buffer_ = FixedCellText(bytes, format_);
  return buffer_;
}

std::string_view FieldReader::ReadDictionary(std::int32_t r) {
  if (!DictionaryIndex::IsWidth(style_.cellSize) || start_ < 1) return {};
  const std::int32_t index = DictionaryIndex(start_, style_.cellSize).Read(file_, r);
  if (index == 0) return {};
  if (!dictionaryOpened_) OpenDictionary();
  return values_ ? values_->Read(index) : std::string_view();
}

void FieldReader::OpenDictionary() {
  dictionaryOpened_ = true;
  if (types_ == nullptr) return;
  const TypeProperty* dictionary = types_->Find(file_, matrix_, typeNumber(), kDictionaryProperty);
  if (dictionary == nullptr || dictionary->matrix < 1) return;
  const std::int32_t values = FindFieldDescriptor(file_, dictionary->matrix, kDictionaryValueField);
  // The values' own types are not consulted: dictionaries could lead in circles.
  if (values > 0)
    values_ = std::make_unique<FieldReader>(file_, dictionary->matrix, values, nullptr);
}

}  // namespace orv::storage
