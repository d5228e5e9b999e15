#include "cli/target.h"

#include "cli/failure.h"
#include "cli/utf8.h"

namespace orv::cli {

std::wstring WideArgument(std::string_view argument) {
  std::optional<std::wstring> text = FromUtf8(argument);
  if (!text) throw BadUsage("an argument is not valid UTF-8");
  return *std::move(text);
}

std::vector<std::wstring> WideArguments(const std::vector<std::string>& arguments) {
  std::vector<std::wstring> texts;
  texts.reserve(arguments.size());
  for (const std::string& argument : arguments) texts.push_back(WideArgument(argument));
  return texts;
}

Target::Target(std::string_view file, std::string_view steps)
    : file_(WideArgument(file)), steps_(WideArgument(steps)) {
  if (!steps_.empty() && steps_.front() != L'/') {
    throw BadUsage(R"(steps begin with "/": ")" + std::string(steps) + '"');
  }
  if (file_.starts_with(L'"')) {
    const std::size_t end = file_.find(L'"', 1);
    if (end == std::wstring::npos) {
      throw BadUsage("a matrix path needs a second double quote: " + std::string(file));
    }
    steps_.insert(0, file_, end + 1);
    file_ = file_.substr(1, end - 1);
  }
  if (file_.empty()) throw BadUsage("the file name is empty");
  if (file_.find(L'"') != std::wstring::npos) {
    throw BadUsage("a file name cannot hold a double quote: " + std::string(file));
  }
}

std::filesystem::path Target::File() const { return NativePath(file_); }

std::filesystem::path NativePath(std::wstring_view name) {
  const std::string bytes = ToUtf8(name);
  return {std::u8string(bytes.begin(), bytes.end())};
}

std::wstring WideName(const std::filesystem::path& path) {
  const std::u8string bytes = path.u8string();
  const std::optional<std::wstring> name = FromUtf8(std::string(bytes.begin(), bytes.end()));
  if (!name) throw Failure("a file name is not valid UTF-8");
  return *name;
}

std::wstring CellPath(std::wstring_view matrix, std::int32_t record, std::int32_t field) {
  return std::wstring(matrix) + L"/[" + std::to_wstring(record) + L"," + std::to_wstring(field) +
         L"]";
}

std::wstring PropertyPath(std::wstring_view matrix) { return std::wstring(matrix) + L"/#"; }

}  // namespace orv::cli
