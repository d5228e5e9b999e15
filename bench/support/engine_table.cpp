#include "support/engine_table.h"

#include <filesystem>

namespace orv::bench {

EngineTable::EngineTable(const std::string& file)
    : EngineMatrix(L'"' + std::filesystem::path(file).wstring() + L'"'),
      fileName_(std::filesystem::path(file).wstring()) {}

void EngineTable::Create(std::int16_t fields) {
  Close();
  std::filesystem::remove(fileName_);
  std::wstring title = L"Bench";
  engine().CmdNewOrvDB(fileName_, title);
  CheckError("CmdNewOrvDB");
  AddFields(fields);
}

void EngineTable::Load(std::int32_t records) {
  Create();
  AddRecords(records);
  for (std::int32_t record = 1; record <= records; ++record) FillRecord(record);
}

void EngineTable::Grow(std::int32_t records) {
  Create();
  for (std::int32_t record = 1; record <= records; ++record) {
    AppendRecord(record);
    FillRecord(record);
  }
}

std::int32_t EngineTable::Records(const std::string& condition) {
  return EngineMatrix(path() + L"/" + Widen(condition)).Records();
}

void EngineTable::FillRecord(std::int32_t record) {
  for (std::int16_t field = 1; field <= kFields; ++field) {
    PutText(record, field, CellText(record, field));
  }
}

}  // namespace orv::bench
