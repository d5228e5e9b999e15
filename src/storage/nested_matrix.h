// Creating nested matrices.
#pragma once

#include <cstdint>
#include <string>

#include "storage/storage.h"

namespace orv::storage {

/// The record number that addresses a matrix's own type-table slot (its property matrix).
inline constexpr std::int32_t kTypeTableRecord = -2;

/// Creates a matrix titled `mtxName` in cell (`r`, `f`), or as the property matrix when `r` is -2.
/// An empty `mtxName` receives the text of the cell. The header is appended and the slot repointed
/// last; what the cell held stays unreferenced. 58 for a field that is not free; 70 on a dBASE III
/// table; 255 for no location.
void PutMatrix(Storage& storage, const std::wstring& pth, std::int32_t r, std::int16_t f,
               std::string& mtxName);

}  // namespace orv::storage
