// Copying a matrix's field table: its fields, their descriptors, and the record count.
#pragma once

#include <cstdint>
#include <vector>

#include "inspect/rescue_copy.h"
#include "inspect/rescued_structure.h"

namespace orv::inspect {

/// The fields of the source's matrix, which must have a field table: those that are counted and
/// those behind them that have a descriptor. Empty when none can be had or the copy has no room.
std::vector<RescuedField> FindFields(const RescueJob& job, const RescuedMatrix& matrix);

/// The record count. Where it cannot be, or all fields have data behind it, what they have data
/// for: a single field with more is damage to that field.
std::int32_t CountRecords(const RescueJob& job, const RescuedMatrix& matrix,
                          const std::vector<RescuedField>& fields);

/// Gives the copy of the matrix its field table with these fields, whose `to` it sets, and the
/// record count. The fields have no data yet.
void CreateFields(const RescueJob& job, const RescuedMatrix& matrix,
                  std::vector<RescuedField>& fields, std::int32_t records);

}  // namespace orv::inspect
