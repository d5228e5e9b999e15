// The dictionary matrix of a field: making it, filling it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "convert/distinct_values.h"
#include "convert/ports.h"
#include "dialogs/compress_form.h"
#include "storage/storage.h"

namespace orv::convert {

/// Writes the distinct values of a field into the dictionary matrix of its type, which is the value
/// of the type property "dictionary": field 1 the value, field 2 its count.
class DictionaryMatrix {
 public:
  DictionaryMatrix(storage::Storage& storage, TypePropertyPort& properties, std::wstring path,
                   std::int16_t field)
      : storage_(storage), properties_(properties), path_(std::move(path)), field_(field) {}

  /// Sets the property and makes the matrix exist with its fields and with a record for every
  /// value. A matrix that is there is used again. False with an error code.
  bool Prepare(const DistinctValues& values);
  /// Writes values and counts behind the dialog; entries beyond them are emptied. False when a
  /// cancel was confirmed or with an error code.
  bool Write(dialogs::CompressForm& form, const DistinctValues& values);
  /// The dictionary's record of value `i`.
  std::int32_t Entry(std::int32_t i) const { return entries_[static_cast<std::size_t>(i)]; }
  /// The greatest of them.
  std::int32_t GreatestEntry() const { return greatestEntry_; }

 private:
  bool Failed() const { return storage_.error.IsSet(); }
  bool FindList();
  bool EnsureMatrix();
  bool IsUsable() const;
  bool IsShared() const;
  void PlaceValues(const DistinctValues& values);
  bool EnsureRecords(std::int32_t count);

  storage::Storage& storage_;
  TypePropertyPort& properties_;
  std::wstring path_;
  std::int16_t field_;
  std::wstring list_;                  ///< path of the type's property list
  std::int32_t property_ = 0;          ///< record of the property in it
  std::int32_t matrix_ = 0;            ///< position of the dictionary matrix
  bool shared_ = false;                ///< another field's index refers to its entries
  std::int32_t present_ = 0;           ///< entries it had before
  std::vector<std::int32_t> entries_;  ///< by number of the value; element 0 is not used
  std::int32_t greatestEntry_ = 0;
};

}  // namespace orv::convert
