#include "peers/engine_table.h"

#include <filesystem>

#include "peers/workload.h"

namespace orv::bench {

EngineTable::EngineTable(const std::string& file)
    : fileName_(std::filesystem::path(file).wstring()), path_(L'"' + fileName_ + L'"') {}

void EngineTable::Create() {
  engine_.CloseAll();
  std::filesystem::remove(fileName_);
  std::wstring title = L"Bench";
  engine_.CmdNewOrvDB(fileName_, title);
  CheckError("CmdNewOrvDB");
  std::int16_t fields = kFields;
  std::int16_t first = 1;
  engine_.CmdAddFld(path_, fields, first);
  CheckError("CmdAddFld");
}

void EngineTable::Load(std::int32_t records) {
  Create();
  std::int32_t count = records;
  std::int32_t first = 1;
  engine_.CmdAddRecord(path_, count, first);
  CheckError("CmdAddRecord");
  for (std::int32_t record = 1; record <= records; ++record) {
    for (std::int16_t field = 1; field <= kFields; ++field) {
      std::wstring text = Widen(CellText(record, field));
      engine_.SetCellValue(text, path_, record, field);
    }
    CheckError("SetCellValue");
  }
}

std::int32_t EngineTable::Records() {
  const std::int32_t records = engine_.Records(path_);
  CheckError("Records");
  return records;
}

std::int32_t EngineTable::Records(const std::string& condition) {
  std::wstring view = path_ + L"/" + Widen(condition);
  const std::int32_t records = engine_.Records(view);
  CheckError("Records");
  return records;
}

void EngineTable::CheckError(const char* member) {
  const Value error = engine_.ErrorCode();
  const std::int16_t number = error.Int16() == nullptr ? std::int16_t{-1} : *error.Int16();
  if (number != 0) {
    throw NotMeasured(std::string(member) + " leaves error code " + std::to_string(number));
  }
}

}  // namespace orv::bench
