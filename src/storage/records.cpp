#include "storage/records.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "storage/bytes.h"
#include "storage/cell_code.h"
#include "storage/cell_primitives.h"
#include "storage/chain_array.h"
#include "storage/chained_text.h"
#include "storage/field_data.h"
#include "storage/layout.h"
#include "storage/matrix.h"

namespace orv::storage {

using platform::File;
using platform::Raise;
using platform::RunTimeError;

void InsertRecords(std::int32_t matrix, std::int32_t quantity, std::int32_t position, File& file,
                   TypeTables& types, ErrorCode& error) {
  if (position < 1) {
    error.Set(code::kBadArgument);
    return;
  }
  if (quantity < 1 || matrix < 1) return;
  const std::int16_t fieldCount = ContainerFieldCount(file, matrix);
  if (fieldCount < 1) {
    error.Set(code::kInvalidCall);
    return;
  }
  const std::int32_t n = TrustedRecordCount(file, matrix);
  if (quantity > std::numeric_limits<std::int32_t>::max() - n) Raise(RunTimeError::kOverflow);
  position = std::min(position, n + 1);

  const bool moves = position < n;
  std::vector<FieldData> moving;  // data that the insertion itself allocates has nothing to move
  DescriptorWalk fields(file, matrix);
  for (int f = 1; f <= fieldCount; ++f) {
    const std::int32_t descriptor = fields.Next();
    if (descriptor < 1) continue;
    FieldData data(file, matrix, descriptor, types);
    if (!data.HasEntries()) continue;
    if (data.IsAllocated()) {
      data.Grow(n, n + quantity);
      if (moves) moving.push_back(data);
    } else {
      data.Allocate(std::max(position, quantity));
    }
  }
  // The count comes before the moves: an entry that has moved up is never behind the last record.
  SetRecordCount(file, matrix, n + quantity);
  for (FieldData& data : moving) data.MoveUp(position, n - position + 1, quantity);
}

void MakeRoom(std::int32_t matrix, std::int32_t descriptor, File& file, TypeTables& types) {
  const std::int32_t records = TrustedRecordCount(file, matrix);
  FieldData data(file, matrix, descriptor, types);
  if (!data.HasEntries()) return;
  if (data.IsAllocated()) {
    data.Grow(records, records);
  } else {
    data.Allocate(records);
  }
}

void SetCellForm(std::int32_t matrix, std::int32_t r, std::int16_t f, std::int16_t width,
                 File& file, ErrorCode& error) {
  if (r < 1) {
    error.Set(code::kRecordNumber);
    return;
  }
  if (f < 1) {
    error.Set(code::kFieldNumber);
    return;
  }
  const std::int32_t descriptor = FindFieldDescriptor(file, matrix, f);
  if (descriptor < 1) return;
  if (r > ContainerRecordCount(file, matrix)) Raise(RunTimeError::kSubscript);
  if (StyleOf(descriptor, file).freeSize != free_size::kFree) return;
  const ChainRun slot = FindChainRun(file, file.Int32At(descriptor), r, layout::kPointerBytes);
  const std::int32_t cell = slot.count == 0 ? 0 : file.Int32At(slot.position);
  if (cell < 1 || cell > file.Length()) return;
  std::string buffer;
  std::int16_t word = 0;
  const std::string text(GetCell(cell, file, word, buffer));
  CellCode parts = DecodeCellCode(word);
  const bool wantsLong = width == layout::kLongLengthBytes;
  if (parts.matrix || parts.longForm == wantsLong) return;
  parts.longForm = wantsLong;

  const std::int32_t position = EndOfFile(file);
  std::string bytes;
  AppendInteger(bytes, EncodeCellCode(parts));
  AppendTextPieces(bytes, std::int64_t{position} + layout::cell::kText, text, width);
  file.Write(position, bytes);
  file.WriteInt32(slot.position, position);
}

}  // namespace orv::storage
