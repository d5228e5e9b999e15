// The table of the at most ten open files.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/file.h"
#include "storage/error_code.h"

namespace orv::storage {

/// Ten slots, 1 to 10; a slot's number is the number under which its file is open. Files are opened
/// on demand and stay open until the table is cleared.
class OpenFileTable {
 public:
  static constexpr std::int16_t kSlots = 10;
  static constexpr std::int16_t kFailed = -1;

  OpenFileTable(platform::NumberedFiles& files, ErrorCode& error) : files_(files), error_(error) {}

  /// The number under which the file is open, opening it if need be; -1 with an error code on
  /// failure: 53 for a missing or empty file, 75 for a locked one, 9 when ten other files are open,
  /// else the run-time error's number.
  ///
  /// Peculiarities that hosts rely on: whether a new file is empty is judged by file number 1, so
  /// while that holds data a missing file opened under another number comes into being, empty; and
  /// an eleventh file is refused with file number 1 closed under its slot, which the next hit on
  /// that slot opens again.
  std::int16_t OpenFile(const std::wstring& path);

  enum class Reopening { kDone, kMissing, kAnotherFile };
  /// Opens a file again under the number that it had, without ever creating it. Another file is
  /// what the name leads to by now, or what the number serves.
  Reopening Reopen(std::int16_t number, const std::wstring& path,
                   const platform::FileIdentity& identity);

  /// Closes the file's numbers and frees its slots, before it is deleted or written anew.
  void Drop(const std::wstring& path);
  /// Forgets and closes the files that were cut short under their map or could not be read.
  void DropFaulted();
  /// Frees all slots. Closing the files is the caller's.
  void Clear() { slots_ = {}; }

 private:
  struct Slot {
    std::wstring key;   ///< lower-cased path; empty for a free slot
    std::wstring name;  ///< the path as it was first asked for
    platform::FileIdentity identity;
  };

  Slot& At(std::int16_t number) { return slots_[static_cast<std::size_t>(number - 1)]; }
  std::int16_t FindHit(const std::wstring& path);
  std::int16_t FirstFree();
  std::int16_t OpenInto(std::int16_t number, const std::wstring& path);
  std::int16_t UseHit(std::int16_t number);
  bool FirstFileIsEmpty();
  std::int16_t Fail(std::int16_t number, platform::RunTimeError failure);
  std::int16_t RefuseEleventh();

  platform::NumberedFiles& files_;
  ErrorCode& error_;
  std::array<Slot, kSlots> slots_;
};

}  // namespace orv::storage
