// Field styles as people read and type them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/matrix.h"

namespace orv::cli {

/// "free", "fixed, 4 bytes, integer", "dictionary, 1-byte index" and the like.
std::string StyleText(const FieldStyle& style);

/// The name of a data type code, "variant" for 0; the number itself for a code without a name.
std::string DataTypeName(std::int16_t code);
/// The code of a data type name, or nothing.
std::optional<std::int16_t> DataTypeCode(std::string_view name);
/// The style selector that "free", "fixed" or "dictionary" names, or nothing.
std::optional<std::int16_t> StyleSelector(std::string_view name);

}  // namespace orv::cli
