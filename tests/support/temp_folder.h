// A private folder for a test's files.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace orv::test {

/// A new empty folder; gone with its files when the object dies.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  /// The full name of a file of this folder.
  std::wstring Name(std::wstring_view file) const;

 private:
  std::filesystem::path path_;
};

/// The whole content of a file; empty when there is none.
std::string ReadBytes(const std::wstring& name);
/// Writes a file anew.
void WriteBytes(const std::wstring& name, std::string_view bytes);
/// Cuts or stretches a file as another program would.
void ResizeFile(const std::wstring& name, std::uintmax_t bytes);
bool Exists(const std::wstring& name);

/// A path text's file part: the name in double quotes.
std::wstring Quoted(const std::wstring& name);

}  // namespace orv::test
