// The scan of a fixed-width field: cells side by side.
#pragma once

#include <cstdint>
#include <string>

#include "query/field_scan.h"
#include "storage/fixed_cells.h"

namespace orv::query {

/// Compares bytes wherever the value sought has exactly one image in the field's width; only what
/// cannot be decided that way is turned into text first.
class FixedScan final : public FieldScan {
 public:
  FixedScan(platform::File& file, std::int32_t matrix, std::int32_t descriptor,
            storage::TypeTables* types, const TextPattern& pattern);

  std::int32_t FindNext(std::int32_t from, std::int32_t to) override;

 private:
  /// What the bytes of a cell can say.
  enum class Kind {
    kNumber,      ///< a number with one image: equal bytes match, others do not
    kPaddedText,  ///< a text to be found in full: as kNumber, but blanks in front must be looked at
    kText,        ///< any other search in text cells
    kNumberText   ///< any other search in numbers, which are turned into text
  };

  Kind Choose();
  std::string ImageOfNumber() const;
  bool Matches(const char* cell) const;
  bool TextMatches(const char* cell) const;
  std::int32_t ScanBlock(const char* cells, std::int32_t from, std::int32_t to) const;

  platform::File& file_;
  std::int32_t start_;
  const TextPattern& pattern_;
  bool emptyMatches_;
  storage::FixedFormat format_;
  std::string image_;
  Kind kind_;
};

}  // namespace orv::query
