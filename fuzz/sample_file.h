// The small container file that the fuzz targets work on.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "orv/engine.h"

#include "platform/code_page.h"

namespace orv::fuzz {

/// A file of six records by three fields in a folder of its own, which becomes the working folder:
/// inputs may name files, and opening a missing one can create it.
class SampleFile {
 public:
  static SampleFile& Instance() {
    static SampleFile file;
    return file;
  }

  Engine& engine() { return engine_; }
  const std::wstring& path() const { return path_; }

  static std::wstring Text(const std::uint8_t* data, std::size_t size) {
    return platform::ToWide(std::string_view(reinterpret_cast<const char*>(data), size));
  }

 private:
  SampleFile() {
    std::string folder = (std::filesystem::temp_directory_path() / "orv-fuzz-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) std::abort();
    std::filesystem::current_path(folder);
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

  static constexpr std::int16_t kFields = 3;
  static constexpr std::int32_t kRecords = 6;

  Engine engine_;
  std::wstring path_ = L"\"sample.orv\"";
};

}  // namespace orv::fuzz
