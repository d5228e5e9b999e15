#include <array>
#include <filesystem>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/code_page.h"
#include "platform/fault_points.h"
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

/// Takes one character off the front of a UTF-8 text; nothing for a malformed one.
std::optional<char32_t> TakeUtf8(std::string_view& text) {
  constexpr std::array<char32_t, 4> kLeast = {0, 0x80, 0x800, 0x10000};
  constexpr char32_t kGreatest = 0x10FFFF;
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t tails = lead < 0x80   ? 0
                            : lead < 0xC0 ? 4
                            : lead < 0xE0 ? 1
                            : lead < 0xF0 ? 2
                            : lead < 0xF8 ? 3
                                          : 4;
  if (tails >= text.size() || tails == kLeast.size()) return std::nullopt;
  char32_t c = tails == 0 ? lead : lead & (0x3FU >> tails);
  for (std::size_t i = 1; i <= tails; ++i) {
    const auto tail = static_cast<unsigned char>(text[i]);
    if ((tail & 0xC0) != 0x80) return std::nullopt;
    c = c << 6 | (tail & 0x3F);
  }
  if (c < kLeast[tails] || c > kGreatest) return std::nullopt;
  text.remove_prefix(tails + 1);
  return c;
}

/// The wide form of a name as the operating system has it; nothing for a name that is no UTF-8. The
/// standard library's own conversion depends on the process locale.
std::optional<std::wstring> WideName(const std::string& name) {
  std::wstring wide;
  std::string_view rest = name;
  while (!rest.empty()) {
    const std::optional<char32_t> c = TakeUtf8(rest);
    if (!c) return std::nullopt;
    wide.push_back(static_cast<wchar_t>(*c));
  }
  return wide;
}

/// The entry of `directory` whose name equals `name` but for letter case, or `name`.
std::filesystem::path MatchingEntry(const std::filesystem::path& directory,
                                    const std::filesystem::path& name) {
  const std::optional<std::wstring> asked = WideName(name.string());
  if (!asked) return name;
  const std::wstring wanted = FoldCase(std::wstring_view(*asked));
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator(directory, failure)) {
    // A name that is no UTF-8 cannot be asked for either.
    const std::optional<std::wstring> present = WideName(entry.path().filename().string());
    if (present && FoldCase(std::wstring_view(*present)) == wanted) return entry.path().filename();
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
  PassFaultPoint(FileOperation::kDelete);
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
    return std::filesystem::exists(found) ? WideName(found.string()).value_or(path) : path;
  } catch (const std::filesystem::filesystem_error&) {
    return path;
  }
}

}  // namespace orv::platform
