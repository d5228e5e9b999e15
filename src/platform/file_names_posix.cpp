#include <filesystem>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/code_page.h"
#include "platform/file_names.h"
#include "platform/os_error.h"

namespace orv::platform {
namespace {

void AppendUtf8(std::string& out, char32_t c) {
  const auto tail = [&](int shift) {
    out.push_back(static_cast<char>(0x80 | ((c >> shift) & 0x3F)));
  };
  if (c < 0x80) {
    out.push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (c >> 6)));
    tail(0);
  } else if (c < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (c >> 12)));
    tail(6);
    tail(0);
  } else {
    out.push_back(static_cast<char>(0xF0 | (c >> 18)));
    tail(12);
    tail(6);
    tail(0);
  }
}

std::wstring Folded(std::wstring text) {
  for (wchar_t& c : text) c = FoldCase(c);
  return text;
}

/// The entry of `directory` whose name equals `name` but for letter case, or `name`.
std::filesystem::path MatchingEntry(const std::filesystem::path& directory,
                                    const std::filesystem::path& name) {
  const std::wstring wanted = Folded(name.wstring());
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator(directory, failure)) {
    try {
      if (Folded(entry.path().filename().wstring()) == wanted) return entry.path().filename();
    } catch (const std::exception&) {
      continue;  // a name that is no UTF-8 cannot be asked for either
    }
  }
  return name;
}

}  // namespace

std::string NativeName(const std::wstring& path) {
  std::string name;
  name.reserve(path.size());
  for (const wchar_t c : path) {
    if (c == L'\0') Raise(RunTimeError::kFileNotFound);
    AppendUtf8(name, static_cast<char32_t>(c));
  }
  return name;
}

bool FileExists(const std::wstring& path) { return access(NativeName(path).c_str(), F_OK) == 0; }

std::optional<FileIdentity> IdentityOf(const std::wstring& path) {
  struct stat status = {};
  if (stat(NativeName(path).c_str(), &status) != 0) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino};
}

void DeleteFile(const std::wstring& path) {
  if (unlink(NativeName(path).c_str()) != 0) RaiseOsError();
}

std::wstring ExistingSpelling(const std::wstring& path) {
  if (FileExists(path)) return path;
  try {
    const std::filesystem::path asked = NativeName(path);
    std::filesystem::path found;
    for (const auto& part : asked) {
      const auto next = found / part;
      found = std::filesystem::exists(next)
                  ? next
                  : found / MatchingEntry(found.empty() ? "." : found, part);
    }
    return std::filesystem::exists(found) ? found.wstring() : path;
  } catch (const std::filesystem::filesystem_error&) {
    return path;
  }
}

}  // namespace orv::platform
