// Everything that a host can read of a container file through the engine.
#pragma once

#include <string>
#include <vector>

#include "support/driver.h"

namespace orv::test {

/// One text of a file: a cell, a field's name (record 0), or a title (field 0).
struct CellPlace {
  std::wstring steps;
  int record = 0;
  int field = 0;
  friend bool operator==(const CellPlace&, const CellPlace&) = default;
};

/// The text with what else the engine tells of it.
struct CellReading {
  std::string text;
  bool isMatrix = false;  ///< a path leads into the cell
  int error = 0;
  friend bool operator==(const CellReading&, const CellReading&) = default;
};

/// Every place of a sound file, nested and property matrices included.
std::vector<CellPlace> AllPlaces(Driver& db);
CellReading ReadPlace(Driver& db, const CellPlace& place);
/// Writes the file and reads all the places.
std::vector<CellReading> ReadPlaces(Driver& db, const std::string& bytes,
                                    const std::vector<CellPlace>& places);

}  // namespace orv::test
