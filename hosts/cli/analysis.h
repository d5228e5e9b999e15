// How much room a field's values take, now and as a dictionary.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "cli/matrix.h"

namespace orv::cli {

/// The values of one field and the bytes that storing them takes.
struct FieldAnalysis {
  std::int64_t distinct = 0;         ///< different texts, the empty one included
  std::int64_t bytes = 0;            ///< in the field's present style
  std::int64_t dictionaryBytes = 0;  ///< as a dictionary: index, values and counts
};

/// Reads every cell of the field. Throws `Failure`.
FieldAnalysis AnalyseField(Matrix& matrix, std::int16_t field);

/// Writes a line for each field: style, distinct values, bytes now and as a dictionary, the share
/// saved.
void WriteAnalysis(Matrix& matrix, std::ostream& out);

}  // namespace orv::cli
