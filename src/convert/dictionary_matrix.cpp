#include "convert/dictionary_matrix.h"

#include <algorithm>

#include "platform/code_page.h"
#include "storage/cell_batch.h"
#include "storage/cell_writer.h"
#include "storage/chain_array.h"
#include "storage/dictionary.h"
#include "storage/field_reader.h"
#include "storage/layout.h"
#include "storage/matrix.h"
#include "storage/matrix_path.h"
#include "storage/nested_matrix.h"
#include "storage/number_text.h"
#include "storage/records.h"

namespace orv::convert {

using platform::File;
using storage::Location;
using storage::TypeTable;
namespace code = storage::code;
namespace free_size = storage::free_size;

namespace {

constexpr std::int16_t kFields = 2;
constexpr std::int32_t kLeastReusedRecords = 2;
/// Fields of a type table and of a property list.
constexpr std::int16_t kPropertiesField = 3;
constexpr std::int16_t kNameField = 1;
constexpr std::int16_t kValueField = 2;
/// The text of the property, which becomes the title of the matrix put into its cell.
constexpr const char* kTitle = "Dictionary";

/// Writes the cells of one free field of the dictionary: new ones in large pieces, present ones in
/// place.
class EntryWriter {
 public:
  EntryWriter(storage::Storage& storage, File& file, std::int32_t matrix, std::int16_t f)
      : file_(file),
        field_(f),
        descriptor_(storage::FindFieldDescriptor(file, matrix, f)),
        type_(storage::FieldTypeNumber(descriptor_, file)),
        writer_(file, matrix, storage.types, storage.error),
        batch_(file) {
    storage::MakeRoom(matrix, descriptor_, file, storage.types);
  }

  void Write(std::int32_t entry, std::string_view text) {
    const storage::ChainRun slot = storage::FindChainRun(file_, file_.Int32At(descriptor_), entry,
                                                         storage::layout::kPointerBytes);
    if (slot.count == 0) platform::Raise(platform::RunTimeError::kSubscript);
    if (file_.Int32At(slot.position) != 0) {
      writer_.Write(descriptor_, entry, field_, text);
    } else if (!text.empty()) {
      batch_.Add(slot.position, storage::NewCellCode(type_, text), text);
    }
  }

  void Flush() { batch_.Flush(); }

