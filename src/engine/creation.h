// Creating container files and top-level matrices.
#pragma once

#include <string>

#include "storage/storage.h"

namespace orv::engine {

/// Creates container file `file` (with or without double quotes) with one matrix titled `mtxName`.
/// An existing file that is not empty is replaced only when the user agrees; otherwise 51, and file
/// number 255 stays open on it.
void CmdNewOrvDB(storage::Storage& storage, const std::wstring& file, const std::wstring& mtxName);

/// Puts a new top-level matrix titled "First" above the present one, which becomes the matrix
/// nested in its cell (1, 1). 10 when the path holds no double quote behind its first character.
void InsFirstLvlMtx(storage::Storage& storage, const std::wstring& pth);

}  // namespace orv::engine
