// The in-memory view of the matrices' type tables.
//
// A type table is the matrix's property matrix: one record a type, field 1 the identifier, field 2
// the key, field 3 a nested matrix of name/value records. Properties are asked for once a cell, so
// they are read once and kept until something is written through a "#" step.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/file.h"

namespace orv::storage {

/// A property's value: its text, or the matrix that its cell holds.
struct TypeProperty {
  std::string text;
  std::int32_t matrix = 0;  ///< position of the nested matrix, 0 when the value is a text
};

/// One type table. Where several records carry the same identifier, key or name, the first counts.
struct TypeTable {
  struct Row {
    std::int32_t record = 0;
    std::map<std::string, TypeProperty, std::less<>> properties;  ///< by lower-cased name
  };
  std::map<std::string, Row, std::less<>> byIdentifier;
  std::map<std::string, Row, std::less<>> byKey;
};

class TypeTables {
 public:
  /// The type table of a matrix, or nullptr when it has none. Good until `Clear` or the
  /// next call for another matrix.
  const TypeTable* Of(platform::File& file, std::int32_t matrix);
  /// Property `name` (lower-cased) of a type number, or nullptr. The plain type has none.
  const TypeProperty* Find(platform::File& file, std::int32_t matrix, std::int16_t typeNumber,
                           std::string_view name);
  /// The index of each distinct value of a dictionary matrix, kept true by whoever adds a value.
  /// Good until `Clear`.
  std::unordered_map<std::string, std::int32_t>& DictionaryValues(platform::File& file,
                                                                  std::int32_t dictionaryMatrix);
  void Clear();
  /// Whether nothing is kept at present.
  bool IsEmpty() const { return tables_.empty() && dictionaries_.empty(); }

 private:
  struct Key {
    std::uint64_t opening;
    std::int32_t matrix;
    friend bool operator==(const Key&, const Key&) = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const {
      constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;
      return static_cast<std::size_t>((key.opening << 32 ^ static_cast<std::uint32_t>(key.matrix)) *
                                      kSpread);
    }
  };
  /// As many tables as are kept at a time.
  static constexpr std::size_t kGreatestTables = 1000;

  std::unordered_map<Key, TypeTable, KeyHash> tables_;
  std::unordered_map<Key, std::unordered_map<std::string, std::int32_t>, KeyHash> dictionaries_;
};

}  // namespace orv::storage
