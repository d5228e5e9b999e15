#include "peers/shapelib_table.h"

#include <array>

namespace orv::bench {

void ShapelibTable::Load(std::int32_t records) {
  constexpr std::array<int, kFields> kWidths = {8, 8, 12, 8, 10, 60, 6, 6};
  table_.reset(DBFCreate(file_.c_str()));
  if (!table_) throw NotMeasured("shapelib: the file cannot be created");
  for (int f = 0; f < kFields; ++f) {
    const std::string name = "F" + std::to_string(f + 1);
    DBFAddField(table_.get(), name.c_str(), FTString, kWidths[static_cast<std::size_t>(f)], 0);
  }
  for (std::int32_t record = 1; record <= records; ++record) {
    for (std::int16_t f = 1; f <= kFields; ++f) WriteCell(record, f, {CellText(record, f), {}});
  }
}

void ShapelibTable::Open() {
  table_.reset(DBFOpen(file_.c_str(), "rb+"));
  if (!table_) throw NotMeasured("shapelib: the file cannot be opened");
}

}  // namespace orv::bench
