// Writing a matrix into a file of its own.
#pragma once

#include <string>

#include "cli/matrix.h"
#include "cli/session.h"

namespace orv::cli {

enum class SaveKind { kText, kContainer, kContainerWithProperties };

/// Exports the matrix to `file` through the session that is installed. An existing file is replaced
/// when `replace` is set; otherwise the engine asks. Throws `Failure` when the export failed, was
/// cancelled or refused.
void SaveMatrix(Matrix& matrix, const std::wstring& file, SaveKind kind, bool replace,
                const ConsoleSession& session);

}  // namespace orv::cli
