#include "storage/cell_writer.h"

#include <string>

#include "storage/cell_code.h"
#include "storage/cell_primitives.h"
#include "storage/chain_array.h"
#include "storage/chained_text.h"
#include "storage/dictionary_writer.h"
#include "storage/field_reader.h"
#include "storage/layout.h"
#include "storage/matrix.h"
#include "storage/records.h"

namespace orv::storage {

using platform::Raise;
using platform::RunTimeError;

namespace {

/// Whether the cell holds a matrix whose title pointer leads outside the file. The text primitive
/// would write a new text there, however far behind the end.
bool HasWildTitle(const platform::File& file, std::int32_t cell) {
  if (file.Int16At(cell) >= 0) return false;
  const std::int32_t title = file.Int32At(std::int64_t{cell} + layout::matrix::kTitle);
  return !file.Contains(title, layout::kLongLengthBytes);
}

}  // namespace

void CellWriter::WriteName(std::int32_t descriptor, std::string_view text) {
  const std::int64_t titleCell = std::int64_t{descriptor} + layout::descriptor::kTitleCell;
  const std::int16_t word = file_.Int16At(titleCell);
  WriteChainedText(file_, static_cast<std::int32_t>(titleCell + layout::cell::kText), text,
                   LengthBytes(word));
}

void CellWriter::Write(std::int32_t descriptor, std::int32_t r, std::int16_t f,
                       std::string_view text) {
  const std::int32_t records = ContainerRecordCount(file_, matrix_);
  if (r < 1 || r > records) Raise(RunTimeError::kSubscript);
  if (HoldsFreeCells(descriptor, file_)) return WriteFree(descriptor, r, f, text);
  WriteOther(descriptor, r, text);
}

void CellWriter::WriteOther(std::int32_t descriptor, std::int32_t r, std::string_view text) {
  const FieldStyle style = StyleOf(descriptor, file_);
  switch (style.freeSize) {
    case free_size::kFixed:
      return WriteFixed(descriptor, r, style, text);
    case free_size::kDictionary:
      return DictionaryWriter(file_, matrix_, types_, error_).Write(descriptor, r, text);
    default:
      error_.Set(code::kInvalidCall);  // nothing writes compressed cells
  }
}

void CellWriter::WriteFree(std::int32_t descriptor, std::int32_t r, std::int16_t f,
                           std::string_view text) {
  ChainRun entry = FindEntry(descriptor, r);
  if (entry.count == 0) {
    if (text.empty()) return;
    entry = MakeEntry(descriptor, r);
  }
  const auto slot = static_cast<std::int32_t>(entry.position);
  std::int32_t cell = file_.Int32At(slot);
  if (cell != 0) return Overwrite(slot, r, f, text);
  if (text.empty()) return;
  const bool isLong = text.size() >= layout::cell::kShortTextLimit;
  std::int16_t word = EncodeCellCode({FieldTypeNumber(descriptor, file_), isLong, false});
  PutCell(cell, word, text, file_, slot);
}

void CellWriter::Overwrite(std::int32_t slot, std::int32_t r, std::int16_t f,
                           std::string_view text) {
  std::int32_t cell = file_.Int32At(slot);
  if (!file_.Contains(cell, layout::cell::kText) || HasWildTitle(file_, cell)) {
    Raise(RunTimeError::kSubscript);
  }
  const bool isLong = text.size() >= layout::cell::kShortTextLimit;
  if (isLong && LengthBytes(file_.Int16At(cell)) == layout::kShortLengthBytes) {
    // The long form is longer than the short cell: it gets a place of its own before it is written.
    SetCellForm(matrix_, r, f, layout::kLongLengthBytes, file_, error_);
    cell = file_.Int32At(slot);
  }
  std::int16_t keepCode = 0;
  PutCell(cell, keepCode, text, file_, slot);
}

ChainRun CellWriter::MakeEntry(std::int32_t descriptor, std::int32_t r) {
  MakeRoom(matrix_, descriptor, file_, types_);
  const ChainRun entry = FindEntry(descriptor, r);
  if (entry.count == 0) Raise(RunTimeError::kSubscript);
  return entry;
}

void CellWriter::WriteFixed(std::int32_t descriptor, std::int32_t r, const FieldStyle& style,
                            std::string_view text) {
  if (style.cellSize < 1) Raise(RunTimeError::kSubscript);
  const FixedFormat format = FixedFormatOf(file_, matrix_, descriptor, style, &types_);
  std::string bytes;
  if (!format.intProperty) {
    bytes = FixedCellBytes(text, format, error_);
    if (error_.IsSet()) return;
  }
  const std::int32_t start = file_.Int32At(descriptor);
  if (FindChainRun(file_, start, r, style.cellSize).count == 0) {
    MakeRoom(matrix_, descriptor, file_, types_);
  }
  const ChainRun entry = FindChainRun(file_, file_.Int32At(descriptor), r, style.cellSize);
  if (format.intProperty) {
    SetFixedData(r, file_.Int32At(descriptor), file_, style.cellSize, text, kIntType);
  } else {
    file_.Write(entry.position, bytes);
  }
}

}  // namespace orv::storage
