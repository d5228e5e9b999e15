#include <cerrno>

#include <gtest/gtest.h>

#include "platform/os_error.h"
#include "support/raises.h"

namespace orv::platform {
namespace {

struct Case {
  int osError;
  RunTimeError expected;
};

// Hosts know the numbers on the right; they never change.
TEST(OsErrorTest, EachErrorOfTheSystemIsOneRunTimeError) {
  for (const Case& c : {Case{EACCES, RunTimeError::kPermissionDenied},
                        {EPERM, RunTimeError::kPermissionDenied},
                        {EROFS, RunTimeError::kPermissionDenied},
                        {EISDIR, RunTimeError::kPermissionDenied},
                        {EBUSY, RunTimeError::kPermissionDenied},
                        {ETXTBSY, RunTimeError::kPermissionDenied},
                        {ENOENT, RunTimeError::kFileNotFound},
                        {ENOTDIR, RunTimeError::kPathNotFound},
                        {ELOOP, RunTimeError::kPathNotFound},
                        {ENAMETOOLONG, RunTimeError::kPathNotFound},
                        {EMFILE, RunTimeError::kTooManyFiles},
                        {ENFILE, RunTimeError::kTooManyFiles},
                        {ENOSPC, RunTimeError::kDiskFull},
                        {EDQUOT, RunTimeError::kDiskFull},
                        {ENOMEM, RunTimeError::kOutOfMemory},
                        {EFBIG, RunTimeError::kOverflow},
                        {EOVERFLOW, RunTimeError::kOverflow},
                        {EBADF, RunTimeError::kBadFileNumber},
                        {EEXIST, RunTimeError::kAlreadyOpen},
                        {EIO, RunTimeError::kDeviceIo},
                        {EPIPE, RunTimeError::kDeviceIo}}) {
    EXPECT_EQ(FromOsError(c.osError), c.expected) << c.osError;
    errno = c.osError;
    EXPECT_RAISES(c.expected, RaiseOsError());
  }
}

}  // namespace
}  // namespace orv::platform
