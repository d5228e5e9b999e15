// A file opened for its bytes, past the engine.
#pragma once

#include <memory>

#include "cli/target.h"
#include "platform/file.h"

namespace orv::cli {

/// Opens the target's file, found without regard to letter case as the engine finds it. Throws
/// `Failure` when it is missing or empty or cannot be opened.
std::unique_ptr<platform::File> OpenBytes(const Target& target);

/// Throws `Failure` when the file was cut short, or could not be read, while it was looked at.
void CheckIntact(const platform::File& file, const Target& target);

/// Creates the target's file, which must not exist. Throws `Failure`.
std::unique_ptr<platform::File> CreateBytes(const Target& target);

}  // namespace orv::cli
