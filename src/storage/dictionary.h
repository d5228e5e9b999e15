// Dictionary fields: an index for each record into a matrix of distinct values.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/file.h"

namespace orv::storage {

/// The index block of a dictionary field: one contiguous block whose count word means nothing (the
/// first entry overlaps it), bounded by the record count and the file. Index 0 is the empty text.
class DictionaryIndex {
 public:
  /// Bytes in front of the first entry.
  static constexpr std::int32_t kHeadBytes = 4;
  /// The type tag of a tagged value.
  static constexpr std::int16_t kTag = 3;

  DictionaryIndex(std::int32_t start, std::int32_t width) : start_(start), width_(width) {}

  std::int64_t EntryPosition(std::int64_t r) const {
    return std::int64_t{start_} + kHeadBytes + (r - 1) * width_;
  }
  /// The index of record `r`; 0 for what the file does not have.
  std::int32_t Read(const platform::File& file, std::int64_t r) const;
  /// Stores the index of record `r`, whose entry must exist.
  void Write(platform::File& file, std::int64_t r, std::int32_t index) const;

  std::int32_t start() const { return start_; }
  std::int32_t width() const { return width_; }

  /// Whether the width is one that an index can have.
  static bool IsWidth(std::int32_t width) {
    return width == 1 || width == 2 || width == 4 || width == 8;
  }
  /// The width that a conversion chooses for a number of distinct values.
  static std::int32_t WidthFor(std::int64_t distinct);
  /// The greatest index of a width.
  static std::int32_t Greatest(std::int32_t width);
  /// Appends the bytes of an entry.
  static void AppendEntry(std::string& bytes, std::int32_t width, std::int32_t index);

 private:
  std::int32_t start_;
  std::int32_t width_;
};

/// The name of the type property whose value cell holds the dictionary matrix.
inline constexpr std::string_view kDictionaryProperty = "dictionary";
/// The fields of a dictionary matrix.
inline constexpr std::int16_t kDictionaryValueField = 1;
inline constexpr std::int16_t kDictionaryCountField = 2;

}  // namespace orv::storage
