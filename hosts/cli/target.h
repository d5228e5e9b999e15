// Which matrix a command works on.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orv::cli {

/// A file and the steps inside it, taken from the command line.
class Target {
 public:
  /// `file` is a plain file name or a full matrix path, which begins with a double quote; `steps`,
  /// empty or beginning with "/", follow it. Both are UTF-8. Throws `BadUsage`.
  Target(std::string_view file, std::string_view steps);

  /// The matrix path: the file name in double quotes, then the steps.
  std::wstring Path() const { return FilePart() + steps_; }
  /// The file name in double quotes.
  std::wstring FilePart() const { return L'"' + file_ + L'"'; }
  const std::wstring& steps() const { return steps_; }
  std::filesystem::path File() const;

 private:
  std::wstring file_;
  std::wstring steps_;
};

/// An argument of the command line as wide text. Throws `BadUsage` when it is not valid UTF-8.
std::wstring WideArgument(std::string_view argument);
std::vector<std::wstring> WideArguments(const std::vector<std::string>& arguments);

/// A file's name as the standard library takes it, and back. Its own conversion from wide text
/// depends on the process locale.
std::filesystem::path NativePath(std::wstring_view name);
std::wstring WideName(const std::filesystem::path& path);

/// The path of the matrix nested in a cell of another one.
std::wstring CellPath(std::wstring_view matrix, std::int32_t record, std::int32_t field);
/// The path of a matrix's property matrix.
std::wstring PropertyPath(std::wstring_view matrix);

}  // namespace orv::cli
