// The operating system's errors as run-time errors.
#pragma once

#include "platform/run_time_error.h"

namespace orv::platform {

/// The run-time error that stands for an operating-system error number.
RunTimeError FromOsError(int osError);
/// Raises the run-time error of the last failed operating-system call.
[[noreturn]] void RaiseOsError();

}  // namespace orv::platform
