#include "storage/cell_batch.h"

#include "storage/bytes.h"
#include "storage/cell_code.h"
#include "storage/cell_primitives.h"
#include "storage/chain_array.h"
#include "storage/chained_text.h"

namespace orv::storage {
namespace {

/// Some thousand cells. Larger batches gain nothing and only take memory.
constexpr std::size_t kGreatestBatch = std::size_t{1} << 16;

}  // namespace

void CellBatch::Add(std::int64_t slot, std::int16_t code, std::string_view text) {
  if (LengthBytes(code) == layout::kShortLengthBytes &&
      text.size() >= layout::cell::kShortTextLimit) {
    // Several pieces name one another by position, which is known only at the end of the file.
    Flush();
    const std::int32_t cell = EndOfFile(file_);
    AppendInteger(bytes_, code);
    AppendTextPieces(bytes_, std::int64_t{cell} + layout::cell::kText, text, LengthBytes(code));
    pending_.push_back({slot, 0});
    Flush();
    return;
  }
  pending_.push_back({slot, bytes_.size()});
  AppendInteger(bytes_, code);
  AppendTextPieces(bytes_, 0, text, LengthBytes(code));
  if (bytes_.size() >= kGreatestBatch) Flush();
}

void CellBatch::Flush() {
  if (pending_.empty()) return;
  const std::int32_t first = EndOfFile(file_);
  file_.Write(first, bytes_);
  for (const Pending& cell : pending_) {
    file_.WriteInt32(cell.slot, first + static_cast<std::int32_t>(cell.offset));
  }
  bytes_.clear();
  pending_.clear();
}

std::int16_t NewCellCode(std::int16_t type, std::string_view text) {
  return EncodeCellCode({type, text.size() >= layout::cell::kShortTextLimit, false});
}

}  // namespace orv::storage
