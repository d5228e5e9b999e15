#include "storage/open_file_table.h"

#include <optional>

#include "platform/code_page.h"
#include "platform/file_names.h"

namespace orv::storage {

using platform::FileIdentity;
using platform::FoldCase;
using platform::IdentityOf;
using platform::RunTimeError;
using platform::RunTimeFailure;

std::int16_t OpenFileTable::OpenFile(const std::wstring& path) {
  const std::int16_t hit = FindHit(path);
  if (hit != kFailed) return UseHit(hit);
  const std::int16_t number = FirstFree();
  if (number == kFailed) return RefuseEleventh();
  try {
    return OpenInto(number, path);
  } catch (const RunTimeFailure& failure) {
    return Fail(number, failure.number());
  }
}

/// The slot of this file: the same spelling, or another one that leads to the same file.
std::int16_t OpenFileTable::FindHit(const std::wstring& path) {
  for (std::int16_t number = 1; number <= kSlots; ++number) {
    if (At(number).name == path) return number;
  }
  const std::wstring key = FoldCase(std::wstring_view(path));
  const std::optional<FileIdentity> identity = IdentityOf(platform::ExistingSpelling(path));
  for (std::int16_t number = 1; number <= kSlots; ++number) {
    const Slot& slot = At(number);
    if (slot.key.empty()) continue;
    if (identity ? slot.identity == *identity : slot.key == key) return number;
  }
  return kFailed;
}

std::int16_t OpenFileTable::FirstFree() {
  for (std::int16_t number = 1; number <= kSlots; ++number) {
    if (At(number).key.empty()) return number;
  }
  return kFailed;
}

std::int16_t OpenFileTable::UseHit(std::int16_t number) {
  Slot& slot = At(number);
  if (files_.Find(number) != nullptr) return number;
  try {
    if (Reopen(number, slot.name, slot.identity) == Reopening::kDone) return number;
  } catch (const RunTimeFailure& failure) {
    return Fail(number, failure.number());
  }
  slot = {};
  return Fail(number, RunTimeError::kFileNotFound);
}

std::int16_t OpenFileTable::OpenInto(std::int16_t number, const std::wstring& path) {
  const std::wstring found = platform::ExistingSpelling(path);
  const FileIdentity identity = files_.Open(number, found).Identity();
  if (FirstFileIsEmpty()) {
    files_.Close(number);
    platform::DeleteFile(found);
    error_.Set(code::kFileMissing);
    return kFailed;
  }
  At(number) = {FoldCase(std::wstring_view(path)), path, identity};
  return number;
}

/// Asks file number 1, whichever number is being opened.
bool OpenFileTable::FirstFileIsEmpty() {
  if (files_.Find(1) == nullptr && !At(1).key.empty()) Reopen(1, At(1).name, At(1).identity);
  return files_.At(1).Length() == 0;
}

std::int16_t OpenFileTable::Fail(std::int16_t number, RunTimeError failure) {
  files_.Close(number);
  if (failure == RunTimeError::kPermissionDenied) {
    error_.Set(code::kFileLocked);
  } else {
    error_.Set(failure);
  }
  return kFailed;
}

/// The search for the slot to give up begins at slot 0, which does not exist: nothing is given up,
/// but number 1 is closed all the same.
std::int16_t OpenFileTable::RefuseEleventh() {
  files_.Retire(1);
  return Fail(1, RunTimeError::kSubscript);
}

OpenFileTable::Reopening OpenFileTable::Reopen(std::int16_t number, const std::wstring& path,
                                               const FileIdentity& identity) {
  std::wstring found = path;
  std::optional<FileIdentity> present = IdentityOf(found);
  if (!present) {
    found = platform::ExistingSpelling(path);
    present = IdentityOf(found);
  }
  if (!present) return Reopening::kMissing;
  Slot& slot = At(number);
  const bool taken = !slot.key.empty() && slot.identity != identity;
  if (*present != identity || taken) return Reopening::kAnotherFile;
  files_.Open(number, found);
  slot = {FoldCase(std::wstring_view(path)), path, identity};
  return Reopening::kDone;
}

void OpenFileTable::Drop(const std::wstring& path) {
  const std::optional<FileIdentity> identity = IdentityOf(platform::ExistingSpelling(path));
  if (!identity) return;
  for (Slot& slot : slots_) {
    if (!slot.key.empty() && slot.identity == *identity) slot = {};
  }
  files_.CloseOn(*identity);
}

void OpenFileTable::DropFaulted() {
  for (std::int16_t number = 1; number <= kSlots; ++number) {
    const platform::File* file = files_.Find(number);
    if (file != nullptr && file->Faulted()) At(number) = {};
  }
  files_.CloseFaulted();
}

}  // namespace orv::storage
