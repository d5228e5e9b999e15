#include "exchange/matrix_export.h"

#include <utility>

#include "exchange/container_export.h"
#include "exchange/text_export.h"
#include "platform/file_names.h"

namespace orv::exchange {

using dialogs::ExportData;
namespace code = storage::code;

namespace {

std::wstring WithoutQuotes(const std::wstring& file) {
  const bool quoted = file.size() >= 2 && file.front() == L'"' && file.back() == L'"';
  return quoted ? file.substr(1, file.size() - 2) : file;
}

}  // namespace

MatrixExport::MatrixExport(storage::Storage& storage, ExportServices& services, std::wstring path,
                           const storage::Location& source, const std::wstring& file)
    : storage_(storage),
      services_(services),
      path_(std::move(path)),
      source_(source),
      target_(platform::ExistingSpelling(WithoutQuotes(file))) {}

bool MatrixExport::TargetExists() {
  if (!platform::FileExists(target_)) return false;
  if (platform::IdentityOf(target_) == source_.file->Identity()) {
    platform::Raise(platform::RunTimeError::kAlreadyOpen);
  }
  return true;
}

void MatrixExport::DeleteTarget() {
  storage_.DropFile(target_);
  platform::DeleteFile(target_);
}

void MatrixExport::SaveAsText(ExportData& dialog) {
  dialog.ShowSourceTitle(services_.GetTitle(path_));
  Run(dialog, [&] {
    return TextExport(storage_, source_, target_, SeparatorsOf(*dialog.settings())).Run(dialog);
  });
}

void MatrixExport::SaveAsOrvImage(ExportData& dialog) {
  Run(dialog, [&] {
    return ContainerExport(storage_, services_, path_, source_, target_).SaveAsOrvImage(dialog);
  });
  storage_.CloseAll();
}

void MatrixExport::SaveAsOrvWithProp(ExportData& dialog) {
  storage_.error.Clear();
  Run(dialog, [&] {
    return ContainerExport(storage_, services_, path_, source_, target_).SaveAsOrvWithProp(dialog);
  });
  storage_.CloseAll();
}

void MatrixExport::Run(ExportData& dialog, const std::function<bool()>& exportTable) {
  const bool targetIsOurs = !platform::FileExists(target_);
  try {
    if (exportTable()) return dialog.Finish();
  } catch (...) {
    if (targetIsOurs) DiscardAfterFailure();
    throw;
  }
  if (!storage_.error.IsSet()) return;  // cancelled: the dialog discards the target
  if (targetIsOurs) DiscardAfterFailure();
  ExportData::ShowWriteFailure();
}

void MatrixExport::DiscardTarget() {
  storage_.CloseAll();
  if (platform::FileExists(target_)) DeleteTarget();
}

/// The failure itself is what the caller hears of; that the rest could not be cleared away is not.
void MatrixExport::DiscardAfterFailure() noexcept {
  try {
    DiscardTarget();
  } catch (const platform::RunTimeFailure&) {
    return;
  }
}

void SaveMtxAs(storage::Storage& storage, ExportServices& services, const std::wstring& pth,
               const std::wstring& file, bool withProp, std::int16_t fileType) {
  const storage::Location source = storage.resolver.ResolvePath(pth);
  if (storage.error.IsSet()) return;
  if (!source.IsTable()) {
    storage.error.Set(code::kBadArgument);
    return;
  }
  MatrixExport work(storage, services, pth, source, file);
  const auto format =
      fileType == kContainerType ? ExportData::Format::kContainer : ExportData::Format::kText;
  ExportData(work, format, withProp).RunModal();
}

}  // namespace orv::exchange
