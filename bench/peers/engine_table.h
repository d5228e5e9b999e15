// The table in a container file, through the public members alone.
#pragma once

#include <string>

#include "orv/engine.h"

#include "peers/table_data.h"

namespace orv::bench {

/// Calls with every member's parameters by reference; a call that leaves an error code ends the
/// workload.
class EngineTable {
 public:
  explicit EngineTable(const std::string& file);

  /// Creates the file anew with the eight fields and no record.
  void Create();
  /// Creates the file and fills it: the records at once, then the cells record by record.
  void Load(std::int32_t records);

  const std::wstring& path() const { return path_; }

  std::wstring ReadCell(std::int32_t record, std::int16_t field) {
    Boolean isMtx = Boolean::kFalse;
    Boolean formula = Boolean::kFalse;
    return engine_.GetCellValue(path_, record, field, isMtx, formula);
  }
  void WriteCell(std::int32_t record, std::int16_t field, Text& text) {
    engine_.SetCellValue(text.wide, path_, record, field);
  }
  void AppendRecord(std::int32_t record) {
    std::int32_t one = 1;
    engine_.CmdAddRecord(path_, one, record);
  }
  /// Fills the array with its own records, up to `last`.
  void ReadBlock(TextMatrix& block, std::int32_t last) {
    std::int32_t first = block.records().low;
    Boolean formula = Boolean::kFalse;
    engine_.ValueMatrix(block, path_, first, last, formula);
  }
  std::int32_t Records();
  std::int32_t Records(const std::string& condition);
  void Close() { engine_.CloseAll(); }

  Engine& engine() { return engine_; }
  /// Ends the workload if the last call failed.
  void CheckError(const char* member);

 private:
  Engine engine_;
  std::wstring fileName_;
  std::wstring path_;
};

}  // namespace orv::bench
