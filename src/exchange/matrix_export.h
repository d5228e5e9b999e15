// The export behind the export dialog.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "dialogs/export_data.h"
#include "exchange/ports.h"
#include "storage/storage.h"

namespace orv::exchange {

/// The file type that means a container; every other number means text.
inline constexpr std::int16_t kContainerType = 1;

/// What `ExportData` runs: one table, one target file. A container export closes all files at its
/// end. A target that cannot be written whole is not left behind.
class MatrixExport final : public dialogs::ExportWork {
 public:
  /// `source` is what `path` leads to. `file` may stand in double quotes.
  MatrixExport(storage::Storage& storage, ExportServices& services, std::wstring path,
               const storage::Location& source, const std::wstring& file);

  /// Raises 55 when the target is the source's own file: it would be deleted before it is read.
  bool TargetExists() override;
  void DeleteTarget() override;
  void SaveAsText(dialogs::ExportData& dialog) override;
  void SaveAsOrvImage(dialogs::ExportData& dialog) override;
  void SaveAsOrvWithProp(dialogs::ExportData& dialog) override;
  void DiscardTarget() override;

 private:
  /// Runs an export that answers whether it has come to its end.
  void Run(dialogs::ExportData& dialog, const std::function<bool()>& exportTable);
  void DiscardAfterFailure() noexcept;

  storage::Storage& storage_;
  ExportServices& services_;
  std::wstring path_;
  storage::Location source_;
  std::wstring target_;
};

/// Opens the export dialog for the table at `pth`. Nothing is shown when the path leads to no
/// table; its code, or 255, is left then.
void SaveMtxAs(storage::Storage& storage, ExportServices& services, const std::wstring& pth,
               const std::wstring& file, bool withProp, std::int16_t fileType);

}  // namespace orv::exchange
