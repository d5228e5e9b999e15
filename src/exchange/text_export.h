// Export of a table to delimited text.
#pragma once

#include <string>
#include <vector>

#include "dialogs/export_data.h"
#include "exchange/extraction.h"
#include "platform/output_file.h"
#include "storage/table_reader.h"

namespace orv::exchange {

/// The separators of the text, as bytes.
struct Separators {
  std::string field;
  std::string record;
};

/// What the two boxes of the export dialog say: "табуляция" and "перенос строки", in any letter
/// case and with blanks around them, stand for the tab and the line break, everything else for
/// itself.
Separators SeparatorsOf(const ExportSettings& settings);

/// Writes a table as text: record 0, which gives the names, then every record; cells as they stand,
/// neither quoted nor escaped. A cell that holds a picture or a file becomes a file of its own
/// beside the target, named in its place.
class TextExport {
 public:
  /// `target` names the text file, which is created or emptied.
  TextExport(storage::Storage& storage, const storage::Location& source, std::wstring target,
             Separators separators);

  /// False when a cancel was confirmed. Failures raise.
  bool Run(dialogs::ExportData& dialog);

 private:
  void AppendRecord(std::int32_t r);
  void AppendCell(std::int32_t r, std::int32_t f);
  ContentKind KindOfCell(std::int32_t f);
  void ExtractCell(ContentKind kind, std::int32_t r, std::int32_t f, std::string_view text);
  void Flush(std::size_t least);

  storage::Storage& storage_;
  storage::Location source_;
  storage::TableReader reader_;
  std::wstring target_;
  std::string targetBytes_;
  Separators separators_;
  std::vector<signed char> kinds_;  ///< by type number; -1 while not asked for
  std::unique_ptr<platform::OutputFile> file_;
  std::string buffer_;
};

}  // namespace orv::exchange
