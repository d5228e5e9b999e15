#include "platform/os_error.h"
#include "platform/windows_api.h"

namespace orv::platform {

RunTimeError FromOsError(int osError) {
  switch (osError) {
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_DELETE_PENDING:
      return RunTimeError::kPermissionDenied;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_INVALID_NAME:
      return RunTimeError::kFileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_PATHNAME:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_INVALID_DRIVE:
    case ERROR_DIRECTORY:
    case ERROR_FILENAME_EXCED_RANGE:
      return RunTimeError::kPathNotFound;
    case ERROR_TOO_MANY_OPEN_FILES:
      return RunTimeError::kTooManyFiles;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return RunTimeError::kDiskFull;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
    case ERROR_COMMITMENT_LIMIT:
      return RunTimeError::kOutOfMemory;
    case ERROR_FILE_TOO_LARGE:
      return RunTimeError::kOverflow;
    case ERROR_INVALID_HANDLE:
      return RunTimeError::kBadFileNumber;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return RunTimeError::kAlreadyOpen;
    default:
      return RunTimeError::kDeviceIo;
  }
}

void RaiseOsError() { Raise(FromOsError(static_cast<int>(GetLastError()))); }

}  // namespace orv::platform
