// A container file with a field of every storage style.
#pragma once

#include <string_view>

#include "support/driver.h"

namespace orv::test {

/// The fields of a styled matrix, by number.
namespace styled {
inline constexpr int kFree = 1;
inline constexpr int kText = 2;        ///< fixed, five characters
inline constexpr int kPacked = 3;      ///< fixed, data type integer, two bytes
inline constexpr int kInt = 4;         ///< fixed, property "type" = "int", four bytes
inline constexpr int kDictionary = 5;  ///< index of one byte
inline constexpr int kFields = 5;
}  // namespace styled

/// Makes the driver's file anew: a root matrix with the fields above, no records and an empty
/// dictionary. Everything is closed afterwards.
void MakeStyledFile(Driver& db);

}  // namespace orv::test
