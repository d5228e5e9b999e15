#include "platform/fault_points.h"
#include "platform/file_names.h"
#include "platform/os_error.h"
#include "platform/windows_api.h"

namespace orv::platform {
namespace {

constexpr std::wstring_view kLongPrefix = L"\\\\?\\";
constexpr std::wstring_view kLongNetworkPrefix = L"\\\\?\\UNC\\";
constexpr std::wstring_view kDevicePrefix = L"\\\\.\\";
constexpr std::wstring_view kNetworkPrefix = L"\\\\";

std::wstring FullName(const std::wstring& path) {
  const DWORD room = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  if (room == 0) RaiseOsError();
  std::wstring full(room, L'\0');
  full.resize(GetFullPathNameW(path.c_str(), room, full.data(), nullptr));
  if (full.empty()) RaiseOsError();
  return full;
}

// Asks for no access at all, so that a file which another program has locked can be told apart too.
Handle OpenForQuestions(const std::wstring& path) {
  return Handle(CreateFileW(LongName(path).c_str(), 0,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

}  // namespace

std::wstring LongName(const std::wstring& path) {
  if (path.find(L'\0') != std::wstring::npos) Raise(RunTimeError::kFileNotFound);
  if (path.starts_with(kLongPrefix)) return path;
  const std::wstring full = FullName(path);
  if (full.starts_with(kDevicePrefix)) return full;
  if (full.starts_with(kNetworkPrefix)) {
    return std::wstring(kLongNetworkPrefix) + full.substr(kNetworkPrefix.size());
  }
  return std::wstring(kLongPrefix) + full;
}

std::string NativeName(const std::wstring& path) {
  if (path.find(L'\0') != std::wstring::npos) Raise(RunTimeError::kFileNotFound);
  if (path.empty()) return {};
  const int length = static_cast<int>(path.size());
  const int room =
      WideCharToMultiByte(CP_UTF8, 0, path.data(), length, nullptr, 0, nullptr, nullptr);
  std::string name(static_cast<std::size_t>(room), '\0');
  WideCharToMultiByte(CP_UTF8, 0, path.data(), length, name.data(), room, nullptr, nullptr);
  return name;
}

bool FileExists(const std::wstring& path) {
  if (path.empty()) return false;
  return GetFileAttributesW(LongName(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::optional<FileIdentity> IdentityOf(const std::wstring& path) {
  if (path.empty()) return std::nullopt;
  const Handle file = OpenForQuestions(path);
  BY_HANDLE_FILE_INFORMATION about = {};
  if (!file.IsValid() || !GetFileInformationByHandle(file.get(), &about)) return std::nullopt;
  return IdentityFrom(about);
}

void DeleteFile(const std::wstring& path) {
  PassFaultPoint(FileOperation::kDelete);
  if (!DeleteFileW(LongName(path).c_str())) RaiseOsError();
}

// The file systems of Windows ignore letter case themselves.
std::wstring ExistingSpelling(const std::wstring& path) { return path; }

}  // namespace orv::platform
