#include "support/engine_matrix.h"

#include "support/workload.h"

namespace orv::bench {

std::int32_t EngineMatrix::Records() {
  const std::int32_t records = engine_.Records(path_);
  CheckError("Records");
  return records;
}

void EngineMatrix::AddFields(std::int16_t count) {
  std::int16_t first = 1;
  engine_.CmdAddFld(path_, count, first);
  CheckError("CmdAddFld");
}

void EngineMatrix::AddRecords(std::int32_t count) {
  std::int32_t first = 1;
  engine_.CmdAddRecord(path_, count, first);
  CheckError("CmdAddRecord");
}

void EngineMatrix::PutText(std::int32_t record, std::int16_t field, const std::string& text) {
  std::wstring wide = Widen(text);
  engine_.SetCellValue(wide, path_, record, field);
  CheckError("SetCellValue");
}

void EngineMatrix::PutMatrix(std::int32_t record, std::int16_t field) {
  std::wstring title = L"Nested";
  engine_.PutMatrix(path_, record, field, title);
  CheckError("PutMatrix");
}

void EngineMatrix::Convert(std::int16_t field, std::int16_t freeSize, std::int16_t cellSize) {
  constexpr std::int16_t kStringType = 10;
  std::int16_t size = cellSize;
  std::int16_t type = kStringType;
  Boolean no = Boolean::kFalse;
  engine_.SetFldStyle(path_, field, freeSize, size, no, no, type);
  CheckError("SetFldStyle");
  std::int16_t present = -1;
  engine_.GetFldStyle(path_, field, present, size, no, no, type);
  CheckError("GetFldStyle");
  if (present != freeSize) throw NotMeasured("SetFldStyle did not convert the field");
}

void EngineMatrix::CheckError(const char* member) {
  const Value error = engine_.ErrorCode();
  const std::int16_t number = error.Int16() == nullptr ? std::int16_t{-1} : *error.Int16();
  if (number != 0) {
    throw NotMeasured(std::string(member) + " leaves error code " + std::to_string(number));
  }
}

}  // namespace orv::bench
