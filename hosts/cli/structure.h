// Building files and fields, shared by the commands that create something.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/matrix.h"
#include "cli/target.h"

namespace orv::cli {

/// Deletes the file that is about to be replaced, if it is there; never a folder.
void RemoveForReplacement(const std::filesystem::path& file);

/// Creates a container file with one matrix. An existing file is replaced when `replace` is set;
/// otherwise the engine asks. Throws `Failure`.
void CreateFile(const Target& target, const std::wstring& title, bool replace);

/// Adds fields with these names so that the first gets number `at`.
void AddNamedFields(Matrix& matrix, const std::vector<std::wstring>& names, std::int16_t at);

/// Where new fields may go: 1 to the field count plus 1, but not the last field, which the engine
/// would reset instead of moving it. 0 means behind the last one. Throws `BadUsage`.
std::int16_t FieldInsertPosition(Matrix& matrix, std::int32_t asked);

}  // namespace orv::cli
