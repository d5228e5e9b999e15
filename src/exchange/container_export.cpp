#include "exchange/container_export.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "exchange/matrix_copy.h"
#include "platform/code_page.h"
#include "storage/cell_batch.h"
#include "storage/cell_writer.h"
#include "storage/layout.h"
#include "storage/matrix.h"
#include "storage/matrix_path.h"
#include "storage/nested_matrix.h"
#include "storage/records.h"
#include "storage/table_reader.h"

namespace orv::exchange {

using platform::File;
namespace layout = storage::layout;

namespace {

constexpr const wchar_t* kUntitled = L"FIRST MTX";
constexpr const char* kWidthProperty = "@width";
constexpr const char* kTypeProperty = "type";

/// Where the cells of a field of the target go.
struct TargetField {
  std::int64_t pointers = 0;  ///< position of record 1's pointer
  std::int16_t type = layout::cell::kPlainType;
};

}  // namespace

ContainerExport::ContainerExport(storage::Storage& storage, ExportServices& services,
                                 std::wstring sourcePath, const storage::Location& source,
                                 const std::wstring& target)
    : storage_(storage),
      services_(services),
      sourcePath_(std::move(sourcePath)),
      source_(source),
      targetPath_(storage::QuotedFile(target)) {}

bool ContainerExport::SaveAsOrvImage(dialogs::ExportData& dialog) {
  return CreateTarget(dialog) && GatherFields() && CreateFields() && CopyProperties() &&
         FindSourceAgain() && CopyValues(dialog);
}

bool ContainerExport::SaveAsOrvWithProp(dialogs::ExportData& dialog) {
  if (!source_.IsMatrix()) return SaveAsOrvImage(dialog);
  if (!CreateTarget(dialog)) return false;
  return MatrixCopy(storage_, *target_.file, dialog).SaveInternal(source_, target_.position);
}

bool ContainerExport::CreateTarget(dialogs::ExportData& dialog) {
  std::wstring title = services_.GetTitle(sourcePath_);
  if (Failed()) return false;
  dialog.ShowSourceTitle(title);
  services_.CmdNewOrvDB(targetPath_, title.empty() ? kUntitled : title);
  if (Failed()) return false;
  target_ = storage_.resolver.ResolvePath(targetPath_);
  return !Failed();
}

/// What the target's fields get from the source's. Gathered before anything is written, for new
/// fields and properties drop the views, the source's included.
bool ContainerExport::GatherFields() {
  storage::TableReader reader(storage_, source_);
  for (std::int32_t f = 1; f <= reader.fields(); ++f) {
    SourceField& field = fields_.emplace_back();
    field.name = reader.Read(0, f);
    const storage::FieldReader* const cells = reader.Field(f);
    if (cells != nullptr) field.dataType = cells->style().dataType;
    if (!source_.IsMatrix() || source_.endsInProperties) continue;
    const auto number = static_cast<std::int16_t>(f);
    field.width =
        services_.FindTypeValue(sourcePath_, storage::kTypeTableRecord, number, kWidthProperty);
    if (Failed()) return false;
    field.type =
        services_.FindTypeValue(sourcePath_, storage::kTypeTableRecord, number, kTypeProperty);
    if (Failed()) return false;
  }
  return true;
}

bool ContainerExport::CreateFields() {
  storage_.fields.SvrCmdAddFields(targetPath_, static_cast<std::int16_t>(fields_.size()), 1);
  if (Failed()) return false;
  File& file = *target_.file;
  storage::CellWriter writer(file, target_.position, storage_.types, storage_.error);
  std::int16_t f = 0;
  for (const SourceField& field : fields_) {
    const std::int32_t descriptor = storage_.fields.GetFieldPos(target_.position, ++f, file);
    writer.WriteName(descriptor, field.name);
    file.WriteInt16(std::int64_t{descriptor} + layout::descriptor::kDataType, field.dataType);
  }
  return !Failed();
}

/// The properties come before the values, so that the cells get the types of their fields.
bool ContainerExport::CopyProperties() {
  const auto set = [&](std::int16_t f, const char* name, const std::string& value) {
    services_.SetTypeValue(targetPath_, storage::kTypeTableRecord, f, name, value);
    return !Failed();
  };
  std::int16_t f = 0;
  for (const SourceField& field : fields_) {
    ++f;
    if (field.width && !set(f, kWidthProperty, *field.width)) return false;
    if (field.type && !field.type->empty() && !set(f, kTypeProperty, *field.type)) return false;
  }
  return true;
}

/// A view that the target's new fields dropped is built anew.
bool ContainerExport::FindSourceAgain() {
  source_ = storage_.resolver.ResolvePath(sourcePath_);
  return !Failed();
}

bool ContainerExport::CopyValues(dialogs::ExportData& dialog) {
  File& file = *target_.file;
  storage::TableReader reader(storage_, source_);
  const std::int32_t records = std::max(reader.records(), 0);
  if (records > 0 && reader.fields() > 0) {
    storage::InsertRecords(target_.position, records, 1, file, storage_.types, storage_.error);
  }
  if (Failed()) return false;
  std::vector<TargetField> fields;
  for (std::int32_t f = 1; f <= reader.fields(); ++f) {
    const std::int32_t descriptor =
        storage::FindFieldDescriptor(file, target_.position, static_cast<std::int16_t>(f));
    fields.push_back({std::int64_t{file.Int32At(descriptor)} + layout::kChainHeadBytes,
                      storage::FieldTypeNumber(descriptor, file)});
  }

  storage::CellBatch cells(file);
  dialog.SetRange(0, records);
  for (std::int32_t r = 1; r <= records; ++r) {
    dialog.SetValue(r);
    dialog.ServiceEvents();
    if (dialogs::ExportData::CancelRequested()) return false;
    std::int32_t f = 0;
    for (const TargetField& field : fields) {
      const std::string_view text = reader.Read(r, ++f);
      if (text.empty()) continue;
      cells.Add(field.pointers + std::int64_t{r - 1} * layout::kPointerBytes,
                storage::NewCellCode(field.type, text), text);
    }
  }
  cells.Flush();
  return true;
}

}  // namespace orv::exchange
