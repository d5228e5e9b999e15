#include "support/exercise.h"

#include <algorithm>

#include "support/styled_file.h"

namespace orv::test {

void Exercise::CheckCode() {
  constexpr int kGreatestCode = 255;
  const int code = db_.Error();
  if (code < 0 || code > kGreatestCode) problems_ += "error code " + std::to_string(code) + "\n";
}

void Exercise::Read(const std::wstring& steps) {
  db_.Kind();
  const int records = std::min(db_.Records(steps) + 1, limits_.records);
  const int fields = std::min(db_.Fields(steps) + 1, limits_.fields);
  db_.Title(steps);
  for (int f = 0; f <= fields; ++f) {
    ReadCells(steps, f, records);
    db_.Get(steps, db_.Records(steps), f);
    db_.Style(steps, f);
    ReadFieldSize(steps, f);
  }
  db_.Type(steps, -8, 1, "font");
  ReadBlock(steps);
  Find(steps);
  RunCommands(steps);
  CheckCode();
}

void Exercise::ReadCells(const std::wstring& steps, int f, int records) {
  constexpr int kFirst = -2;
  constexpr int kStride = 8;
  constexpr int kLastWithTypes = 3;
  for (int r = kFirst; r <= records; ++r) {
    db_.Get(steps, r, f);
    if (r % kStride == 0) db_.HoldsMatrix(steps, r, f);
    if (r > kLastWithTypes) continue;
    db_.Id(steps, r, f);
    db_.Type(steps, r, f, "type");
    ReadDataType(steps, r, f);
  }
}

void Exercise::ReadDataType(const std::wstring& steps, std::int32_t r, int f) {
  std::wstring path = db_.Path(steps);
  auto field = static_cast<std::int16_t>(f);
  db_.engine.GetCellDataType(path, r, field);
}

void Exercise::ReadFieldSize(const std::wstring& steps, int f) {
  std::wstring path = db_.Path(steps);
  auto field = static_cast<std::int16_t>(f);
  db_.engine.dBASEFldSize(path, field);
}

void Exercise::ReadBlock(const std::wstring& steps) {
  TextMatrix block({1, limits_.fields}, {0, limits_.records});
  std::wstring path = db_.Path(steps);
  std::int32_t first = 0;
  std::int32_t last = limits_.records;
  Boolean frml = Boolean::kFalse;
  db_.engine.ValueMatrix(block, path, first, last, frml);
}

void Exercise::Find(const std::wstring& steps) {
  std::wstring path = db_.Path(steps);
  std::wstring wanted = L"bottom";
  std::int32_t record = 1;
  std::int16_t field = 1;
  std::int16_t region = 0;
  std::int16_t direct = 0;
  Boolean inCell = Boolean::kFalse;
  Boolean exact = Boolean::kFalse;
  db_.engine.MtxFindFirst(path, record, field, wanted, region, inCell, direct, exact);
  db_.engine.MtxFindMin(path, field);
  db_.engine.MtxFindMax(path, field);
}

void Exercise::RunCommands(const std::wstring& steps) {
  std::wstring command = L"=records+fields;";
  std::wstring path = db_.Path(steps);
  std::int32_t record = 3;
  std::int16_t field = 1;
  db_.engine.ExecCmd(command, path, record, field);
  Boolean isMtx = Boolean::kFalse;
  Boolean frml = Boolean::kTrue;
  db_.engine.GetCellValue(path, record, field, isMtx, frml);
}

void Exercise::Write(const std::wstring& steps) {
  for (int f = 1; f <= styled::kFields; ++f) WriteCells(steps, f);
  db_.SetTitle(steps, std::string(100, 't'));
  db_.SetType(steps, 1, 1, "type", "int");
  db_.SetType(steps, -9, 1, "icon", "tree");
  db_.Put(steps, 4, 1, "new");
  db_.AddFields(steps, 1, 2);
  db_.AddRecords(steps, 2, 2);
  db_.Set(steps, 1, 2, "late");
  if (!steps.empty()) db_.Put(steps, -2, 1, "Types");  // the root's hold the dictionary
  db_.DeleteField(steps, 1);
  CheckCode();
}

void Exercise::WriteCells(const std::wstring& steps, int f) {
  for (const int r : {0, 1, 3, 5, 30}) {
    db_.Set(steps, r, f, std::to_string(r * f));
    db_.Set(steps, r, f, std::string(300, 'w'));
    db_.Set(steps, r, f, "");
    db_.Set(steps, r, f, "new value");
    db_.ReBit(steps, r, f, 1);
    db_.ReBit(steps, r, f, 4);
  }
  CheckCode();
}

bool Exercise::ClaimsTooManyCells(const std::wstring& steps) {
  return std::int64_t{db_.Records(steps)} * db_.Fields(steps) > limits_.cells;
}

void Exercise::Convert(const std::wstring& steps) {
  if (ClaimsTooManyCells(steps)) return;
  constexpr int kFree = 0;
  constexpr int kFixed = 1;
  constexpr int kDictionary = 11;
  for (int f = 1; f <= styled::kFields; ++f) {
    db_.SetStyle(steps, f, kFixed, 4, false, 1);
    db_.SetStyle(steps, f, kDictionary);
    db_.SetStyle(steps, f, kFixed, 7);
    db_.SetStyle(steps, f, kFree);
    db_.SetStyle(steps, f, kDictionary);
    CheckCode();
  }
}

void Exercise::Export(const std::wstring& steps) {
  if (ClaimsTooManyCells(steps)) return;
  constexpr int kContainer = 1;
  constexpr int kText = 2;
  std::wstring path = db_.Path(steps);
  std::int16_t field = 1;
  db_.engine.SortData(path, field);
  db_.SaveAs(steps, L"copy.orv", true, kContainer);
  db_.SaveAs(steps, L"plain.orv", false, kContainer);
  db_.SaveAs(steps, L"copy.txt", true, kText);
  CheckCode();
}

}  // namespace orv::test
