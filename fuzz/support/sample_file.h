// The small container file that the text targets work on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orv/engine.h"

#include "fuzz/support/confinement.h"
#include "platform/code_page.h"
#include "support/temp_folder.h"

namespace orv::fuzz {

/// The text that an input stands for.
inline std::wstring Text(const std::uint8_t* data, std::size_t size) {
  return platform::ToWide(std::string_view(reinterpret_cast<const char*>(data), size));
}

/// A file of six records by three fields in a folder of its own, in which all files stay that
/// inputs name: opening a missing one can create it.
class SampleFile {
 public:
  static SampleFile& Instance() {
    static SampleFile file;
    return file;
  }

  Engine& engine() { return engine_; }
  const std::wstring& path() const { return path_; }

  /// Ends an input: closes all files, deletes those that it made, restores this one and has
  /// another path take the place of the one resolved last, which closing does not forget.
  void Finish() {
    engine_.CloseAll();
    Clear(folder_.path());
    test::WriteBytes(kName, bytes_);
    test::WriteBytes(kOtherName, bytes_);
    std::wstring other = test::Quoted(kOtherName);
    engine_.Records(other);
    engine_.CloseAll();
  }

 private:
  SampleFile() {
    ConfineTo(folder_.path());
    std::wstring title = L"Sample";
    engine_.CmdNewOrvDB(path_, title);
    AddGrid(path_);
    constexpr const wchar_t* kTexts[] = {L"1", L"a\"b", L"=1+2;", L"Ёж", L"2.5", L""};
    for (std::int32_t r = 1; r <= kRecords; ++r) {
      for (std::int16_t f = 1; f <= kFields; ++f) Set(path_, r, f, kTexts[(r + f) % kRecords]);
    }
    for (std::int16_t f = 1; f <= kFields; ++f) Set(path_, 0, f, L"Name" + std::to_wstring(f));
    std::wstring nested = L"Nested";
    std::int32_t record = 2;
    std::int16_t field = 2;
    engine_.PutMatrix(path_, record, field, nested);
    AddGrid(path_ + L"/[2,2]");
    Property(L"type", L"int");
    Property(L"comp", L"=cell(rec,1)+1;");
    engine_.CloseAll();
    bytes_ = test::ReadBytes(kName);
  }

  void AddGrid(std::wstring path) {
    std::int16_t fields = kFields;
    std::int16_t field = 1;
    engine_.CmdAddFld(path, fields, field);
    std::int32_t records = kRecords;
    std::int32_t record = 1;
    engine_.CmdAddRecord(path, records, record);
  }

  void Set(std::wstring path, std::int32_t record, std::int16_t field, std::wstring text) {
    engine_.SetCellValue(text, path, record, field);
  }

  void Property(std::wstring name, std::wstring value) {
    std::int32_t record = 3;
    std::int16_t field = 3;
    engine_.SetTypeValue(path_, record, field, name, value);
  }

  static constexpr const wchar_t* kName = L"sample.orv";
  static constexpr const wchar_t* kOtherName = L"other.orv";
  static constexpr std::int16_t kFields = 3;
  static constexpr std::int32_t kRecords = 6;

  test::TempFolder folder_;
  Engine engine_;
  std::wstring path_ = test::Quoted(kName);
  std::string bytes_;
};

}  // namespace orv::fuzz
