#include "all_cells.h"

#include <cstdint>

#include "platform/code_page.h"

namespace orv::test {
namespace {

constexpr int kNoMatrix = 255;

/// The path of the matrix in the cell.
std::wstring CellSteps(const CellPlace& place) {
  return place.steps + L"/[" + std::to_wstring(place.record) + L"," + std::to_wstring(place.field) +
         L"]";
}

void Collect(Driver& db, const std::wstring& steps, std::vector<CellPlace>& places) {
  places.push_back({steps, 0, 0});
  const int records = db.Records(steps);
  const int fields = db.Fields(steps);
  for (int f = 1; f <= fields; ++f) {
    for (int r = 0; r <= records; ++r) {
      places.push_back({steps, r, f});
      if (r == 0 || !db.HoldsMatrix(steps, r, f)) continue;
      Collect(db, CellSteps(places.back()), places);
    }
  }
  if (!steps.ends_with(L"/#") && db.Records(steps + L"/#") >= 0) {
    Collect(db, steps + L"/#", places);
  }
}

}  // namespace

std::vector<CellPlace> AllPlaces(Driver& db) {
  std::vector<CellPlace> places;
  Collect(db, L"", places);
  return places;
}

CellReading ReadPlace(Driver& db, const CellPlace& place) {
  CellReading reading;
  if (place.field == 0) {
    reading.text = db.Title(place.steps);
    // Where there is no matrix the title is empty, without an error.
    if (reading.text.empty() && db.Fields(place.steps) < 0) reading.error = kNoMatrix;
    return reading;
  }
  std::wstring path = db.Path(place.steps);
  std::int32_t record = place.record;
  auto field = static_cast<std::int16_t>(place.field);
  Boolean isMatrix = Boolean::kFalse;
  Boolean formula = Boolean::kFalse;
  reading.text = platform::ToBytes(db.engine.GetCellValue(path, record, field, isMatrix, formula));
  reading.error = db.Error();
  // A damaged code can claim a matrix where no path leads to one.
  reading.isMatrix = IsTrue(isMatrix) && record > 0 && db.Fields(CellSteps(place)) >= 0;
  return reading;
}

std::vector<CellReading> ReadPlaces(Driver& db, const std::string& bytes,
                                    const std::vector<CellPlace>& places) {
  db.CloseAll();
  WriteBytes(db.file(), bytes);
  std::vector<CellReading> readings;
  readings.reserve(places.size());
  for (const CellPlace& place : places) readings.push_back(ReadPlace(db, place));
  db.CloseAll();
  return readings;
}

}  // namespace orv::test
