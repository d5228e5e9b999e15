// Whole files into memory.
#pragma once

#include <string>

namespace orv::cli {

/// The bytes of a file; "-" is standard input. Throws `Failure`.
std::string ReadFile(const std::string& name);

}  // namespace orv::cli
