// The scan of a free field: pointers to cells.
#pragma once

#include <cstdint>
#include <string>

#include "query/field_scan.h"

namespace orv::query {

/// Follows the cell pointers block by block. Short texts of one piece, nearly all of them, are
/// compared where they stand; everything else is read as the cell service reads it.
class FreeScan final : public FieldScan {
 public:
  FreeScan(platform::File& file, std::int32_t descriptor, const TextPattern& pattern)
      : file_(file),
        start_(file.Int32At(descriptor)),
        pattern_(pattern),
        emptyMatches_(pattern.Matches({})) {}

  std::int32_t FindNext(std::int32_t from, std::int32_t to) override;

 private:
  std::int32_t ScanBlock(std::int64_t entries, std::int32_t from, std::int32_t to);
  bool CellMatches(std::int32_t position);

  platform::File& file_;
  std::int32_t start_;
  const TextPattern& pattern_;
  bool emptyMatches_;
  std::string buffer_;
};

}  // namespace orv::query
