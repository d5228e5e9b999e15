// The scan of a dictionary field: the values are searched once, then the records' indexes.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "query/field_scan.h"
#include "storage/dictionary.h"

namespace orv::query {

class DictionaryScan final : public FieldScan {
 public:
  /// `matching` tells of each index, from 0 on, whether its value matches; an index behind it does
  /// not.
  DictionaryScan(const platform::File& file, storage::DictionaryIndex index,
                 const std::vector<bool>& matching);

  std::int32_t FindNext(std::int32_t from, std::int32_t to) override;

 private:
  template <typename Integer, int kStride>
  std::int32_t Scan(const char* entries, std::int32_t from, std::int32_t to) const;
  std::int32_t ScanEntries(std::int32_t from, std::int32_t to) const;

  const platform::File& file_;
  storage::DictionaryIndex index_;
  std::vector<std::uint8_t> matching_;
  std::int32_t only_ = 0;  ///< the one matching index, when `matches_` is 1
  std::int32_t matches_ = 0;
};

/// The scan of the dictionary field with this descriptor. Without a dictionary every cell is empty.
std::unique_ptr<FieldScan> OpenDictionaryScan(platform::File& file, std::int32_t matrix,
                                              std::int32_t descriptor, storage::TypeTables* types,
                                              const TextPattern& pattern);

}  // namespace orv::query
