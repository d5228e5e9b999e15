// Writing the records of a matrix as a table or as data for other programs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "cli/matrix.h"

namespace orv::cli {

/// Which records and fields are written, and how their texts are read.
struct RecordSelection {
  std::int32_t first = 1;
  std::int32_t last = 0;
  std::vector<std::int16_t> fields;
  bool formulas = false;  ///< the formulas of the cells' types are evaluated
};

enum class RecordFormat { kTable, kTsv, kCsv, kJson };

/// How the records are laid out.
struct RecordLayout {
  RecordFormat format = RecordFormat::kTable;
  bool header = true;            ///< the field names come first (table, tsv, csv)
  std::size_t cellColumns = 40;  ///< longest cell of a table; 0 sets no limit
};

/// Writes the selected records as UTF-8. A cell that holds a matrix shows its title: in brackets in
/// a table, as {"matrix": title} in JSON. Throws `Failure`.
void WriteRecords(Matrix& matrix, const RecordSelection& selection, const RecordLayout& layout,
                  std::ostream& out);

}  // namespace orv::cli
