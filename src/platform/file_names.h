// File names: existence, identity, deletion and look-up without regard to letter case.
#pragma once

#include <optional>
#include <string>

#include "platform/mapping.h"

namespace orv::platform {

/// The name as the operating system takes it (UTF-8).
std::string NativeName(const std::wstring& path);

/// Whether a file of this name exists, exactly as spelled.
bool FileExists(const std::wstring& path);
/// The identity of the file of this name, or nothing when there is none.
std::optional<FileIdentity> IdentityOf(const std::wstring& path);
/// Deletes the file; raises the run-time error of the failure.
void DeleteFile(const std::wstring& path);
/// The spelling under which the file exists: the name itself, else the first name that differs in
/// letter case only, directory by directory, else the name itself again.
std::wstring ExistingSpelling(const std::wstring& path);

}  // namespace orv::platform
