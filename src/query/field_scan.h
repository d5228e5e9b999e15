// Scans over one field: the next record whose cell matches.
#pragma once

#include <cstdint>
#include <memory>

#include "query/text_pattern.h"
#include "storage/path_resolver.h"
#include "storage/storage.h"

namespace orv::query {

/// One field (or all fields) of one table and what is sought in it. Style, data and type of the
/// field are looked up once; good as long as the field keeps its style and data block and its file
/// stays open.
class FieldScan {
 public:
  virtual ~FieldScan() = default;

  /// The first record from `from` to `to` whose cell matches, 0 when there is none. `from` is at
  /// least 1, `to` at most the record count. Raises 9 where the field's data is damaged.
  virtual std::int32_t FindNext(std::int32_t from, std::int32_t to) = 0;
};

/// A scan of field `fld` of the matrix or dBASE III table at the location; a view is scanned as the
/// table it shows. The texts compared are those that the cell service reads. Raises 9 for a field
/// beyond the table. The pattern must live as long as the scan.
std::unique_ptr<FieldScan> OpenFieldScan(storage::Storage& storage, const storage::Location& at,
                                         std::int16_t fld, const TextPattern& pattern);

/// A scan for records any of whose fields matches.
std::unique_ptr<FieldScan> OpenRecordScan(storage::Storage& storage, const storage::Location& at,
                                          const TextPattern& pattern);

/// A scan of the container field with this descriptor, type properties consulted through `types`
/// when it is not nullptr.
std::unique_ptr<FieldScan> OpenContainerScan(platform::File& file, std::int32_t matrix,
                                             std::int32_t descriptor, storage::TypeTables* types,
                                             const TextPattern& pattern);

/// A field whose cells all read as the empty text.
class EmptyScan final : public FieldScan {
 public:
  explicit EmptyScan(const TextPattern& pattern) : matches_(pattern.Matches({})) {}
  std::int32_t FindNext(std::int32_t from, std::int32_t to) override {
    return matches_ && from <= to ? from : 0;
  }

 private:
  bool matches_;
};

}  // namespace orv::query
