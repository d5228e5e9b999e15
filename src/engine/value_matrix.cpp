#include "engine/value_matrix.h"

#include "platform/code_page.h"
#include "storage/table_reader.h"

namespace orv::engine {

using storage::Location;
using storage::Storage;
namespace code = storage::code;

namespace {

void Fill(Storage& storage, TextMatrix& m, const std::wstring& pth, const Location& at,
          std::int32_t r1, std::int32_t& r2, bool frml) {
  storage::TableReader reader(storage, at);
  const std::int32_t records = reader.records();
  const std::int32_t fields = reader.fields();
  const auto read = [&](std::int32_t record, std::int32_t f) {
    if (!frml) return reader.Read(record, f);
    bool isMtx = false;
    return storage.cells.SvrGetCellValue(pth, record, static_cast<std::int16_t>(f), isMtx, true);
  };
  for (std::int64_t r = r1; r <= r2; ++r) {
    const auto record = static_cast<std::int32_t>(r);
    if (record > records) {
      r2 = record;
      return;
    }
    for (std::int32_t f = 1; f <= fields; ++f) {
      if (!m.Contains(f, record)) platform::Raise(platform::RunTimeError::kSubscript);
      platform::ToWide(read(record, f), m.At(f, record));
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
