#include "storage/storage.h"

#include "platform/file_names.h"
#include "storage/matrix.h"

namespace orv::storage {

Storage::Storage()
    : openFiles(files, error),
      resolver(files, openFiles, ports, error),
      fields(resolver, *this, ports, error),
      cells(resolver, fields, types, ports, error) {
  resolver.SetCellFinder(&cells);
}

void Storage::ResetCaches(int level) {
  constexpr int kTypeValues = 2;
  constexpr int kFieldPositions = 3;
  constexpr int kPathsAndViews = 4;
  if (level >= kTypeValues) types.Clear();
  if (level >= kFieldPositions) fields.EmptyFieldCash();
  if (level < kPathsAndViews) return;
  resolver.ForgetLast();
  if (ports.filters != nullptr) ports.filters->EraseCash();
}

void Storage::CloseAll() {
  if (ports.filters != nullptr) ports.filters->EraseCash();
  types.Clear();
  openFiles.Clear();
  files.CloseAll();
}

void Storage::DropFile(const std::wstring& fileName) {
  if (const auto identity = platform::IdentityOf(platform::ExistingSpelling(fileName))) {
    resolver.ForgetFile(*identity);
  }
  types.Clear();
  openFiles.Drop(fileName);
  if (ports.filters != nullptr) ports.filters->DropFile(fileName);
}

void Storage::DropFaulted() {
  resolver.ForgetLast();
  types.Clear();
  openFiles.DropFaulted();
  if (ports.filters != nullptr) ports.filters->EraseCash();
}

std::int32_t Storage::RecordCount(const Location& at) {
  if (at.IsView()) return ports.filters->RecordCount(at.filter);
  if (at.IsDbase()) return ports.dbase->RecordCount(*at.file);
  return at.IsMatrix() ? TrustedRecordCount(*at.file, at.position) : -1;
}

std::int32_t Storage::ReadableRecordCount(const Location& at) {
  if (at.IsMatrix() && !at.IsView()) return storage::ReadableRecordCount(*at.file, at.position);
  if (at.IsDbase() && !at.IsView()) return ports.dbase->ReadableRecordCount(*at.file);
  return RecordCount(at);
}

std::int32_t Storage::FieldCount(const Location& at) {
  if (at.IsView()) return ports.filters->FieldCount(at.filter);
  return at.IsTable() ? fields.GetNumFld(at.position, *at.file) : -1;
}

std::int32_t Storage::UnderlyingRecord(const Location& at, std::int32_t r) const {
  return at.IsView() && r > 0 ? ports.filters->GetFilterValue(at.filter, r) : r;
}

std::int16_t Storage::UnderlyingField(const Location& at, std::int16_t f) const {
  return at.IsView() ? ports.filters->GetCashFld(at.filter, f) : f;
}

}  // namespace orv::storage
