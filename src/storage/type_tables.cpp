#include "storage/type_tables.h"

#include <algorithm>
#include <limits>

#include "platform/code_page.h"
#include "storage/dictionary.h"
#include "storage/field_reader.h"
#include "storage/layout.h"
#include "storage/matrix.h"

namespace orv::storage {

using platform::File;
using platform::RunTimeFailure;

namespace {

constexpr std::int16_t kIdentifierField = 1;
constexpr std::int16_t kKeyField = 2;
constexpr std::int16_t kPropertiesField = 3;
constexpr std::int16_t kNameField = 1;
constexpr std::int16_t kValueField = 2;

/// A field of a table of the type world. Its own types are not consulted: tables could name one
/// another in circles.
FieldReader ReaderOf(File& file, std::int32_t matrix, std::int16_t f) {
  const std::int32_t descriptor = FindFieldDescriptor(file, matrix, f);
  if (descriptor < 1) platform::Raise(platform::RunTimeError::kSubscript);
  return {file, matrix, descriptor, nullptr};
}

/// The records that one reading of a type world may still go through. Many types can share one
/// list, so that a small file describes more records than could ever be read.
class Budget {
 public:
  explicit Budget(const File& file)
      : left_(PlausibleRecordCount(file, std::numeric_limits<std::int32_t>::max())) {}
  bool Take() { return left_-- > 0; }

 private:
  std::int64_t left_;
};

/// Calls `take` for record 1, 2, ... up to `reach` until the records, the budget or the readable
/// part of a damaged table end.
template <typename Take>
void ForEachRecord(const File& file, std::int32_t matrix, std::int64_t reach, Budget& budget,
                   Take take) {
  const std::int64_t records = std::min<std::int64_t>(ReadableRecordCount(file, matrix), reach);
  try {
    for (std::int32_t r = 1; r <= records && budget.Take(); ++r) take(r);
  } catch (const RunTimeFailure&) {
    return;  // what was readable so far counts
  }
}

void ReadProperties(File& file, std::int32_t matrix, Budget& budget, TypeTable::Row& row) {
  FieldReader names = ReaderOf(file, matrix, kNameField);
  FieldReader values = ReaderOf(file, matrix, kValueField);
  ForEachRecord(file, matrix, names.Reach(), budget, [&](std::int32_t r) {
    const std::string name = platform::FoldCase(names.Read(r));
    if (name.empty()) return;
    TypeProperty property{std::string(values.Read(r)), 0};
    if (values.code() < 0) property.matrix = values.cell();
    row.properties.try_emplace(name, std::move(property));
  });
}

TypeTable ReadTable(File& file, std::int32_t types) {
  TypeTable table;
  FieldReader identifiers = ReaderOf(file, types, kIdentifierField);
  FieldReader keys = ReaderOf(file, types, kKeyField);
  FieldReader properties = ReaderOf(file, types, kPropertiesField);
  Budget budget(file);
  const std::int64_t reach = std::max(identifiers.Reach(), keys.Reach());
  ForEachRecord(file, types, reach, budget, [&](std::int32_t r) {
    TypeTable::Row row{r, {}};
    const std::string identifier(identifiers.Read(r));
    const std::string key(keys.Read(r));
    properties.Read(r);
    if (properties.code() < 0) {
      try {
        ReadProperties(file, properties.cell(), budget, row);
      } catch (const RunTimeFailure&) {
        row.properties.clear();  // a type whose list is damaged has no properties
      }
    }
    if (!key.empty()) table.byKey.try_emplace(key, row);
    if (!identifier.empty()) table.byIdentifier.try_emplace(identifier, std::move(row));
  });
  return table;
}

}  // namespace

const TypeTable* TypeTables::Of(File& file, std::int32_t matrix) {
  const std::int32_t types = file.Int32At(std::int64_t{matrix} + layout::matrix::kProperties);
  if (types < 1) return nullptr;
  const Key key{file.opening(), matrix};
  if (const auto known = tables_.find(key); known != tables_.end()) return &known->second;
  if (tables_.size() >= kGreatestTables) tables_.clear();
  TypeTable table;
  try {
    table = ReadTable(file, types);
  } catch (const RunTimeFailure&) {
    table = {};  // a property matrix without its three fields describes no type
  }
  return &tables_.emplace(key, std::move(table)).first->second;
}

const TypeProperty* TypeTables::Find(File& file, std::int32_t matrix, std::int16_t typeNumber,
                                     std::string_view name) {
  if (typeNumber <= layout::cell::kPlainType) return nullptr;
  const TypeTable* table = Of(file, matrix);
  if (table == nullptr) return nullptr;
  const auto row = table->byIdentifier.find(std::to_string(typeNumber));
  if (row == table->byIdentifier.end()) return nullptr;
  const auto property = row->second.properties.find(name);
  return property == row->second.properties.end() ? nullptr : &property->second;
}

std::unordered_map<std::string, std::int32_t>& TypeTables::DictionaryValues(
    File& file, std::int32_t dictionaryMatrix) {
  const Key key{file.opening(), dictionaryMatrix};
  if (const auto known = dictionaries_.find(key); known != dictionaries_.end())
    return known->second;
  std::unordered_map<std::string, std::int32_t> values;
  FieldReader reader = ReaderOf(file, dictionaryMatrix, kDictionaryValueField);
  Budget budget(file);
  ForEachRecord(file, dictionaryMatrix, reader.Reach(), budget,
                [&](std::int32_t r) { values.try_emplace(std::string(reader.Read(r)), r); });
  return dictionaries_.emplace(key, std::move(values)).first->second;
}

void TypeTables::Clear() {
  tables_.clear();
  dictionaries_.clear();
}

}  // namespace orv::storage
