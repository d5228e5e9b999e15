// Reading the cells of one field, whatever its storage style.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/file.h"
#include "storage/chain_array.h"
#include "storage/field_style.h"
#include "storage/fixed_cells.h"
#include "storage/type_tables.h"

namespace orv::storage {

/// How the cells of a fixed-width field are to be understood, its type properties consulted.
FixedFormat FixedFormatOf(platform::File& file, std::int32_t matrix, std::int32_t descriptor,
                          const FieldStyle& style, TypeTables* types);

/// A cell of a free field.
struct FreeCell {
  std::string_view text;      ///< good until the next write to the file or change of the buffer
  std::int16_t code = 0;      ///< 0 for an empty cell
  std::int32_t position = 0;  ///< 0 for an empty cell
};

/// One cell of the free field with this descriptor, without making a reader; like
/// `FieldReader::Read`.
FreeCell ReadFreeCell(platform::File& file, std::int32_t matrix, std::int32_t descriptor,
                      std::int32_t r, std::string& buffer);

/// Resolves style, data and type of a field once and then reads cells by record number. Good as
/// long as the field keeps its style and data block: make one for a call or a scan, not longer.
class FieldReader {
 public:
  /// A field of a container matrix, by its descriptor's position (above 0).
  /// Without type tables no type property is consulted and a dictionary has no values.
  FieldReader(platform::File& file, std::int32_t matrix, std::int32_t descriptor,
              TypeTables* types);

  /// The text of record `r`'s cell, good until the next call or write; the title for a nested
  /// matrix; empty for an empty cell and for a record beyond the field's data. A record below 1 or
  /// above the record count raises 9.
  std::string_view Read(std::int32_t r);
  /// The code of the cell read last: negative for a nested matrix, 0 for an empty free cell, the
  /// field's own code for fixed and dictionary fields.
  std::int16_t code() const { return code_; }
  /// Position of the cell read last, 0 when it is empty or its style has no cells.
  std::int32_t cell() const { return cell_; }

  /// The records from 1 on that the field's data has entries for: none behind them has a text. Data
  /// whose end cannot be told reaches the greatest record number; reading it fails at the damage.
  std::int64_t Reach() const;

  const FieldStyle& style() const { return style_; }
  std::int32_t descriptor() const { return descriptor_; }
  /// The decoded type number of the field's own code.
  std::int16_t typeNumber() const;
  /// Whether the cells of a fixed-width field are numbers: an empty one is zeros, not blanks.
  bool isNumericFixed() const { return format_.IsNumeric(); }
  /// Start of the field's data, 0 when it has none.
  std::int32_t dataStart() const { return start_; }

 private:
  std::string_view ReadFree(std::int32_t r);
  std::string_view ReadFixed(std::int32_t r);
  std::string_view ReadDictionary(std::int32_t r);
  bool Reaches(std::int32_t r, std::int32_t entryBytes);
  void AnnounceCellBehind(std::int32_t r) const;
  std::int64_t EntryPosition(std::int32_t r, std::int32_t entryBytes) const {
    return run_.position + (r - runFirst_) * entryBytes;
  }
  void OpenDictionary();

  platform::File& file_;
  TypeTables* types_;
  std::int32_t matrix_;
  std::int32_t descriptor_;
  FieldStyle style_;
  std::int32_t start_;
  std::int32_t records_;
  std::int16_t fieldCode_;
  std::int16_t code_ = 0;
  std::int32_t cell_ = 0;
  FixedFormat format_;                   ///< of a fixed field
  ChainRun run_;                         ///< the block read last
  std::int64_t runFirst_ = 0;            ///< its first entry's number
  std::unique_ptr<FieldReader> values_;  ///< field 1 of the dictionary matrix
  bool dictionaryOpened_ = false;
  std::string buffer_;
};

}  // namespace orv::storage
