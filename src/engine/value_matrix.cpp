#include "engine/value_matrix.h"

#include <optional>
#include <vector>

#include "platform/code_page.h"
#include "storage/field_reader.h"

namespace orv::engine {

using storage::FieldReader;
using storage::Location;
using storage::Storage;
namespace code = storage::code;

namespace {

/// Reads the cells of a block: plain cells of a container matrix through one reader a field,
/// everything else through the cell service.
class BlockReader {
 public:
  BlockReader(Storage& storage, const std::wstring& pth, const Location& at, std::int32_t fields,
              bool frml)
      : storage_(storage), pth_(pth), at_(at), frml_(frml) {
    if (frml || !at.IsMatrix()) return;
    readers_.reserve(static_cast<std::size_t>(fields));
    for (std::int32_t f = 1; f <= fields; ++f) {
      const auto field = static_cast<std::int16_t>(f);
      const std::int16_t own =
          at.IsView() ? storage.ports.filters->GetCashFld(at.filter, field) : field;
      const std::int32_t descriptor = storage.fields.GetFieldPos(at.position, own, *at.file);
      if (descriptor < 1) platform::Raise(platform::RunTimeError::kSubscript);
      readers_.emplace_back(*at.file, at.position, descriptor, &storage.types);
    }
  }

  std::string_view Read(std::int32_t record, std::int32_t f) {
    if (readers_.empty() || record < 1) {
      bool isMtx = false;
      if (!frml_) return storage_.cells.ReadCell(at_, record, static_cast<std::int16_t>(f), isMtx);
      return storage_.cells.SvrGetCellValue(pth_, record, static_cast<std::int16_t>(f), isMtx,
                                            true);
    }
    return readers_[static_cast<std::size_t>(f - 1)].Read(storage_.UnderlyingRecord(at_, record));
  }

 private:
  Storage& storage_;
  const std::wstring& pth_;
  const Location& at_;
  bool frml_;
  std::vector<FieldReader> readers_;
};

void Fill(Storage& storage, TextMatrix& m, const std::wstring& pth, const Location& at,
          std::int32_t r1, std::int32_t& r2, bool frml) {
  const std::int32_t records = storage.RecordCount(at);
  const std::int32_t fields = storage.FieldCount(at);
  BlockReader reader(storage, pth, at, fields, frml);
  for (std::int64_t r = r1; r <= r2; ++r) {
    const auto record = static_cast<std::int32_t>(r);
    if (record > records) {
      r2 = record;
      return;
    }
    for (std::int32_t f = 1; f <= fields; ++f) {
      if (!m.Contains(f, record)) platform::Raise(platform::RunTimeError::kSubscript);
      platform::ToWide(reader.Read(record, f), m.At(f, record));
    }
  }
}

}  // namespace

void ValueMatrix(Storage& storage, TextMatrix& m, const std::wstring& pth, std::int32_t r1,
                 std::int32_t& r2, bool frml) {
  const Location at = storage.resolver.ResolvePath(pth);
  if (storage.error.IsSet()) return;
  if (!at.IsTable()) {
    storage.error.Set(code::kBadArgument);
    return;
  }
  if (r1 < 0 || r2 < 0) return;
  try {
    Fill(storage, m, pth, at, r1, r2, frml);
  } catch (const platform::RunTimeFailure&) {
    storage.error.Set(code::kRecordNumber);
  }
}

}  // namespace orv::engine