 private:
  File& file_;
  std::int16_t field_;
  std::int32_t descriptor_;
  std::int16_t type_;
  storage::CellWriter writer_;
  storage::CellBatch batch_;
};

}  // namespace

bool DictionaryMatrix::Prepare(const DistinctValues& values) {
  if (!FindList() || matrix_ == 0) {
    if (Failed()) return false;
    properties_.SetTypeValue(path_, storage::kTypeTableRecord, field_,
                             std::string(storage::kDictionaryProperty), kTitle);
    if (Failed() || !FindList()) return false;
  }
  shared_ = IsShared();
  if (!EnsureMatrix()) return false;
  PlaceValues(values);
  return EnsureRecords(greatestEntry_);
}

/// Finds the type's property list, the property's record in it and the matrix in its value cell.
bool DictionaryMatrix::FindList() {
  property_ = 0;
  matrix_ = 0;
  const Location at = storage_.resolver.ResolvePath(path_);
  if (Failed()) return false;
  File& file = *at.file;
  const TypeTable* table = storage_.types.Of(file, at.position);
  const std::int32_t descriptor = storage_.fields.GetFieldPos(at.position, field_, file);
  const std::int16_t type = storage::FieldTypeNumber(descriptor, file);
  if (table == nullptr || type <= storage::layout::cell::kPlainType) return false;
  const auto row = table->byIdentifier.find(std::to_string(type));
  if (row == table->byIdentifier.end()) return false;
  list_ = storage::NestedPath(storage::PropertyPath(path_), row->second.record, kPropertiesField);
  const Location list = storage_.resolver.ResolvePath(list_);
  if (storage_.error.value() == code::kNotAMatrix) storage_.error.Clear();
  if (Failed() || !list.IsMatrix()) return false;
  const std::int32_t records = storage::ReadableRecordCount(*list.file, list.position);
  for (std::int32_t r = 1; r <= records && property_ == 0; ++r) {
    bool isMtx = false;
    const std::string_view name = storage_.cells.ReadCell(list, r, kNameField, isMtx);
    if (platform::FoldCase(name) == storage::kDictionaryProperty) property_ = r;
  }
  if (property_ == 0) return false;
  matrix_ = storage_.cells.FindNestedMatrix(list.position, property_, kValueField, *list.file);
  return true;
}

/// Whether the index of another dictionary field refers to the entries of this dictionary: fields
/// of the same type share it. Its entries must then stay where they are.
bool DictionaryMatrix::IsShared() const {
  const Location at = storage_.resolver.ResolvePath(path_);
  File& file = *at.file;
  const auto typeOf = [&](std::int32_t descriptor) {
    return storage::FieldTypeNumber(descriptor, file);
  };
  const std::int16_t own = typeOf(storage_.fields.GetFieldPos(at.position, field_, file));
  const std::int16_t fields = storage_.fields.GetNumFld(at.position, file);
  for (int f = 1; f <= fields; ++f) {
    const std::int32_t descriptor =
        storage::FindFieldDescriptor(file, at.position, static_cast<std::int16_t>(f));
    if (f == field_ || descriptor < 1) continue;
    if (storage::StyleOf(descriptor, file).freeSize == free_size::kDictionary &&
        typeOf(descriptor) == own) {
      return true;
    }
  }
  return false;
}

/// Whether the matrix found can be filled again: entries are only ever written into free fields.
bool DictionaryMatrix::IsUsable() const {
  File& file = *storage_.resolver.ResolvePath(path_).file;
  const std::int16_t fields = storage::ContainerFieldCount(file, matrix_);
  for (std::int16_t f = 1; f <= std::min(fields, kFields); ++f) {
    const std::int32_t descriptor = storage::FindFieldDescriptor(file, matrix_, f);
    if (descriptor < 1 || storage::StyleOf(descriptor, file).freeSize != free_size::kFree) {
      return false;
    }
  }
  return true;
}

bool DictionaryMatrix::EnsureMatrix() {
  const bool reused = matrix_ > 0 && IsUsable();
  if (shared_ && !reused) platform::Raise(platform::RunTimeError::kInvalidCall);
  if (!reused) {
    std::string title;  // the cell's own text
    storage::PutMatrix(storage_, list_, property_, kValueField, title);
    if (Failed()) return false;
  }
  const std::wstring path = storage::NestedPath(list_, property_, kValueField);
  const Location at = storage_.resolver.ResolvePath(path);
  if (Failed()) return false;
  matrix_ = at.position;
  const std::int16_t fields = storage_.fields.GetNumFld(matrix_, *at.file);
  if (fields < kFields) {
    storage_.fields.SvrCmdAddFields(path, static_cast<std::int16_t>(kFields - fields),
                                    static_cast<std::int16_t>(fields + 1));
  }
  present_ = storage::TrustedRecordCount(*at.file, matrix_);
  return !Failed() && (!reused || EnsureRecords(kLeastReusedRecords));
}

/// Decides the entry of each value: its own number, or in a shared dictionary the entry that holds
/// it already or a new one behind the present ones.
void DictionaryMatrix::PlaceValues(const DistinctValues& values) {
  entries_.assign(static_cast<std::size_t>(values.size()) + 1, 0);
  greatestEntry_ = shared_ ? present_ : 0;
  File& file = *storage_.resolver.ResolvePath(path_).file;
  const auto* known = shared_ ? &storage_.types.DictionaryValues(file, matrix_) : nullptr;
  for (std::int32_t i = 1; i <= values.size(); ++i) {
    std::int32_t& entry = entries_[static_cast<std::size_t>(i)];
    if (known != nullptr) {
      const auto found = known->find(std::string(values.Value(i)));
      if (found != known->end()) entry = found->second;
    }
    if (entry == 0) entry = ++greatestEntry_;
  }
}

bool DictionaryMatrix::EnsureRecords(std::int32_t count) {
  File& file = *storage_.resolver.ResolvePath(path_).file;
  const std::int32_t records = storage::TrustedRecordCount(file, matrix_);
  if (records < count) {
    storage::InsertRecords(matrix_, count - records, records + 1, file, storage_.types,
                           storage_.error);
  }
  return !Failed();
}

bool DictionaryMatrix::Write(dialogs::CompressForm& form, const DistinctValues& values) {
  const storage::Location at = storage_.resolver.ResolvePath(path_);
  File& file = *at.file;
  EntryWriter texts(storage_, file, matrix_, storage::kDictionaryValueField);
  EntryWriter counts(storage_, file, matrix_, storage::kDictionaryCountField);
  storage::FieldReader before(
      file, matrix_, storage::FindFieldDescriptor(file, matrix_, storage::kDictionaryCountField),
      nullptr);
  storage_.types.Clear();  // the entries known so far are about to change
  form.SetRange(0, values.size());
  for (std::int32_t i = 1; i <= values.size(); ++i) {
    form.SetValue(i);
    form.ServiceEvents();
    if (dialogs::CompressForm::CancelRequested()) return false;
    const std::int32_t entry = Entry(i);
    const bool isKept = shared_ && entry <= present_;
    const double others = isKept ? storage::LeadingNumber(before.Read(entry)) : 0;
    if (!isKept) texts.Write(entry, values.Value(i));
    counts.Write(entry, storage::NumberText(others + values.Count(i)));
  }
  const std::int32_t records = storage::TrustedRecordCount(file, matrix_);
  for (std::int32_t entry = greatestEntry_ + 1; entry <= records && !shared_; ++entry) {
    texts.Write(entry, {});
    counts.Write(entry, "0");
  }
  texts.Flush();
  counts.Flush();
  return !Failed();
}

}  // namespace orv::convert
