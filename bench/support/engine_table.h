// The table in a container file, through the public members alone.
#pragma once

#include <string>

#include "support/engine_matrix.h"

namespace orv::bench {

class EngineTable : public EngineMatrix {
 public:
  explicit EngineTable(const std::string& file);

  /// Creates the file anew with `fields` fields and no record.
  void Create(std::int16_t fields = kFields);
  /// Creates the file and fills it: the records at once, then the cells record by record.
  void Load(std::int32_t records);
  /// Creates the file and fills it with one insertion a record, as a host does that takes down what
  /// comes in: each field's data becomes a chain of blocks of one entry.
  void Grow(std::int32_t records);

  using EngineMatrix::Records;
  /// Records of the view with this condition.
  std::int32_t Records(const std::string& condition);

 private:
  void FillRecord(std::int32_t record);

  std::wstring fileName_;
};

}  // namespace orv::bench
