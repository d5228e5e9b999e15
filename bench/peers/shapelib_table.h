// The table in a dBASE III file, through shapelib's calls.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <shapefil.h>

#include "support/table_data.h"
#include "support/workload.h"

namespace orv::bench {

struct ShapelibClose {
  void operator()(DBFInfo* table) const { DBFClose(table); }
};

class ShapelibTable {
 public:
  explicit ShapelibTable(std::string file) : file_(std::move(file)) {}

  /// Makes and fills the file and leaves it open.
  void Load(std::int32_t records);
  void Open();
  void Close() { table_.reset(); }

  /// Good until the next call.
  std::string_view ReadCell(std::int32_t record, std::int16_t field) {
    const char* text = DBFReadStringAttribute(table_.get(), record - 1, field - 1);
    if (text == nullptr) throw NotMeasured("shapelib: no such cell");
    return text;
  }
  void WriteCell(std::int32_t record, std::int16_t field, const Text& text) {
    if (DBFWriteStringAttribute(table_.get(), record - 1, field - 1, text.bytes.c_str()) == 0) {
      throw NotMeasured("shapelib: the cell cannot be written");
    }
  }

 private:
  std::string file_;
  std::unique_ptr<DBFInfo, ShapelibClose> table_;
};

}  // namespace orv::bench
