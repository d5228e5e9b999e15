#include "engine/record_members.h"

#include "storage/cell_code.h"
#include "storage/layout.h"
#include "storage/matrix.h"
#include "storage/records.h"
#include "storage/value_types.h"

namespace orv::engine {

using platform::Raise;
using platform::RunTimeError;
using storage::Location;
using storage::Storage;
namespace code = storage::code;

namespace {

std::int32_t DescriptorOf(Storage& storage, const Location& at, std::int16_t f) {
  return storage.fields.GetFieldPos(at.position, storage.UnderlyingField(at, f), *at.file);
}

}  // namespace

std::int16_t CellCodeAt(Storage& storage, const Location& at, std::int32_t r, std::int16_t f) {
  std::int32_t record = r;
  if (r > 0) {
    record = storage.UnderlyingRecord(at, r);
    const std::int32_t records = storage::ContainerRecordCount(*at.file, at.position);
    if (record < 1 || record > records) Raise(RunTimeError::kSubscript);
  }
  return storage::FieldClass::GetFldTypeSub(DescriptorOf(storage, at, f), record, *at.file);
}

std::int32_t Records(Storage& storage, const std::wstring& p) {
  const Location at = storage.resolver.ResolvePath(p);
  return storage.error.IsSet() ? -1 : storage.RecordCount(at);
}

void CmdAddRecord(Storage& storage, const std::wstring& pth, std::int32_t number,
                  std::int32_t row) {
  const Location at = storage.resolver.ResolvePath(pth);
  if (storage.error.IsSet()) return;
  if (!at.IsMatrix()) {
    storage.error.Set(at.IsDbase() ? code::kNotOnDbase : code::kBadArgument);
    return;
  }
  storage::InsertRecords(at.position, number, row, *at.file, storage.types, storage.error);
  if (at.throughProperties) storage.types.Clear();
}

std::int16_t GetID(Storage& storage, const std::wstring& pth, std::int32_t r, std::int16_t f) {
  const Location at = storage.resolver.ResolvePath(pth);
  if (storage.error.IsSet() || at.IsDbase()) return 0;
  if (!at.IsMatrix()) {
    storage.error.Set(code::kBadArgument);
    return 0;
  }
  return CellCodeAt(storage, at, r, f);
}

void ReBit(Storage& storage, const std::wstring& pth, std::int32_t r, std::int16_t f,
           std::int16_t b) {
  const Location at = storage.resolver.ResolvePath(pth);
  if (storage.error.IsSet()) return;
  if (b != storage::layout::kShortLengthBytes && b != storage::layout::kLongLengthBytes) {
    storage.error.Set(code::kKindOfCell);
  } else if (at.IsDbase()) {
    storage.error.Set(code::kNotOnDbase);
  } else if (!at.IsMatrix()) {
    storage.error.Set(code::kBadArgument);
  } else {
    const std::int32_t record = storage.UnderlyingRecord(at, r);
    const std::int16_t field = f < 1 ? f : storage.UnderlyingField(at, f);
    storage::SetCellForm(at.position, record, field, b, *at.file, storage.error);
  }
}

std::int16_t GetCellDataType(Storage& storage, const std::wstring& pth, std::int32_t r,
                             std::int16_t f) {
  bool isMtx = false;
  storage.cells.SvrGetCellValue(pth, r, f, isMtx, false);
  if (storage.error.IsSet()) return 0;
  const Location at = storage.resolver.ResolvePath(pth);
  if (!at.IsMatrix()) return 0;
  const std::int16_t type = storage::DecodeCellCode(CellCodeAt(storage, at, r < 0 ? 0 : r, f)).type;
  const storage::TypeProperty* named = storage.types.Find(*at.file, at.position, type, "type");
  if (named != nullptr && !named->text.empty()) return storage::TypeCode(named->text);
  return storage::StyleOf(DescriptorOf(storage, at, f), *at.file).dataType;
}

}  // namespace orv::engine
