#include "support/driver.h"

#include <filesystem>

#include "platform/code_page.h"
#include "platform/file_names.h"

namespace orv::test {

using platform::ToBytes;
using platform::ToWide;

namespace {

std::int16_t Int16(int number) { return static_cast<std::int16_t>(number); }

}  // namespace

// The component behind all engines is one; a test begins and ends with nothing open.
Driver::Driver() { engine.CloseAll(); }
Driver::~Driver() { engine.CloseAll(); }

int Driver::Error() { return *engine.ErrorCode().Int16(); }

void Driver::New(std::string_view title) {
  std::wstring name = Path();
  std::wstring wide = ToWide(title);
  engine.CmdNewOrvDB(name, wide);
}

void Driver::Fresh(std::string_view title) {
  engine.CloseAll();
  std::filesystem::remove(platform::NativeName(file_));
  New(title);
}

void Driver::AddFields(std::wstring_view steps, int count, int f) {
  std::wstring path = Path(steps);
  std::int16_t number = Int16(count);
  std::int16_t first = Int16(f);
  engine.CmdAddFld(path, number, first);
}

void Driver::DeleteField(std::wstring_view steps, int f) {
  std::wstring path = Path(steps);
  std::int16_t field = Int16(f);
  engine.CmdDelFld(path, field);
}

void Driver::AddRecords(std::wstring_view steps, int count, int row) {
  std::wstring path = Path(steps);
  std::int32_t number = count;
  std::int32_t first = row;
  engine.CmdAddRecord(path, number, first);
}

void Driver::Set(std::wstring_view steps, int r, int f, std::string_view text) {
  std::wstring path = Path(steps);
  std::wstring value = ToWide(text);
  std::int32_t record = r;
  std::int16_t field = Int16(f);
  engine.SetCellValue(value, path, record, field);
}

std::string Driver::Get(std::wstring_view steps, int r, int f) {
  std::wstring path = Path(steps);
  std::int32_t record = r;
  std::int16_t field = Int16(f);
  Boolean isMtx = Boolean::kFalse;
  Boolean frml = Boolean::kFalse;
  return ToBytes(engine.GetCellValue(path, record, field, isMtx, frml));
}

bool Driver::HoldsMatrix(std::wstring_view steps, int r, int f) {
  std::wstring path = Path(steps);
  std::int32_t record = r;
  std::int16_t field = Int16(f);
  Boolean isMtx = Boolean::kFalse;
  Boolean frml = Boolean::kFalse;
  engine.GetCellValue(path, record, field, isMtx, frml);
  return IsTrue(isMtx);
}

void Driver::Put(std::wstring_view steps, int r, int f, std::string_view title) {
  std::wstring path = Path(steps);
  std::wstring name = ToWide(title);
  std::int32_t record = r;
  std::int16_t field = Int16(f);
  engine.PutMatrix(path, record, field, name);
}

std::string Driver::Title(std::wstring_view steps) {
  std::wstring path = Path(steps);
  return ToBytes(engine.GetTitle(path));
}

void Driver::SetTitle(std::wstring_view steps, std::string_view title) {
  std::wstring path = Path(steps);
  std::wstring value = ToWide(title);
  engine.SetTitle(value, path);
}

int Driver::Records(std::wstring_view steps) {
  std::wstring path = Path(steps);
  return engine.Records(path);
}

int Driver::Fields(std::wstring_view steps) {
  std::wstring path = Path(steps);
  return engine.Fields(path);
}

int Driver::Id(std::wstring_view steps, int r, int f) {
  std::wstring path = Path(steps);
  std::int32_t record = r;
  std::int16_t field = Int16(f);
  return engine.GetID(path, record, field);
}

void Driver::ReBit(std::wstring_view steps, int r, int f, int b) {
  std::wstring path = Path(steps);
  std::int32_t record = r;
  std::int16_t field = Int16(f);
  std::int16_t form = Int16(b);
  engine.ReBit(path, record, field, form);
}

void Driver::SetType(std::wstring_view steps, int r, int f, std::string_view prop,
                     std::string_view value) {
  std::wstring path = Path(steps);
  std::int32_t record = r;
  std::int16_t field = Int16(f);
  std::wstring name = ToWide(prop);
  std::wstring text = ToWide(value);
  engine.SetTypeValue(path, record, field, name, text);
}

std::string Driver::Type(std::wstring_view steps, int r, int f, std::string_view prop) {
  std::wstring path = Path(steps);
  std::int32_t record = r;
  std::int16_t field = Int16(f);
  std::wstring name = ToWide(prop);
  Boolean frml = Boolean::kFalse;
  return ToBytes(engine.GetTypeValue(path, record, field, name, frml));
}

int Driver::Kind() {
  std::wstring path = Path();
  return engine.IsORVorDBF(path);
}

void Driver::SetStyle(std::wstring_view steps, int f, int freeSize, int cellSize, bool unique,
                      int dataType) {
  std::wstring path = Path(steps);
  std::int16_t field = Int16(f);
  std::int16_t style = Int16(freeSize);
  std::int16_t size = Int16(cellSize);
  std::int16_t type = Int16(dataType);
  Boolean fixedType = Boolean::kFalse;
  Boolean isUnique = ToBoolean(unique);
  engine.SetFldStyle(path, field, style, size, fixedType, isUnique, type);
}

std::string Driver::Style(std::wstring_view steps, int f) {
  std::wstring path = Path(steps);
  std::int16_t field = Int16(f);
  std::int16_t style = 0;
  std::int16_t size = 0;
  std::int16_t type = 0;
  Boolean fixedType = Boolean::kFalse;
  Boolean unique = Boolean::kFalse;
  engine.GetFldStyle(path, field, style, size, fixedType, unique, type);
  const auto text = [](Boolean flag) { return std::string(IsTrue(flag) ? " true" : " false"); };
  return std::to_string(style) + " " + std::to_string(size) + text(fixedType) + text(unique) + " " +
         std::to_string(type);
}

void Driver::SaveAs(std::wstring_view steps, std::wstring_view target, bool withProperties,
                    int type) {
  std::wstring path = Path(steps);
  std::wstring file = folder_.Name(target);
  Boolean properties = ToBoolean(withProperties);
  std::int16_t fileType = Int16(type);
  engine.SaveMtxAs(path, file, properties, fileType);
}

void Driver::InsertTop() {
  std::wstring path = Path();
  engine.InsFirstLvlMtx(path);
}

void Driver::CloseAll() { engine.CloseAll(); }

}  // namespace orv::test
