#include "engine/type_properties.h"

#include <algorithm>

#include "engine/record_members.h"
#include "platform/code_page.h"
#include "storage/cell_code.h"
#include "storage/cell_primitives.h"
#include "storage/layout.h"
#include "storage/matrix.h"
#include "storage/matrix_path.h"
#include "storage/nested_matrix.h"
#include "storage/number_text.h"
#include "storage/records.h"

namespace orv::engine {

using platform::File;
using storage::Location;
using storage::Storage;
using storage::TypeTable;
namespace code = storage::code;
namespace layout = storage::layout;

namespace {

constexpr std::int16_t kIdentifierField = 1;
constexpr std::int16_t kKeyField = 2;
constexpr std::int16_t kPropertiesField = 3;
constexpr std::int16_t kTypeFields = 3;
constexpr std::int16_t kNameField = 1;
constexpr std::int16_t kValueField = 2;
constexpr std::int16_t kPropertyFields = 2;
constexpr std::int16_t kFirstIdentifier = 2;
constexpr std::int16_t kGreatestType = 16379;
/// Spelled so in every host that asks for it.
constexpr std::string_view kDbaseWidth = "lenght";

/// What a record number selects: a cell's type, a keyed entry, or nothing.
bool SelectsCell(std::int32_t r) { return r >= 0 || r == storage::kTypeTableRecord; }
std::string_view KeyOf(std::int32_t r) {
  if (r == kTitleEntry) return "tit";
  return r == kMatrixEntry ? "mtx" : std::string_view();
}

std::int16_t TypeOfCell(Storage& storage, const std::wstring& pth, std::int32_t r, std::int16_t f) {
  const std::int16_t word = GetID(storage, pth, r, f);
  return word == 0 ? layout::cell::kPlainType : storage::DecodeCellCode(word).type;
}

const TypeTable::Row* FindRow(const TypeTable* table, std::int32_t r, std::int16_t type) {
  if (table == nullptr) return nullptr;
  const auto& rows = SelectsCell(r) ? table->byIdentifier : table->byKey;
  if (SelectsCell(r) && type == layout::cell::kPlainType) return nullptr;
  const auto row = rows.find(SelectsCell(r) ? std::to_string(type) : std::string(KeyOf(r)));
  return row == rows.end() ? nullptr : &row->second;
}

/// The position that `path` leads to, 0 when it leads to no matrix; the error code is left clear
/// then.
std::int32_t MatrixAt(Storage& storage, const std::wstring& path) {
  const Location at = storage.resolver.ResolvePath(path);
  if (storage.error.value() == code::kNotAMatrix) storage.error.Clear();
  return at.IsMatrix() ? at.position : 0;
}

/// Appends an empty record and returns its number.
std::int32_t AppendRecord(Storage& storage, const std::wstring& path) {
  CmdAddRecord(storage, path, 1, Records(storage, path) + 1);
  return storage.error.IsSet() ? 0 : Records(storage, path);
}

/// Sets properties step by step; each step leaves the error code when it fails.
class PropertyWriter {
 public:
  PropertyWriter(Storage& storage, const std::wstring& pth, std::int32_t r, std::int16_t f)
      : storage_(storage), pth_(pth), types_(storage::PropertyPath(pth)), r_(r), f_(f) {}

  void Write(const std::string& prop, const std::string& vlu) {
    const std::int16_t type =
        SelectsCell(r_) ? TypeOfCell(storage_, pth_, r_, f_) : std::int16_t{0};
    if (Failed() || !FindCell() ||
        !EnsureMatrix(pth_, types_, storage::kTypeTableRecord, 1, "Types", kTypeFields))
      return;
    const std::int32_t known = RowOf(type);
    const std::int16_t newType = known == 0 ? NextIdentifier() : type;
    const std::int32_t row = known == 0 ? AddRow(newType) : known;
    if (Failed()) return;
    StoreProperty(storage::NestedPath(types_, row, kPropertiesField), row, prop, vlu);
    if (!Failed() && known == 0 && SelectsCell(r_)) StoreType(newType);
    storage_.types.Clear();
  }

 private:
  bool Failed() const { return storage_.error.IsSet(); }

