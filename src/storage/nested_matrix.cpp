#include "storage/nested_matrix.h"

#include "storage/cell_code.h"
#include "storage/cell_primitives.h"
#include "storage/chain_array.h"
#include "storage/layout.h"
#include "storage/matrix.h"
#include "storage/records.h"

namespace orv::storage {

using platform::File;
using platform::Raise;
using platform::RunTimeError;

namespace {

/// Appends the header and then stores its position in the slot.
void AppendMatrix(File& file, std::int64_t slot, std::int16_t code, const std::string& title) {
  const std::int32_t position = EndOfFile(file);
  CreateMatrixHeader(file, position, code, title, layout::matrix::kHeaderWordValue);
  file.WriteInt32(slot, position);
}

/// A cell that has no entry yet gets one; a record outside the matrix raises 9.
void EnsureSlot(Storage& storage, const Location& at, std::int32_t descriptor, std::int32_t r) {
  File& file = *at.file;
  const std::int32_t records = ContainerRecordCount(file, at.position);
  if (r < 1 || r > records) Raise(RunTimeError::kSubscript);
  if (FindChainRun(file, file.Int32At(descriptor), r, layout::kPointerBytes).count > 0) return;
  MakeRoom(at.position, descriptor, file, storage.types);
}

void PutIntoCell(Storage& storage, const Location& at, std::int32_t descriptor, std::int32_t r,
                 std::string& mtxName) {
  File& file = *at.file;
  EnsureSlot(storage, at, descriptor, r);
  std::int32_t slot = 0;
  const std::int32_t cell = GetCellPos(descriptor, r, file, slot, storage.error);
  // A nested matrix keeps the type number that its cell, or else its field, had.
  std::int16_t type = FieldTypeNumber(descriptor, file);
  if (file.Contains(cell, layout::cell::kText)) {
    std::int16_t word = 0;
    std::string buffer;
    const std::string text(GetCell(cell, file, word, buffer));
    type = DecodeCellCode(word).type;
    if (mtxName.empty()) mtxName = text;
  }
  AppendMatrix(file, slot, EncodeCellCode({type, false, true}), mtxName);
}

}  // namespace

void PutMatrix(Storage& storage, const std::wstring& pth, std::int32_t r, std::int16_t f,
               std::string& mtxName) {
  const Location at = storage.resolver.ResolvePath(pth);
  if (storage.error.IsSet()) return;
  if (!at.IsMatrix()) {
    storage.error.Set(at.IsDbase() ? code::kNotOnDbase : code::kBadArgument);
    return;
  }
  storage.types.Clear();
  if (r == kTypeTableRecord) {
    AppendMatrix(*at.file, std::int64_t{at.position} + layout::matrix::kProperties,
                 layout::matrix::kPlainCode, mtxName);
    return;
  }
  const std::int32_t record = storage.UnderlyingRecord(at, r);
  const std::int16_t field = storage.UnderlyingField(at, f);
  const std::int32_t descriptor = storage.fields.GetFieldPos(at.position, field, *at.file);
  if (descriptor < 1) {
    storage.error.Set(code::kBadArgument);
    return;
  }
  if (StyleOf(descriptor, *at.file).freeSize != free_size::kFree) {
    storage.error.Set(code::kNoMatrixInField);
    return;
  }
  PutIntoCell(storage, at, descriptor, record, mtxName);
}

}  // namespace orv::storage
