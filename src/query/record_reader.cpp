#include "query/record_reader.h"

namespace orv::query {

RecordReader::RecordReader(storage::Storage& storage, const storage::Location& at, std::int16_t fld)
    : storage_(storage), at_(at), field_(fld) {
  if (!at.IsMatrix()) return;
  const std::int16_t underlying =
      at.IsView() ? storage.ports.filters->GetCashFld(at.filter, fld) : fld;
  const std::int32_t descriptor = storage.fields.GetFieldPos(at.position, underlying, *at.file);
  if (descriptor > 0) reader_.emplace(*at.file, at.position, descriptor, &storage.types);
}

std::string_view RecordReader::Read(std::int32_t r) {
  const std::int32_t underlying = reader_ ? storage_.UnderlyingRecord(at_, r) : 0;
  if (underlying < 1) {
    // No field to read from, or a record beyond the view: the cell service says what that means.
    bool isMtx = false;
    return storage_.cells.ReadCell(at_, r, field_, isMtx);
  }
  const std::string_view text = reader_->Read(underlying);
  lastIsEmpty_ = text.empty();
  return text;
}

bool RecordReader::HasCell() const {
  if (!reader_) return false;
  switch (reader_->style().freeSize) {
    case storage::free_size::kFree:
      return reader_->cell() != 0;
    case storage::free_size::kFixed:
      return reader_->dataStart() > 0;
    default:
      return !lastIsEmpty_;
  }
}

}  // namespace orv::query
