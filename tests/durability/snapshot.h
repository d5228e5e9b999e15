// Everything that the members tell of a file, value by value.
#pragma once

#include <map>
#include <string>

#include "support/driver.h"

namespace orv::test {

/// Values by where they stand: "/[3,1] r2f1" is the text of cell (2, 1) of the matrix in cell
/// (3, 1). An error code behind a value belongs to it.
using Snapshot = std::map<std::string, std::string>;

/// Reads the driver's file through the members: matrices, property matrices, titles, counts, names,
/// styles, cell codes and texts. A file that is missing or holds no table has its kind only.
Snapshot TakeSnapshot(Driver& db);

/// How one state of a file stands to the states before and after a call.
struct Comparison {
  /// Values that are neither the old nor the new one, one a line. A value that the call adds may
  /// also be missing, empty or 0; one that it takes away may be there still.
  std::string strange;
  /// Texts of the old state that the call leaves and that are nowhere now, one a line: cells and
  /// names wherever they stand, types and dictionaries aside.
  std::string lost;
  bool isOld = false;
  bool isNew = false;
};
Comparison Compare(const Snapshot& before, const Snapshot& after, const Snapshot& seen);

}  // namespace orv::test
