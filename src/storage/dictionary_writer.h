// Writing the cells of dictionary fields.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/file.h"
#include "storage/dictionary.h"
#include "storage/error_code.h"
#include "storage/type_tables.h"

namespace orv::storage {

/// Writes an index for a value: a value that the dictionary does not hold is added to it first, an
/// index that outgrows its width is rewritten one width up, and the values' counts are kept true.
class DictionaryWriter {
 public:
  DictionaryWriter(platform::File& file, std::int32_t matrix, TypeTables& types, ErrorCode& error)
      : file_(file), matrix_(matrix), types_(types), error_(error) {}

  /// Raises 9 when the field has no usable index or dictionary matrix.
  void Write(std::int32_t descriptor, std::int32_t r, std::string_view text);

 private:
  std::int32_t IndexOf(std::int32_t dictionaryMatrix, std::string_view text);
  std::int32_t AddValue(std::int32_t dictionaryMatrix, std::string_view text);
  void AddToCount(std::int32_t dictionaryMatrix, std::int32_t index, std::int32_t change);
  void WriteValueCell(std::int32_t dictionaryMatrix, std::int32_t index, std::int16_t f,
                      std::string_view text);
  DictionaryIndex Widened(std::int32_t descriptor, const DictionaryIndex& index,
                          std::int32_t greatest);

  platform::File& file_;
  std::int32_t matrix_;
  TypeTables& types_;
  ErrorCode& error_;
};

}  // namespace orv::storage
