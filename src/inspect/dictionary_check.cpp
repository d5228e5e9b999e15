#include "inspect/dictionary_check.h"

#include <algorithm>

#include "platform/code_page.h"
#include "storage/chain_array.h"
#include "storage/dictionary.h"
#include "storage/field_reader.h"
#include "storage/layout.h"
#include "storage/matrix.h"

namespace orv::inspect {

namespace layout = storage::layout;
using platform::RunTimeFailure;
using storage::DictionaryIndex;
using storage::FieldReader;

namespace {

/// Fields of a property matrix and of a list of properties.
constexpr std::int16_t kNumberField = 1;
constexpr std::int16_t kListField = 3;
constexpr std::int16_t kNameField = 1;
constexpr std::int16_t kValueField = 2;
/// What even the smallest file may cost.
constexpr std::int64_t kLeastSteps = 1000;

FieldReader ReaderOf(platform::File& file, std::int32_t matrix, std::int16_t f) {
  const std::int32_t descriptor = storage::FindFieldDescriptor(file, matrix, f);
  if (descriptor < 1) platform::Raise(platform::RunTimeError::kSubscript);
  return {file, matrix, descriptor, nullptr};
}

bool CanBeMatrix(const platform::File& file, std::int32_t position) {
  return file.Contains(position, layout::matrix::kHeaderBytes);
}

/// The matrix that the cell read last holds, 0 for a text.
std::int32_t MatrixOf(const FieldReader& reader) { return reader.code() < 0 ? reader.cell() : 0; }

}  // namespace

DictionaryCheck::DictionaryCheck(platform::File& file)
    : file_(file), steps_(file.Length() + kLeastSteps) {}

std::optional<Finding> DictionaryCheck::Check(const DictionaryField& field) {
  if (const auto values = CountValues(field)) return CheckEntries(field, *values);
  if (steps_ < 0) return std::nullopt;
  return Finding{Damage::kNoDictionary, {},
                 field.place.field,     Finding::kNoRecord,
                 field.descriptor,      "no property of the field's type leads to a dictionary",
                 "the field's name"};
}

std::optional<std::int64_t> DictionaryCheck::CountValues(const DictionaryField& field) {
  try {
    const std::int32_t dictionary = FindDictionary(field);
    if (steps_ < 0 || !CanBeMatrix(file_, dictionary)) return std::nullopt;
    ReaderOf(file_, dictionary, storage::kDictionaryValueField);
    return std::max(storage::ReadableRecordCount(file_, dictionary), 0);
  } catch (const RunTimeFailure&) {
    return std::nullopt;  // neither a property matrix nor a dictionary without its fields counts
  }
}

std::optional<Finding> DictionaryCheck::CheckEntries(const DictionaryField& field,
                                                     std::int64_t values) const {
  const DictionaryIndex index(static_cast<std::int32_t>(field.index),
                              static_cast<std::int32_t>(field.width));
  std::int64_t wrong = 0;
  std::int64_t first = 0;
  for (std::int64_t r = 1; r <= field.records; ++r) {
    const std::int64_t value = index.Read(file_, r);
    if (value >= 0 && value <= values) continue;
    if (++wrong == 1) first = r;
  }
  if (wrong == 0) return std::nullopt;
  return Finding{Damage::kIndex,
                 {},
                 field.place.field,
                 first,
                 index.EntryPosition(first),
                 "the index is " + std::to_string(index.Read(file_, first)) +
                     ", the dictionary has " + std::to_string(values) + " values" +
                     (wrong > 1 ? "; so in " + std::to_string(wrong) + " records in all" : ""),
                 "the field's other cells"};
}

std::int32_t DictionaryCheck::FindDictionary(const DictionaryField& field) {
  const std::int32_t properties = file_.Int32At(field.matrix + layout::matrix::kProperties);
  const std::int16_t type =
      storage::FieldTypeNumber(static_cast<std::int32_t>(field.descriptor), file_);
  if (!CanBeMatrix(file_, properties) || type <= layout::cell::kPlainType) return 0;
  const Lists& lists = ListsOf(properties);
  const auto list = lists.find(std::to_string(type));
  if (list == lists.end() || !CanBeMatrix(file_, list->second)) return 0;
  if (list->second != lastList_) {
    lastDictionary_ = DictionaryIn(list->second);
    lastList_ = list->second;
  }
  return lastDictionary_;
}

/// A matrix can have many dictionary fields; its property matrix is read once.
const DictionaryCheck::Lists& DictionaryCheck::ListsOf(std::int32_t properties) {
  if (properties == listsOwner_) return lists_;
  listsOwner_ = 0;
  lists_.clear();
  FieldReader numbers = ReaderOf(file_, properties, kNumberField);
  FieldReader lists = ReaderOf(file_, properties, kListField);
  ForEachRecord(properties, [&](std::int32_t r) {
    const std::string number(numbers.Read(r));
    lists.Read(r);
    if (!number.empty()) lists_.try_emplace(number, MatrixOf(lists));
    return false;
  });
  listsOwner_ = properties;
  return lists_;
}

std::int32_t DictionaryCheck::DictionaryIn(std::int32_t list) {
  FieldReader names = ReaderOf(file_, list, kNameField);
  FieldReader values = ReaderOf(file_, list, kValueField);
  std::int32_t dictionary = 0;
  ForEachRecord(list, [&](std::int32_t r) {
    if (platform::FoldCase(names.Read(r)) != storage::kDictionaryProperty) return false;
    values.Read(r);
    dictionary = MatrixOf(values);
    return true;
  });
  return dictionary;
}

template <typename Take>
void DictionaryCheck::ForEachRecord(std::int32_t matrix, Take take) {
  const std::int32_t records = storage::ReadableRecordCount(file_, matrix);
  const std::int32_t numbers = storage::FindFieldDescriptor(file_, matrix, kNumberField);
  // A record without a name or number counts for nothing, so the loop ends where they do.
  const std::int64_t named =
      storage::HoldsFreeCells(numbers, file_)
          ? storage::ChainLength(file_, file_.Int32At(numbers), layout::kPointerBytes)
          : records;
  try {
    for (std::int32_t r = 1; r <= std::min<std::int64_t>(records, named); ++r) {
      if (--steps_ < 0 || take(r)) return;
    }
  } catch (const RunTimeFailure&) {
    return;  // what was readable so far counts
  }
}

}  // namespace orv::inspect
