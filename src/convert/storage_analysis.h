// Storage-style analysis: what a field would save as a dictionary.
#pragma once

#include <cstdint>
#include <vector>

#include "convert/distinct_values.h"
#include "dialogs/compress_form.h"
#include "storage/field_reader.h"

namespace orv::convert {

/// The distinct values of a field and where each record's value stands among them.
struct Analysis {
  DistinctValues values;
  std::vector<std::int32_t> numbers;  ///< element r - 1: the number of record r's value
};

/// Reads the first `records` records of the field, all it has, behind the dialog's first step.
/// False when a cancel was confirmed.
bool AnalyseField(dialogs::CompressForm& form, storage::FieldReader& reader, std::int32_t records,
                  Analysis& analysis);

/// The efficiency of a dictionary of `distinct` values for `records` records, in percent. It is
/// coarse because records / distinct is rounded to a whole number first; 0 without records.
std::int32_t Efficiency(std::int32_t records, std::int32_t distinct);

}  // namespace orv::convert
