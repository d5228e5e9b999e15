// One matrix, through the public members alone.
#pragma once

#include <cstdint>
#include <string>

#include "orv/engine.h"

#include "support/table_data.h"

namespace orv::bench {

/// Calls with every member's parameters by reference and the path with each call.
class EngineMatrix {
 public:
  explicit EngineMatrix(std::wstring path) : path_(std::move(path)) {}

  const std::wstring& path() const { return path_; }
  Engine& engine() { return engine_; }

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
  void Close() { engine_.CloseAll(); }

  /// The following end the workload if the call fails.
  std::int32_t Records();
  void AddFields(std::int16_t count);
  void AddRecords(std::int32_t count);
  void PutText(std::int32_t record, std::int16_t field, const std::string& text);
  /// Puts an empty matrix into a cell.
  void PutMatrix(std::int32_t record, std::int16_t field);
  void Convert(std::int16_t field, std::int16_t freeSize, std::int16_t cellSize);

  /// Ends the workload if the last call failed.
  void CheckError(const char* member);

 private:
  Engine engine_;
  std::wstring path_;
};

}  // namespace orv::bench
