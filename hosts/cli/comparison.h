// Comparing two matrices with everything in them.
#pragma once

#include <cstdint>

#include "cli/matrix.h"

namespace orv::cli {

/// Compares titles, counts, field names and styles and every cell's text and type of two matrices,
/// of the matrices nested in them and of their property matrices. Returns the number of cells
/// compared. Throws `Failure` that names the first difference.
std::int64_t CompareMatrices(Matrix& left, Matrix& right);

}  // namespace orv::cli
