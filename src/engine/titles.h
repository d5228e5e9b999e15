// Titles of matrices.
#pragma once

#include <string>

#include "storage/storage.h"

namespace orv::engine {

/// The matrix's title; empty for a dBASE III table and on error.
std::wstring GetTitle(storage::Storage& storage, const std::wstring& pth);

/// Writes the title. 70 on a dBASE III table, 255 where there is no matrix.
void SetTitle(storage::Storage& storage, const std::wstring& vlu, const std::wstring& pth);

}  // namespace orv::engine
