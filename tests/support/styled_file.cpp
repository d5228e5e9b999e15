#include "support/styled_file.h"

#include <stdexcept>

#include "support/container_bytes.h"

namespace orv::test {
namespace {

void Require(Driver& db) {
  if (db.Error() != 0) throw std::runtime_error("styled file: error " + std::to_string(db.Error()));
}

}  // namespace

void MakeStyledFile(Driver& db) {
  db.Fresh("styled");
  db.AddFields(L"", styled::kFields, 1);
  Require(db);
  db.SetType(L"", -2, styled::kInt, "type", "int");
  Require(db);
  db.SetType(L"", -2, styled::kDictionary, "dictionary", "values");
  Require(db);
  db.Put(L"/#/[2,3]", 1, 2, "Dictionary");
  db.AddFields(L"/#/[2,3]/[1,2]", 2, 1);
  Require(db);
  db.CloseAll();

  ContainerBytes file(db.Bytes());
  file.MakeFixed(file.Root(), styled::kText, 5, 0);
  file.MakeFixed(file.Root(), styled::kPacked, 2, 1);
  file.MakeFixed(file.Root(), styled::kInt, 4, 0);
  file.MakeDictionary(file.Root(), styled::kDictionary, 1);
  WriteBytes(db.file(), file.bytes());
}

void AddStyledRecords(Driver& db, int records, int values,
                      const std::function<std::string(int)>& freeText) {
  for (int r = 1; r <= records; ++r) db.AddRecords(L"", 1, r);
  for (int r = 1; r <= records; ++r) {
    db.Set(L"", r, styled::kFree, freeText(r));
    db.Set(L"", r, styled::kText, "t" + std::to_string(r));
    db.Set(L"", r, styled::kPacked, std::to_string(r * 100));
    db.Set(L"", r, styled::kInt, std::to_string(r * 1000000));
    db.Set(L"", r, styled::kDictionary, "value " + std::to_string(r % values));
  }
  for (int f = 1; f <= styled::kFields; ++f) db.Set(L"", 0, f, "field " + std::to_string(f));
}

void NestMatrices(Driver& db, const std::vector<std::pair<int, int>>& cells) {
  std::wstring steps;
  for (const auto& [record, field] : cells) {
    db.Put(steps, record, field, "deep");
    steps += L"/[" + std::to_wstring(record) + L"," + std::to_wstring(field) + L"]";
    db.AddFields(steps, 2, 1);
    db.AddRecords(steps, 3, 1);
    db.Set(steps, 3, 2, "bottom");
  }
}

}  // namespace orv::test
