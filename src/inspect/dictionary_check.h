// The dictionaries behind the dictionary fields that a walk has met.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "inspect/container_walk.h"
#include "platform/file.h"

namespace orv::inspect {

/// Checks that every dictionary field has its dictionary and every entry of its index a value
/// there. What a file can make this read is bounded: a damaged file that leads to the same
/// properties again and again is checked in part only.
class DictionaryCheck {
 public:
  explicit DictionaryCheck(platform::File& file);

  /// What is wrong with the field, or nothing. The finding's matrix is left empty.
  std::optional<Finding> Check(const DictionaryField& field);
  /// How many values the field's dictionary has; nothing when it has no dictionary, or when no
  /// more may be read.
  std::optional<std::int64_t> CountValues(const DictionaryField& field);

 private:
  /// The property lists of one property matrix, by the type's number as text.
  using Lists = std::map<std::string, std::int32_t, std::less<>>;

  const Lists& ListsOf(std::int32_t properties);
  std::int32_t FindDictionary(const DictionaryField& field);
  std::int32_t DictionaryIn(std::int32_t list);
  std::optional<Finding> CheckEntries(const DictionaryField& field, std::int64_t values) const;
  /// Calls `take(record)` until it returns true or there is nothing more to read.
  template <typename Take>
  void ForEachRecord(std::int32_t matrix, Take take);

  platform::File& file_;
  std::int64_t steps_;  ///< records that may still be read
  std::int32_t listsOwner_ = 0;
  Lists lists_;
  std::int32_t lastList_ = 0;
  std::int32_t lastDictionary_ = 0;
};

}  // namespace orv::inspect
