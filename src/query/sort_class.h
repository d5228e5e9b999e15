// Sorting: the check and preview of a sort by one field.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "dialogs/progress.h"
#include "query/held_location.h"
#include "query/record_reader.h"
#include "query/sort_keys.h"
#include "storage/storage.h"

namespace orv::query {

/// One for the engine.
class SortClass {
 public:
  explicit SortClass(storage::Storage& storage) : storage_(storage) {}

  /// Checks that the matrix can be sorted by field `f`, loads the field's values behind the
  /// progress dialog and orders them in memory. A refusal is shown as a message box. The order is
  /// not stored: the file is left exactly as it was. Only the path, the counts and the reading of
  /// the cells leave error codes.
  void SortData(const std::wstring& pth, std::int16_t f);
  /// Reserved: does nothing.
  void Indexing(const std::wstring& pth, std::int16_t fld);

 private:
  bool MayBeSorted(const storage::Location& at, std::int16_t f);
  void Load(HeldLocation& held, std::int16_t f, std::int32_t records, dialogs::Progress& dialog,
            SortKeys& keys);
  static void Sort(const SortKeys& keys, dialogs::Progress& dialog);

  storage::Storage& storage_;
};

}  // namespace orv::query
