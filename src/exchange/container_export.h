// Export of a table to a new container file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "dialogs/export_data.h"
#include "exchange/ports.h"
#include "storage/storage.h"

namespace orv::exchange {

/// Copies a table into the top matrix of a new container file. Both copies carry field names, data
/// types and the title along.
class ContainerExport {
 public:
  /// `source` is what `sourcePath` leads to; `target` names the new file, without quotes.
  ContainerExport(storage::Storage& storage, ExportServices& services, std::wstring sourcePath,
                  const storage::Location& source, const std::wstring& target);

  /// The values as texts in free fields, with the field properties "@width" and "type". False when
  /// a cancel was confirmed or with an error code; failures raise.
  bool SaveAsOrvImage(dialogs::ExportData& dialog);
  /// Everything: styles, types, nested matrices, properties. Likewise. A dBASE III table has
  /// nothing but values.
  bool SaveAsOrvWithProp(dialogs::ExportData& dialog);

 private:
  /// What a field of a copy of values takes along.
  struct SourceField {
    std::string name;
    std::int16_t dataType = 0;
    std::optional<std::string> width;
    std::optional<std::string> type;
  };

  bool CreateTarget(dialogs::ExportData& dialog);
  bool GatherFields();
  bool CreateFields();
  bool FindSourceAgain();
  bool CopyProperties();
  bool CopyValues(dialogs::ExportData& dialog);
  bool Failed() const { return storage_.error.IsSet(); }

  storage::Storage& storage_;
  ExportServices& services_;
  std::wstring sourcePath_;
  storage::Location source_;
  std::wstring targetPath_;
  storage::Location target_;
  std::vector<SourceField> fields_;
};

}  // namespace orv::exchange
