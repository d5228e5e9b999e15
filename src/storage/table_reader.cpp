#include "storage/table_reader.h"

#include "storage/matrix.h"

namespace orv::storage {

TableReader::TableReader(Storage& storage, const Location& at)
    : storage_(storage),
      at_(at),
      records_(storage.ReadableRecordCount(at)),
      fields_(storage.FieldCount(at)) {
  if (!at.IsMatrix() || fields_ < 1) return;
  readers_.reserve(static_cast<std::size_t>(fields_));
  for (std::int32_t f = 1; f <= fields_; ++f) {
    const auto field = static_cast<std::int16_t>(f);
    const std::int16_t own =
        at.IsView() ? storage.ports.filters->GetCashFld(at.filter, field) : field;
    const std::int32_t descriptor = storage.fields.GetFieldPos(at.position, own, *at.file);
    auto& reader = readers_.emplace_back();
    if (descriptor > 0) reader.emplace(*at.file, at.position, descriptor, &storage.types);
  }
}

std::string_view TableReader::Read(std::int32_t r, std::int32_t f) {
  FieldReader* const reader = Field(f);
  if (reader == nullptr && at_.IsMatrix()) return {};
  if (reader != nullptr && r > 0) return reader->Read(storage_.UnderlyingRecord(at_, r));
  bool isMtx = false;
  return storage_.cells.ReadCell(at_, r, static_cast<std::int16_t>(f), isMtx);
}

std::int16_t TableReader::Code(std::int32_t f) {
  const FieldReader* const reader = Field(f);
  return reader == nullptr ? std::int16_t{0} : reader->code();
}

FieldReader* TableReader::Field(std::int32_t f) {
  if (readers_.empty()) return nullptr;
  auto& reader = readers_[static_cast<std::size_t>(f - 1)];
  return reader ? &*reader : nullptr;
}

}  // namespace orv::storage
