#include "storage/dictionary_writer.h"

#include <string>

#include "storage/bytes.h"
#include "storage/cell_writer.h"
#include "storage/chain_array.h"
#include "storage/field_reader.h"
#include "storage/layout.h"
#include "storage/matrix.h"
#include "storage/number_text.h"
#include "storage/records.h"

namespace orv::storage {

using platform::Raise;
using platform::RunTimeError;

namespace {

/// A dictionary's own fields are free or fixed; one that claims to be a dictionary is damage.
std::int32_t ValueFieldOf(platform::File& file, std::int32_t dictionaryMatrix, std::int16_t f) {
  const std::int32_t descriptor = FindFieldDescriptor(file, dictionaryMatrix, f);
  if (descriptor < 1 || StyleOf(descriptor, file).freeSize == free_size::kDictionary) {
    Raise(RunTimeError::kSubscript);
  }
  return descriptor;
}

}  // namespace

void DictionaryWriter::Write(std::int32_t descriptor, std::int32_t r, std::string_view text) {
  const TypeProperty* dictionary =
      types_.Find(file_, matrix_, FieldTypeNumber(descriptor, file_), kDictionaryProperty);
  const FieldStyle style = StyleOf(descriptor, file_);
  DictionaryIndex index(file_.Int32At(descriptor), style.cellSize);
  const bool usable = DictionaryIndex::IsWidth(style.cellSize) &&
                      file_.Contains(index.start(), DictionaryIndex::kHeadBytes) &&
                      file_.Contains(index.EntryPosition(r), index.width());
  if (dictionary == nullptr || dictionary->matrix < 1 || !usable) Raise(RunTimeError::kSubscript);
  const std::int32_t values = dictionary->matrix;

  const std::int32_t before = index.Read(file_, r);
  const std::int32_t now = text.empty() ? 0 : IndexOf(values, text);
  if (now == before || error_.IsSet()) return;
  if (now > DictionaryIndex::Greatest(index.width())) index = Widened(descriptor, index, now);
  // The greater count may need room and fail; the cell changes only after it stands.
  AddToCount(values, now, 1);
  index.Write(file_, r, now);
  AddToCount(values, before, -1);
}

std::int32_t DictionaryWriter::IndexOf(std::int32_t dictionaryMatrix, std::string_view text) {
  auto& known = types_.DictionaryValues(file_, dictionaryMatrix);
  const std::string value(text);
  if (const auto found = known.find(value); found != known.end()) return found->second;
  const std::int32_t index = AddValue(dictionaryMatrix, value);
  if (!error_.IsSet()) known.emplace(value, index);
  return index;
}

std::int32_t DictionaryWriter::AddValue(std::int32_t dictionaryMatrix, std::string_view text) {
  const std::int32_t index = ContainerRecordCount(file_, dictionaryMatrix) + 1;
  InsertRecords(dictionaryMatrix, 1, index, file_, types_, error_);
  if (error_.IsSet()) return 0;
  WriteValueCell(dictionaryMatrix, index, kDictionaryValueField, text);
  return index;
}

void DictionaryWriter::AddToCount(std::int32_t dictionaryMatrix, std::int32_t index,
                                  std::int32_t change) {
  if (index < 1 || index > ContainerRecordCount(file_, dictionaryMatrix)) return;
  FieldReader counts(file_, dictionaryMatrix,
                     ValueFieldOf(file_, dictionaryMatrix, kDictionaryCountField), nullptr);
  const double count = LeadingNumber(counts.Read(index)) + change;
  WriteValueCell(dictionaryMatrix, index, kDictionaryCountField, NumberText(count));
}

void DictionaryWriter::WriteValueCell(std::int32_t dictionaryMatrix, std::int32_t index,
                                      std::int16_t f, std::string_view text) {
  const std::int32_t descriptor = ValueFieldOf(file_, dictionaryMatrix, f);
  CellWriter(file_, dictionaryMatrix, types_, error_).Write(descriptor, index, f, text);
}

/// The index rewritten with the next width that can hold `greatest`; descriptor and block change in
/// one write after the new block stands.
DictionaryIndex DictionaryWriter::Widened(std::int32_t descriptor, const DictionaryIndex& index,
                                          std::int32_t greatest) {
  std::int32_t width = index.width();
  while (DictionaryIndex::Greatest(width) < greatest) width *= 2;
  const std::int32_t records = TrustedRecordCount(file_, matrix_);
  std::string block(file_.View(index.start(), DictionaryIndex::kHeadBytes));
  for (std::int32_t r = 1; r <= records; ++r) {
    DictionaryIndex::AppendEntry(block, width, index.Read(file_, r));
  }
  AppendInteger(block, std::int32_t{0});
  const std::int32_t start = EndOfFile(file_);
  file_.Write(start, block);

  std::string head(file_.View(descriptor, layout::descriptor::kCellSize));
  PatchInteger(head, layout::descriptor::kData, start);
  AppendInteger(head, width);
  file_.Write(descriptor, head);
  return {start, width};
}

}  // namespace orv::storage
