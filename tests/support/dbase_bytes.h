// dBASE III tables of a test's own.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orv::test {

/// A dBASE III table as bytes, written from the published description of the format. The counts of
/// the header can be made to lie.
class DbaseBytes {
 public:
  struct Field {
    std::string name;  ///< in the table's own code page; at most eleven bytes are kept
    int width = 0;
  };

  explicit DbaseBytes(std::vector<Field> fields);

  /// Adds a record; texts are cut and padded to the fields' widths.
  DbaseBytes& Add(const std::vector<std::string>& texts);
  DbaseBytes& ClaimRecords(std::uint32_t count) { return PutInteger(4, 4, count); }
  DbaseBytes& ClaimHeaderLength(std::uint16_t length) { return PutInteger(8, 2, length); }
  DbaseBytes& ClaimRecordLength(std::uint16_t length) { return PutInteger(10, 2, length); }

  const std::string& bytes() const { return bytes_; }

 private:
  DbaseBytes& PutInteger(std::size_t offset, int width, std::uint32_t value);

  std::vector<Field> fields_;
  std::uint32_t records_ = 0;
  std::string bytes_;
};

}  // namespace orv::test
