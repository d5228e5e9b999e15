// Values of the command language.
#pragma once

#include <cstdint>
#include <string>

#include "storage/value_types.h"

namespace orv::command {

/// The type codes that the language adds to those of the cells.
namespace type {
using storage::type::kCurrency;
using storage::type::kDateTime;
using storage::type::kFile;
using storage::type::kImage;
using storage::type::kInteger;
using storage::type::kLogic;
using storage::type::kNumber;
using storage::type::kPath;
using storage::type::kReal;
using storage::type::kString;
using storage::type::kVariant;
inline constexpr std::int16_t kCellReference = 5;
inline constexpr std::int16_t kError = 255;
}  // namespace type

/// A text with its type code. A finished value has no enclosing quotes; an operand that stands
/// inside an expression keeps them. The text of an error value is its message in square brackets.
struct Value {
  std::string text;
  std::int16_t type = type::kVariant;
};

/// Whether a function that demands a number takes the type. Currency is no number in this sense.
inline bool IsNumeric(std::int16_t typeCode) {
  return typeCode >= type::kInteger && typeCode <= type::kReal;
}

}  // namespace orv::command
