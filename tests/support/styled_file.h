// A container file with a field of every storage style.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

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

/// Adds records to the styled root matrix, one by one, and fills their cells: the free ones with
/// what `freeText` says of a record, the dictionary's with so many values in turn. Every field gets
/// a name.
void AddStyledRecords(Driver& db, int records, int values,
                      const std::function<std::string(int)>& freeText);

/// Puts matrices into one another: the first into the root's cell (record, field), the next into a
/// cell of the first, and so on. Each has two fields and three records.
void NestMatrices(Driver& db, const std::vector<std::pair<int, int>>& cells);

}  // namespace orv::test
