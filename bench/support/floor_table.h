// The floor: the same bytes of our formats, in a map, without an engine around them.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "support/floor_map.h"
#include "support/table_data.h"

namespace orv::bench {

/// The root matrix of a container file whose fields are free and were filled at once. Nothing is
/// checked: no range, no style, no chain.
class FloorTable {
 public:
  explicit FloorTable(const std::string& file);

  /// The text as the engine's hosts get it: wide, and their own.
  std::wstring ReadCell(std::int32_t record, std::int16_t field) const {
    const std::int32_t cell = CellPosition(record, field);
    if (cell == 0) return {};
    const char* text = map_.At(cell + kTextOffset);
    return {text, text + map_.IntegerAt<std::uint8_t>(cell + kLengthOffset)};
  }
  /// A text of the same length.
  void WriteCell(std::int32_t record, std::int16_t field, const Text& text) {
    std::memcpy(map_.At(CellPosition(record, field) + kTextOffset), text.bytes.data(),
                text.bytes.size());
  }

 private:
  static constexpr std::int64_t kLengthOffset = 2;
  static constexpr std::int64_t kTextOffset = 3;

  std::int32_t CellPosition(std::int32_t record, std::int16_t field) const {
    const std::int32_t data = data_[static_cast<std::size_t>(field)];
    return map_.Int32At(std::int64_t{data} + std::int64_t{record} * 4);
  }

  FloorMap map_;
  std::array<std::int32_t, kFields + 1> data_{};  ///< each field's pointer block
};

/// Appends records as the engine lays them out: for each record a block of one pointer a field,
/// then the cells.
class FloorAppender {
 public:
  FloorAppender(const std::string& file, std::int32_t records);
  void AppendRecord(const Text* cells);

 private:
  FloorMap map_;
  std::int64_t end_ = 1;
  std::array<std::int64_t, kFields>
      links_{};  ///< where each field's last block stores its successor
};

/// A dBASE III table.
class FloorDbase {
 public:
  explicit FloorDbase(const std::string& file);

  std::wstring ReadCell(std::int32_t record, std::int16_t field) const {
    const std::size_t slot = static_cast<std::size_t>(field);
    const char* text = Cell(record, field);
    std::size_t length = width_[slot];
    while (length > 0 && text[length - 1] == ' ') --length;
    return {text, text + length};
  }
  void WriteCell(std::int32_t record, std::int16_t field, const Text& text) {
    const std::size_t slot = static_cast<std::size_t>(field);
    char* cell = Cell(record, field);
    std::memcpy(cell, text.bytes.data(), text.bytes.size());
    std::memset(cell + text.bytes.size(), ' ', width_[slot] - text.bytes.size());
  }

 private:
  char* Cell(std::int32_t record, std::int16_t field) const {
    return map_.At(header_ + 1 + std::int64_t{record - 1} * recordBytes_ +
                   offset_[static_cast<std::size_t>(field)]);
  }

  FloorMap map_;
  std::int64_t header_;
  std::int64_t recordBytes_;
  std::array<std::int64_t, kFields + 1> offset_{};
  std::array<std::size_t, kFields + 1> width_{};
};

}  // namespace orv::bench
