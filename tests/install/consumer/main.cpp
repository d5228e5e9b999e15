// The smallest host: makes a table in the file named by its argument and reads a cell back.
#include <string>

#include <orv/engine.h>

int main(int, char** arguments) {
  const std::string name = arguments[1];
  std::wstring path = L"\"" + std::wstring(name.begin(), name.end()) + L"\"", title = L"Towns";
  std::wstring text = L"Tver";
  std::int32_t one = 1, record = 1;
  std::int16_t fields = 1, field = 1;
  orv::Boolean isMatrix{}, formula{};
  orv::Engine engine;
  engine.CmdNewOrvDB(path, title);
  engine.CmdAddFld(path, fields, field);
  engine.CmdAddRecord(path, one, record);
  engine.SetCellValue(text, path, record, field);
  const bool kept = engine.GetCellValue(path, record, field, isMatrix, formula) == L"Tver";
  return kept && engine.ErrorCode() == orv::Value(std::int16_t{0}) ? 0 : 1;
}
