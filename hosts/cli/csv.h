// Delimited text: reading and writing tables of cells with quotes as RFC 4180 has them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orv::cli {

/// Reads records from a text one after another. A cell in double quotes may hold the delimiter,
/// line ends and doubled quotes. A record ends with CR LF, LF or CR; the last one needs none. The
/// text must outlive the reader; its encoding must keep the ASCII bytes.
class CsvReader {
 public:
  CsvReader(std::string_view text, char delimiter) : text_(text), delimiter_(delimiter) {}

  /// Puts the next record's cells into `cells`, whose room is used again; false at the end.
  /// Throws `Failure` with the line where a quoted cell begins that never ends.
  bool Next(std::vector<std::string>& cells);
  /// The line, from 1, on which the record last read began.
  std::size_t line() const { return recordLine_; }
  /// How many bytes of the text have been read.
  std::size_t offset() const { return at_; }

 private:
  void ReadCell(std::string& cell);
  void ReadQuoted(std::string& cell);
  void TakeLineEnd();

  std::string_view text_;
  char delimiter_;
  std::size_t at_ = 0;
  std::size_t line_ = 1;
  std::size_t recordLine_ = 0;
};

/// The cell as it is written between delimiters: in quotes where it has to be.
std::string CsvCell(std::string_view cell, char delimiter);

}  // namespace orv::cli
