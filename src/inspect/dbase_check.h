// Inspecting dBASE III tables.
#pragma once

#include "inspect/inspection.h"
#include "platform/file.h"

namespace orv::inspect {

/// Checks header, field descriptors, record size, deletion flags and the file's size against the
/// record count. Other programs' versions of the format pass: what stands behind the fields'
/// terminator or the last record is theirs.
void InspectDbase(const platform::File& file, Inspection& inspection);

}  // namespace orv::inspect
