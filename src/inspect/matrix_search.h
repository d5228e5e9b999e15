// Finding a matrix by its path in a file that may be damaged.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/file.h"
#include "storage/matrix_path.h"

namespace orv::inspect {

/// Whether a matrix header at `position` would lie inside the file.
bool CanBeMatrix(const platform::File& file, std::int64_t position);

/// The position of the root matrix; 0 when none can stand where the header says.
std::int32_t RootOf(const platform::File& file);

/// The position of the matrix that cell and "#" steps lead to from the root; 0 when they lead to
/// none. Steps into views lead nowhere: a view is no structure of the file.
std::int32_t FindMatrix(platform::File& file, const std::vector<storage::PathStep>& steps);

/// The steps in canonical form: "/[3,1]/#".
std::string StepText(const std::vector<storage::PathStep>& steps);

}  // namespace orv::inspect
