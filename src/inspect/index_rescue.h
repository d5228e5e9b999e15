// Copying the index of a dictionary field.
#pragma once

#include <cstdint>
#include <optional>

#include "inspect/rescue_copy.h"
#include "inspect/rescued_structure.h"

namespace orv::inspect {

/// Copies the field's index for `records` records and sets the data pointer of its descriptor in
/// the copy. An entry that the file does not have, or that stands for no value of the dictionary,
/// becomes 0, the empty text, and the log is told. Nothing is returned when nothing was copied.
std::optional<PackedField> CopyIndex(const RescueJob& job, const RescuedField& field,
                                     std::int32_t records);

}  // namespace orv::inspect