  /// Finds the cell behind the path, once: making the type table drops the views, and a view built
  /// anew may show other records. False where the type is a cell's and there is no field to hold
  /// it: the number of a field just deleted has no descriptor, and nothing may be written for it.
  bool FindCell() {
    if (!SelectsCell(r_)) return true;
    const Location at = Resolved(pth_);
    matrix_ = at.position;
    record_ = storage_.UnderlyingRecord(at, r_);
    field_ = storage_.UnderlyingField(at, f_);
    if (DescriptorIn(*at.file) < 1) storage_.error.Set(code::kBadArgument);
    return !Failed();
  }

  std::int32_t DescriptorIn(File& file) {
    return storage_.fields.GetFieldPos(matrix_, field_, file);
  }

  /// A path that led to a matrix when the writing began. Raises 9 when it does not any more: in a
  /// damaged file what is written can lie over what the path leads through.
  Location Resolved(const std::wstring& path) {
    const Location at = storage_.resolver.ResolvePath(path);
    if (!at.IsMatrix()) platform::Raise(platform::RunTimeError::kSubscript);
    return at;
  }

  /// Makes the matrix at `path` exist in cell (r, f) of `owner` with its fields.
  bool EnsureMatrix(const std::wstring& owner, const std::wstring& path, std::int32_t r,
                    std::int16_t f, std::string title, std::int16_t fields) {
    if (MatrixAt(storage_, path) == 0 && !Failed())
      storage::PutMatrix(storage_, owner, r, f, title);
    if (Failed()) return false;
    const std::int32_t present = storage_.fields.SvrFields(path);
    if (present < fields) {
      storage_.fields.SvrCmdAddFields(path, static_cast<std::int16_t>(fields - present), fields);
    }
    return !Failed();
  }

  std::int32_t RowOf(std::int16_t type) {
    const Location at = Resolved(pth_);
    const TypeTable::Row* row = FindRow(storage_.types.Of(*at.file, at.position), r_, type);
    return row == nullptr ? 0 : row->record;
  }

  /// The greatest identifier plus 1.
  std::int16_t NextIdentifier() {
    const Location at = Resolved(pth_);
    const TypeTable* table = storage_.types.Of(*at.file, at.position);
    double greatest = kFirstIdentifier - 1;
    if (table != nullptr) {
      for (const auto& [identifier, row] : table->byIdentifier) {
        greatest = std::max(greatest, storage::LeadingNumber(identifier));
      }
    }
    if (greatest >= kGreatestType) platform::Raise(platform::RunTimeError::kOverflow);
    return static_cast<std::int16_t>(greatest + 1);
  }

  std::int32_t AddRow(std::int16_t identifier) {
    const std::int32_t row = AppendRecord(storage_, types_);
    if (Failed()) return 0;
    SetCell(types_, row, kIdentifierField, std::to_string(identifier));
    if (!Failed()) SetCell(types_, row, kKeyField, std::string(KeyOf(r_)));
    return row;
  }

  void StoreProperty(const std::wstring& list, std::int32_t row, const std::string& prop,
                     const std::string& vlu) {
    if (!EnsureMatrix(types_, list, row, kPropertiesField, "Prop", kPropertyFields)) return;
    const std::string name = platform::FoldCase(std::string_view(prop));
    std::int32_t record = FindName(list, name);
    if (Failed()) return;
    if (record == 0) {
      record = AppendRecord(storage_, list);
      if (!Failed()) SetCell(list, record, kNameField, name);
    }
    if (!Failed()) SetCell(list, record, kValueField, vlu);
  }

  std::int32_t FindName(const std::wstring& list, const std::string& name) {
    const Location at = Resolved(list);
    const std::int32_t records = storage::ReadableRecordCount(*at.file, at.position);
    for (std::int32_t record = 1; record <= records; ++record) {
      bool isMtx = false;
      if (platform::FoldCase(storage_.cells.ReadCell(at, record, kNameField, isMtx)) == name)
        return record;
    }
    return 0;
  }

  void SetCell(const std::wstring& path, std::int32_t r, std::int16_t f, const std::string& text) {
    storage_.cells.SvrSetCellValue(text, path, r, f);
  }

