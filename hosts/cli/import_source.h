// Where an import takes its records from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "cli/encoding.h"

namespace orv::cli {

using ImportRow = std::vector<std::wstring>;

/// A table that is read once from front to back. Its counts are known beforehand.
class ImportSource {
 public:
  virtual ~ImportSource() = default;
  /// The field names; an unnamed field has an empty one.
  virtual const std::vector<std::wstring>& names() const = 0;
  virtual std::int32_t records() const = 0;
  /// Puts the next rows into `rows`, whose room is used again: at most a block of them, none at the
  /// end. A row may be shorter than the field names.
  virtual void NextRows(std::vector<ImportRow>& rows) = 0;
};

/// How a text file is to be read.
struct TextImport {
  Encoding encoding = Encoding::kUtf8;
  char delimiter = ',';
  bool header = true;  ///< the first record holds the field names
};

/// Reads delimited text. Throws `Failure` when it is not valid in its encoding, with the line.
std::unique_ptr<ImportSource> OpenTextSource(const std::string& file, const TextImport& options);
/// Reads a table that the engine opens itself. Throws `Failure`.
std::unique_ptr<ImportSource> OpenTableSource(const std::wstring& path);

}  // namespace orv::cli
