// How long the operating system lets this process make a file.
#pragma once

#include <cstdint>

namespace orv::platform {

/// The greatest length of a file that this process may write now. Beyond it POSIX systems do not
/// just refuse but send a signal that ends the process, so whoever makes files longer asks first
/// and treats the limit as a full disk.
std::int64_t FileSizeLimit();

}  // namespace orv::platform
