// The Windows headers, without the macros that would rename our own functions. For the
// *_windows.cpp files of this folder only.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#undef DeleteFile

#include <string>
#include <utility>

#include "platform/mapping.h"

namespace orv::platform {

/// What tells the file apart, from what the operating system says about its handle.
inline FileIdentity IdentityFrom(const BY_HANDLE_FILE_INFORMATION& about) {
  constexpr unsigned kBitsPerWord = 32;
  return {about.dwVolumeSerialNumber,
          std::uint64_t{about.nFileIndexHigh} << kBitsPerWord | about.nFileIndexLow};
}

/// The name as the operating system takes it at any length: absolute, with backslashes and the
/// prefix that lifts the limit of 260 characters. Raises 53 for a name that no file can have.
std::wstring LongName(const std::wstring& path);

/// Owns a handle of the operating system.
class Handle {
 public:
  Handle() = default;
  explicit Handle(HANDLE handle) : handle_(handle) {}
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Handle() {
    if (IsValid()) CloseHandle(handle_);
  }

  bool IsValid() const { return handle_ != INVALID_HANDLE_VALUE && handle_ != nullptr; }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
};

}  // namespace orv::platform
