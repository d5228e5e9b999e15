#include <cerrno>

#include "platform/os_error.h"

namespace orv::platform {

RunTimeError FromOsError(int osError) {
  switch (osError) {
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case EBUSY:
    case ETXTBSY:
    case EAGAIN:  // another process holds a lease on the file
      return RunTimeError::kPermissionDenied;
    case ENOENT:
      return RunTimeError::kFileNotFound;
    case ENOTDIR:
    case ELOOP:
    case ENAMETOOLONG:
      return RunTimeError::kPathNotFound;
    case EMFILE:
    case ENFILE:
      return RunTimeError::kTooManyFiles;
    case ENOSPC:
    case EDQUOT:
      return RunTimeError::kDiskFull;
    case ENOMEM:
      return RunTimeError::kOutOfMemory;
    case EFBIG:
    case EOVERFLOW:
      return RunTimeError::kOverflow;
    case EBADF:
      return RunTimeError::kBadFileNumber;
    case EEXIST:
      return RunTimeError::kAlreadyOpen;
    default:
      return RunTimeError::kDeviceIo;
  }
}

void RaiseOsError() { Raise(FromOsError(errno)); }

}  // namespace orv::platform
