// An integer as the bytes that a file keeps of it.
#pragma once

#include <cstdint>
#include <string>

#include "platform/file.h"

namespace orv::storage {

/// The four bytes of the integer, lowest first, written to the scratch file and read back from
/// there. Number 255 serves the scratch file and is closed afterwards. Structures that are written
/// in one piece use `AppendInteger`, which touches no file.
std::string IntToBytes(std::int32_t value, platform::NumberedFiles& files);

}  // namespace orv::storage
