// dBASE III tables, read and overwritten in place.
#pragma once

#include <string>

#include "storage/ports.h"

namespace orv::exchange {

/// Reads the header and the fixed-width records anew at each call: other programs may be writing
/// the table. Every value is text; types, decimals, dates and deletion flags are ignored. Names and
/// values are converted from code page 866 to 1251, values written are not.
class DbaseTables final : public storage::DbasePort {
 public:
  std::int32_t RecordCount(platform::File& file) const override;
  std::int32_t ReadableRecordCount(platform::File& file) const override;
  std::int16_t FieldCount(platform::File& file) const override;
  std::int16_t FieldWidth(platform::File& file, std::int16_t f) const override;
  std::string FieldName(platform::File& file, std::int16_t f) const override;
  std::string_view ReadCell(platform::File& file, std::int32_t r, std::int16_t f) const override;
  void WriteCell(platform::File& file, std::int32_t r, std::int16_t f,
                 std::string_view text) override;

 private:
  mutable std::string converted_;  ///< the text handed out last, unless the file holds it so
};

}  // namespace orv::exchange