  /// Gives the cell, its title or its field the type, keeping length form and matrix flag.
  void StoreType(std::int16_t type) {
    File& file = *Resolved(pth_).file;
    const std::int32_t descriptor = DescriptorIn(file);
    const bool hasCells = storage::StyleOf(descriptor, file).freeSize == storage::free_size::kFree;
    if (r_ > 0 && hasCells) {
      StoreTypeOfCell(file, descriptor, type);
    } else {
      ReplaceType(file,
                  std::int64_t{descriptor} +
                      (r_ == 0 ? layout::descriptor::kTitleCell : layout::descriptor::kFieldCode),
                  type);
    }
  }

  void StoreTypeOfCell(File& file, std::int32_t descriptor, std::int16_t type) {
    storage::MakeRoom(matrix_, descriptor, file, storage_.types);
    std::int32_t slot = 0;
    std::int32_t cell = storage::GetCellPos(descriptor, record_, file, slot, storage_.error);
    if (cell == 0) {
      storage::PutCell(cell, type, {}, file, slot);
    } else {
      ReplaceType(file, cell, type);
    }
  }

  static void ReplaceType(File& file, std::int64_t position, std::int16_t type) {
    if (!file.Contains(position, sizeof(std::int16_t))) {
      platform::Raise(platform::RunTimeError::kSubscript);
    }
    storage::CellCode parts = storage::DecodeCellCode(file.Int16At(position));
    parts.type = type;
    file.WriteInt16(position, storage::EncodeCellCode(parts));
  }

  Storage& storage_;
  const std::wstring& pth_;
  std::wstring types_;
  std::int32_t r_;
  std::int16_t f_;
  // The cell behind the path, in the matrix that it shows.
  std::int32_t matrix_ = 0;
  std::int32_t record_ = 0;
  std::int16_t field_ = 0;
};

std::string DbaseProperty(Storage& storage, const Location& at, std::int16_t f,
                          const std::string& prop) {
  if (platform::FoldCase(std::string_view(prop)) == kDbaseWidth) {
    return std::to_string(storage.ports.dbase->FieldWidth(*at.file, f));
  }
  storage.error.Set(code::kNothingToRead);
  return {};
}

bool IsCommand(const std::string& text) {
  return text.size() >= 2 && text.front() == '=' && text.back() == ';';
}

}  // namespace

void SetTypeValue(Storage& storage, const std::wstring& pth, std::int32_t r, std::int16_t f,
                  const std::string& prop, const std::string& vlu) {
  storage.error.Clear();
  if (storage::EndsInProperties(pth)) {
    storage.error.Set(code::kPropertyRefused);
    return;
  }
  const Location at = storage.resolver.ResolvePath(pth);
  if (storage.error.IsSet()) return;
  if (at.IsDbase()) {
    storage.error.Set(code::kNotOnDbase);
  } else if (!at.IsMatrix() || (!SelectsCell(r) && KeyOf(r).empty())) {
    storage.error.Set(code::kBadArgument);
  } else {
    PropertyWriter(storage, pth, r, f).Write(prop, vlu);
  }
}

std::string GetTypeValue(Storage& storage, const std::wstring& pth, std::int32_t r, std::int16_t f,
                         const std::string& prop, bool frml, LanguageServices& language) {
  storage.error.Clear();
  if (storage::EndsInProperties(pth)) return {};
  const Location at = storage.resolver.ResolvePath(pth);
  if (storage.error.IsSet()) return {};
  if (at.IsDbase()) return DbaseProperty(storage, at, f, prop);
  if (!at.IsMatrix()) {
    storage.error.Set(code::kBadArgument);
    return {};
  }
  const std::int16_t type = SelectsCell(r) ? TypeOfCell(storage, pth, r, f) : std::int16_t{0};
  if (storage.error.IsSet()) return {};
  const TypeTable::Row* row = FindRow(storage.types.Of(*at.file, at.position), r, type);
  const auto* properties = row == nullptr ? nullptr : &row->properties;
  const std::string folded = platform::FoldCase(std::string_view(prop));
  if (properties == nullptr || !properties->contains(folded)) {
    storage.error.Set(code::kNothingToRead);
    return {};
  }
  std::string value = properties->find(folded)->second.text;
  if (!frml || !IsCommand(value)) return value;
  return language.Run(value, pth, r, f).value_or(std::string());
}

}  // namespace orv::engine
