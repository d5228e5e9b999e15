#include "exchange/matrix_copy.h"

#include <algorithm>
#include <vector>

#include "platform/code_page.h"
#include "platform/stack_room.h"
#include "storage/bytes.h"
#include "storage/cell_code.h"
#include "storage/cell_primitives.h"
#include "storage/chain_array.h"
#include "storage/chained_text.h"
#include "storage/dictionary.h"
#include "storage/field_reader.h"
#include "storage/layout.h"
#include "storage/matrix.h"

namespace orv::exchange {

using platform::File;
using platform::Raise;
using platform::RunTimeError;
using storage::DictionaryIndex;
using storage::FieldStyle;
using storage::Location;
namespace descriptor_layout = storage::layout::descriptor;
namespace free_size = storage::free_size;
namespace layout = storage::layout;

namespace {

/// Far more levels than any path can name.
constexpr std::size_t kGreatestDepth = 1000;
/// What one more level may need of the stack.
constexpr std::size_t kStackReserve = std::size_t{128} * 1024;

/// A matrix while it is being copied. Raises 28 for one that contains itself.
class OpenMatrix {
 public:
  OpenMatrix(std::unordered_set<std::int32_t>& open, std::int32_t matrix)
      : open_(open), matrix_(matrix) {
    const bool tooDeep = open.size() >= kGreatestDepth || platform::StackRoom() < kStackReserve;
    if (tooDeep || !open.insert(matrix).second) Raise(RunTimeError::kOutOfStack);
  }
  ~OpenMatrix() { open_.erase(matrix_); }
  OpenMatrix(const OpenMatrix&) = delete;
  OpenMatrix& operator=(const OpenMatrix&) = delete;

