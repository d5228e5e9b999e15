// The engine's members with plain arguments, for one container file of a test.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orv/engine.h"

#include "support/temp_folder.h"

namespace orv::test {

/// A host with a folder of its own. Texts are single-byte texts of code page 1251; paths are given
/// by their steps only and lead into `file()`.
class Driver {
 public:
  Driver();
  ~Driver();
  Driver(const Driver&) = delete;
  Driver& operator=(const Driver&) = delete;

  const std::wstring& file() const { return file_; }
  /// Uses another file of the folder from now on.
  void Use(std::wstring_view name) { file_ = folder_.Name(name); }
  const TempFolder& folder() const { return folder_; }
  /// The full path text of these steps.
  std::wstring Path(std::wstring_view steps = {}) const {
    return Quoted(file_) + std::wstring(steps);
  }
  std::string Bytes() const { return ReadBytes(file_); }

  int Error();
  /// CmdNewOrvDB on whatever is there.
  void New(std::string_view title = "Title");
  /// Removes the file and creates it.
  void Fresh(std::string_view title = "Title");
  void AddFields(std::wstring_view steps, int count, int f);
  void DeleteField(std::wstring_view steps, int f);
  void AddRecords(std::wstring_view steps, int count, int row);
  void Set(std::wstring_view steps, int r, int f, std::string_view text);
  std::string Get(std::wstring_view steps, int r, int f);
  bool HoldsMatrix(std::wstring_view steps, int r, int f);
  void Put(std::wstring_view steps, int r, int f, std::string_view title);
  std::string Title(std::wstring_view steps = {});
  void SetTitle(std::wstring_view steps, std::string_view title);
  int Records(std::wstring_view steps = {});
  int Fields(std::wstring_view steps = {});
  int Id(std::wstring_view steps, int r, int f);
  void ReBit(std::wstring_view steps, int r, int f, int b);
  void SetType(std::wstring_view steps, int r, int f, std::string_view prop,
               std::string_view value);
  std::string Type(std::wstring_view steps, int r, int f, std::string_view prop);
  int Kind();
  /// Asks for a storage style; the flag that no conversion uses is left out.
  void SetStyle(std::wstring_view steps, int f, int freeSize, int cellSize = 0, bool unique = false,
                int dataType = 0);
  /// "FreeSize cellsize FixedType Unique DataType" of a field, as "1 5 true false 0".
  std::string Style(std::wstring_view steps, int f);
  /// Exports to a file of the folder: `type` 1 a container, else text.
  void SaveAs(std::wstring_view steps, std::wstring_view target, bool withProperties, int type);
  void InsertTop();
  void CloseAll();

  Engine engine;

 private:
  TempFolder folder_;
  std::wstring file_ = folder_.Name(L"file.orv");
};

}  // namespace orv::test
