#include "storage/field_class.h"

#include <limits>

#include "platform/code_page.h"
#include "storage/cell_primitives.h"
#include "storage/chain_array.h"
#include "storage/field_slots.h"
#include "storage/matrix.h"

namespace orv::storage {

using layout::kPointerBytes;
using platform::File;
using platform::Raise;
using platform::RunTimeError;

namespace {

constexpr int kGreatestFields = std::numeric_limits<std::int16_t>::max();

/// Refuses a location whose field table cannot be changed: no matrix (255), a dBASE III table (70).
bool CanChangeFields(const Location& at, ErrorCode& error) {
  if (error.IsSet()) return false;
  if (at.IsDbase()) error.Set(code::kNotOnDbase);
  if (!at.IsTable()) error.Set(code::kBadArgument);
  return !error.IsSet();
}

}  // namespace

std::int16_t FieldClass::GetNumFld(std::int32_t p, File& nm) const {
  if (p == layout::kDbaseTable) return ports_.dbase->FieldCount(nm);
  return ContainerFieldCount(nm, p);
}

/// The position by the field table; the cache keeps it.
std::int32_t FieldClass::LookUpField(std::int32_t pt, std::int16_t f, File& nm) {
  const std::int32_t position = FindFieldDescriptor(nm, pt, f);
  cache_[CacheIndex(pt, f)] = {nm.opening(), pt, position, f};
  return position;
}

void FieldClass::SvrGetFldStyle(const std::wstring& p, std::int16_t f, FieldStyle& style) {
  const Location at = resolver_.ResolvePath(p);
  if (!CanChangeFields(at, error_)) return;
  const std::int32_t descriptor = GetFieldPos(at.position, f, *at.file);
  if (descriptor < 1) {
    error_.Set(code::kBadArgument);
    return;
  }
  GFStyle(descriptor, style, *at.file);
}

std::int16_t FieldClass::GetFldTypeSub(std::int32_t p, std::int32_t r, File& nm) {
  if (p < 1) return 0;
  const std::int16_t ownCode = nm.Int16At(std::int64_t{p} + layout::descriptor::kFieldCode);
  if (r == -2) return ownCode;
  if (r == 0) return nm.Int16At(std::int64_t{p} + layout::descriptor::kTitleCell);
  if (r < 0) return 0;
  if (StyleOf(p, nm).freeSize != free_size::kFree) return ownCode;
  const ChainRun entry = FindChainRun(nm, nm.Int32At(p), r, kPointerBytes);
  const std::int32_t cell = entry.count == 0 ? 0 : nm.Int32At(entry.position);
  return cell < 1 ? std::int16_t{0} : nm.Int16At(cell);
}

void FieldClass::SvrCmdAddFields(const std::wstring& pth, std::int16_t numOfFields,
                                 std::int16_t f) {
  const Location at = resolver_.ResolvePath(pth);
  if (!CanChangeFields(at, error_) || numOfFields < 1) return;
  const std::int16_t n = GetNumFld(at.position, *at.file);
  if (n + numOfFields > kGreatestFields) {
    error_.Set(code::kOverflow);
    return;
  }
  if (n < 0) Raise(RunTimeError::kSubscript);
  if (f < 1) f = 1;
  if (f > n) f = static_cast<std::int16_t>(n + 1);
  caches_.ResetCaches(4);  // first, for whatever comes of the change
  InsertFields(at, n, numOfFields, f);
}

/// New fields `f` to `f + count - 1`. When `f` equals `n` nothing moves: field n's own descriptor
/// is reset in place, and the slots that are then still empty get descriptors too.
void FieldClass::InsertFields(const Location& at, std::int16_t n, std::int16_t count,
                              std::int16_t f) {
  File& nm = *at.file;
  const auto total = static_cast<std::int16_t>(n + count);
  const bool isFirst = FieldTablePosition(nm, at.position) < 1;
  const std::int32_t table = isFirst ? AppendFieldTable(nm, count)
                                     : FieldChain(nm, at.position) - layout::field_table::kChain;
  GrowChain(nm, table + layout::field_table::kChain, total, kPointerBytes);

  std::vector<std::int32_t> slots = ReadFieldSlots(nm, table, f, n);
  const std::int32_t reset = f == n ? slots.front() : 0;
  if (reset > 0 && !nm.Contains(reset, layout::descriptor::kBytes)) {
    Raise(RunTimeError::kSubscript);
  }
  slots.insert(f == n ? slots.end() : slots.begin(), static_cast<std::size_t>(count), 0);
  for (std::int32_t& slot : slots) {
    if (slot < 1) slot = AppendFieldDescriptor(nm);
  }
  StoreFieldSlots(nm, table, {f, std::move(slots), n, total});
  if (reset > 0) ResetFieldDescriptor(nm, reset);
  if (isFirst) SetFieldTable(nm, at.position, table);
}

void FieldClass::SvrCmdDelFld(const std::wstring& pth, std::int16_t f) {
  const Location at = resolver_.ResolvePath(pth);
  if (!CanChangeFields(at, error_)) return;
  File& nm = *at.file;
  const std::int16_t n = GetNumFld(at.position, nm);
  if (f < 1 || f > n) {
    error_.Set(code::kBadArgument);
    return;
  }
  const std::int32_t table = FieldChain(nm, at.position) - layout::field_table::kChain;
  std::vector<std::int32_t> slots = ReadFieldSlots(nm, table, f + 1, n);
  slots.push_back(0);
  caches_.ResetCaches(4);  // first, for whatever comes of the change
  StoreFieldSlots(nm, table, {f, std::move(slots), n, static_cast<std::int16_t>(n - 1)});
}

std::int32_t FieldClass::SvrFields(const std::wstring& p) {
  const Location at = resolver_.ResolvePath(p);
  if (error_.IsSet() || !at.IsTable()) return -1;
  if (at.IsView()) return ports_.filters->FieldCount(at.filter);
  return GetNumFld(at.position, *at.file);
}

void FieldClass::SvrSetFldStyle(const std::wstring& pth, std::int16_t f, const FieldStyle& style) {
  constexpr std::size_t kSizeDigits = 5;
  constexpr int kGreatestByte = 255;
  for (const int number : {style.freeSize + 1, style.dataType + 1}) {
    if (number < 0 || number > kGreatestByte) Raise(RunTimeError::kInvalidCall);
  }
  std::string request(1, static_cast<char>(style.freeSize + 1));
  request += PaddedText(std::to_string(style.cellSize), kSizeDigits);
  request += style.fixedType ? '+' : '-';
  request += style.unique ? '+' : '-';
  request += static_cast<char>(style.dataType + 1);
  ports_.styles->ConvertField(pth, std::to_string(f), request);
}

std::int16_t FieldClass::GetFieldIdByName(const std::wstring& pth, const std::string& vlu) {
  constexpr std::int16_t kNotFound = -1;
  const Location at = resolver_.ResolvePath(pth);
  if (error_.IsSet() || !at.IsTable()) return kNotFound;
  const std::string wanted = platform::FoldCase(std::string_view(vlu));
  const std::int16_t n = GetNumFld(at.position, *at.file);
  for (int f = 1; f <= n; ++f) {
    const std::string name = FieldName(at.position, static_cast<std::int16_t>(f), *at.file);
    if (error_.IsSet()) return kNotFound;
    if (platform::FoldCase(platform::Trim(std::string_view(name))) == wanted) {
      return static_cast<std::int16_t>(f);
    }
  }
  return kNotFound;
}

std::string FieldClass::FieldName(std::int32_t p, std::int16_t f, File& nm) {
  if (p == layout::kDbaseTable) return ports_.dbase->FieldName(nm, f);
  const std::int32_t descriptor = GetFieldPos(p, f, nm);
  if (descriptor < 1) return {};
  std::int16_t code = 0;
  std::string buffer;
  return std::string(GetCell(descriptor + layout::descriptor::kTitleCell, nm, code, buffer));
}

void FieldClass::CompressField(const std::wstring&, std::int16_t, bool) {}

}  // namespace orv::storage