 private:
  std::unordered_set<std::int32_t>& open_;
  std::int32_t matrix_;
};

std::string TitleOf(const File& file, std::int32_t matrix) {
  std::string buffer;
  return std::string(
      storage::ReadChainedText(file, file.Int32At(std::int64_t{matrix} + layout::matrix::kTitle),
                               layout::kLongLengthBytes, buffer));
}

bool CanBeMatrix(const File& file, std::int32_t position) {
  return file.Contains(position, layout::matrix::kHeaderBytes);
}

/// The same place without the view that led to it.
Location At(const Location& location, std::int32_t position) {
  Location at = location;
  at.position = position;
  at.filter = 0;
  return at;
}

/// Appends the header of a copy of the matrix, without its content.
std::int32_t AppendHeader(const File& from, std::int32_t matrix, File& to) {
  const std::int32_t position = storage::EndOfFile(to);
  storage::CreateMatrixHeader(to, position, from.Int16At(matrix), TitleOf(from, matrix),
                              from.Int16At(std::int64_t{matrix} + layout::matrix::kHeaderWord));
  return position;
}

}  // namespace

bool MatrixCopy::SaveInternal(const Location& source, std::int32_t target) {
  const OpenMatrix open(open_, source.position);
  if (!CopyFields(source, target) || !CopyProperties(source, target)) return false;
  if (open_.size() == 1) cells_.Flush();
  return true;
}

bool MatrixCopy::CopyFields(const Location& source, std::int32_t target) {
  storage::TableReader reader(storage_, source);
  if (reader.fields() < 1) return true;
  const std::int32_t records = std::max(reader.records(), 0);
  const auto fieldCount = static_cast<std::int16_t>(reader.fields());
  storage::CreateFieldTable(target_, target, fieldCount);
  storage::SetRecordCount(target_, target, records);
  const std::int32_t chain = storage::FieldChain(target_, target);
  std::vector<FieldCopy> cellFields;
  for (int f = 1; f <= fieldCount; ++f) {
    FieldCopy field{reader.Field(f)};
    field.descriptor = CopyDescriptor(*source.file, field.reader);
    target_.WriteInt32(
        storage::ReadChainEntry(target_, chain, f, layout::kPointerBytes, false).position,
        field.descriptor);
    if (field.reader == nullptr || field.reader->dataStart() < 1) continue;
    CopyData(source, field, records);
    if (field.count > 0) cellFields.push_back(field);
  }
  return CopyCells(source, cellFields, records);
}

/// A descriptor with style, types and name, without data yet.
std::int32_t MatrixCopy::CopyDescriptor(const File& from, const storage::FieldReader* reader) {
  constexpr std::int16_t kPlain = layout::cell::kPlainType;
  std::string bytes(descriptor_layout::kTitleCell, '\0');
  std::int16_t nameCode = kPlain;
  std::string buffer;
  std::string_view name;
  if (reader == nullptr) {
    storage::PatchInteger(bytes, descriptor_layout::kStyle, storage::style_code::kFree);
    storage::PatchInteger(bytes, descriptor_layout::kFieldCode, kPlain);
  } else {
    const std::int64_t at = reader->descriptor();
    const FieldStyle& style = reader->style();
    storage::PatchInteger(bytes, descriptor_layout::kStyle,
                          from.ByteAt(at + descriptor_layout::kStyle));
    storage::PatchInteger(bytes, descriptor_layout::kCellSize, style.cellSize);
    storage::PatchInteger(bytes, descriptor_layout::kDataType, style.dataType);
    storage::PatchInteger(bytes, descriptor_layout::kFieldCode,
                          from.Int16At(at + descriptor_layout::kFieldCode));
    name = storage::GetCell(static_cast<std::int32_t>(at + descriptor_layout::kTitleCell), from,
                            nameCode, buffer);
    if (nameCode < 0) nameCode = storage::NewCellCode(kPlain, name);  // a name is no matrix
  }
  const std::int32_t position = storage::EndOfFile(target_);
  storage::AppendInteger(bytes, nameCode);
  storage::AppendTextPieces(bytes, position + std::ssize(bytes), name,
                            storage::LengthBytes(nameCode));
  target_.Write(position, bytes);
  return position;
}

void MatrixCopy::CopyData(const Location& source, FieldCopy& field, std::int32_t records) {
  switch (field.reader->style().freeSize) {
    case free_size::kFree:
      return PreparePointers(source, field, records);
    case free_size::kFixed:
      return CopyFixed(source, field, records);
    case free_size::kDictionary:
      return CopyIndex(source, field, records);
    default:
      return;  // nothing reads or writes compressed cells
  }
}

/// How many of the first `records` entries a copy of the field's chain array has. A view takes its
/// records from anywhere.
std::int64_t MatrixCopy::EntriesToCopy(const Location& source, const FieldCopy& field,
                                       std::int32_t width, std::int32_t records) {
  if (source.IsView()) return records;
  const std::int64_t present = storage::ChainLength(*source.file, field.reader->dataStart(), width);
  return std::min<std::int64_t>(present, records);
}

void MatrixCopy::PreparePointers(const Location& source, FieldCopy& field, std::int32_t records) {
  field.count = EntriesToCopy(source, field, layout::kPointerBytes, records);
  if (field.count == 0) return;
  const std::int32_t block = storage::AppendChainBlock(target_, field.count, layout::kPointerBytes);
  field.pointers = std::int64_t{block} + layout::kChainHeadBytes;
  target_.WriteInt32(field.descriptor, block);
}

void MatrixCopy::CopyFixed(const Location& source, const FieldCopy& field, std::int32_t records) {
  File& file = *source.file;
  const std::int32_t start = field.reader->dataStart();
  const std::int16_t width = field.reader->style().cellSize;
  if (width < 1) return;
  const std::int64_t count = EntriesToCopy(source, field, width, records);
  const std::int32_t block = storage::AppendChainBlock(target_, count, width);
  std::int64_t to = std::int64_t{block} + layout::kChainHeadBytes;
  if (source.IsView() && !field.reader->isNumericFixed()) {
    target_.Fill(to, count * width, platform::kBlank);
  }
  for (std::int64_t r = 1; r <= count;) {
    const std::int64_t from =
        source.IsView() ? storage_.UnderlyingRecord(source, static_cast<std::int32_t>(r)) : r;
    const storage::ChainRun run = storage::FindChainRun(file, start, from, width);
    const std::int64_t entries =
        source.IsView() || run.count == 0 ? 1 : std::min(run.count, count - r + 1);
    if (run.count > 0) target_.Write(to, file.View(run.position, entries * width));
    to += entries * width;
    r += entries;
  }
  target_.WriteInt32(field.descriptor, block);
}

void MatrixCopy::CopyIndex(const Location& source, const FieldCopy& field, std::int32_t records) {
  const File& file = *source.file;
  const std::int32_t width = field.reader->style().cellSize;
  const DictionaryIndex index(field.reader->dataStart(), width);
  if (!DictionaryIndex::IsWidth(width)) return;
  const std::int64_t all = storage::TrustedRecordCount(file, source.position);
  const std::int64_t bytes = DictionaryIndex::kHeadBytes + all * width;
  if (!file.Contains(index.start(), bytes)) Raise(RunTimeError::kSubscript);
  std::string block(
      file.View(index.start(), source.IsView() ? DictionaryIndex::kHeadBytes : bytes));
  for (std::int32_t r = 1; r <= records && source.IsView(); ++r) {
    DictionaryIndex::AppendEntry(block, width,
                                 index.Read(file, storage_.UnderlyingRecord(source, r)));
  }
  storage::AppendInteger(block, std::int32_t{0});
  const std::int32_t start = storage::EndOfFile(target_);
  target_.Write(start, block);
  target_.WriteInt32(field.descriptor, start);
}

bool MatrixCopy::CopyCells(const Location& source, const std::vector<FieldCopy>& fields,
                           std::int32_t records) {
  const bool outermost = open_.size() == 1;
  const File& file = *source.file;
  // Records without any cell are worth a turn of the loop only where a bar shows them.
  std::int64_t last = outermost ? records : 0;
  for (const FieldCopy& field : fields) last = std::max(last, field.count);
  if (outermost) dialog_.SetRange(0, records);
  for (std::int32_t r = 1; r <= last; ++r) {
    if (outermost) dialog_.SetValue(r);
    dialog_.ServiceEvents();
    if (dialogs::ExportData::CancelRequested()) return false;
    const std::int32_t from = storage_.UnderlyingRecord(source, r);
    for (const FieldCopy& field : fields) {
      if (r > field.count) continue;
      const std::string_view text = field.reader->Read(from);
      const std::int32_t cell = field.reader->cell();
      if (!file.Contains(cell, layout::cell::kText)) continue;
      const std::int64_t slot = field.pointers + std::int64_t{r - 1} * layout::kPointerBytes;
      if (field.reader->code() >= 0) {
        cells_.Add(slot, field.reader->code(), text);
      } else if (!CopyNested(source, cell, slot)) {
        return false;
      }
    }
  }
  return true;
}

bool MatrixCopy::CopyNested(const Location& source, std::int32_t cell, std::int64_t slot) {
  if (!CanBeMatrix(*source.file, cell)) return true;
  const std::int32_t copy = AppendHeader(*source.file, cell, target_);
  target_.WriteInt32(slot, copy);
  return SaveInternal(At(source, cell), copy);
}

bool MatrixCopy::CopyProperties(const Location& source, std::int32_t target) {
  const std::int32_t properties =
      source.file->Int32At(std::int64_t{source.position} + layout::matrix::kProperties);
  if (!CanBeMatrix(*source.file, properties)) return true;
  const std::int32_t copy = AppendHeader(*source.file, properties, target_);
  target_.WriteInt32(std::int64_t{target} + layout::matrix::kProperties, copy);
  return SaveInternal(At(source, properties), copy);
}

}  // namespace orv::exchange
