// Properties of cell types.
#pragma once

#include <cstdint>
#include <string>

#include "engine/language_services.h"
#include "storage/storage.h"

namespace orv::engine {

/// Record numbers that select a fixed entry of the type table instead of a cell's type.
inline constexpr std::int32_t kTitleEntry = -8;
inline constexpr std::int32_t kMatrixEntry = -9;

/// Stores property `prop` = `vlu` of the type of cell (`r`, `f`); the type table, the type's row
/// and its list are made on demand. A cell of the plain type gets a type of its own: its code
/// changes last. 54 for a path that ends in "#", 70 on a dBASE III table, 255 for no matrix and for
/// a record number that names nothing.
void SetTypeValue(storage::Storage& storage, const std::wstring& pth, std::int32_t r,
                  std::int16_t f, const std::string& prop, const std::string& vlu);

/// The property's value, 4 and the empty text when there is none. With `frml` a value that is a
/// command is run. The property "lenght" of a dBASE III field is its width.
std::string GetTypeValue(storage::Storage& storage, const std::wstring& pth, std::int32_t r,
                         std::int16_t f, const std::string& prop, bool frml,
                         LanguageServices& language);

}  // namespace orv::engine
