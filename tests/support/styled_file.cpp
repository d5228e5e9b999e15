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

}  // namespace orv::test
