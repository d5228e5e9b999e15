// Copying a field's descriptor: type, storage style and name.
#pragma once

#include "inspect/rescue_copy.h"
#include "inspect/rescued_structure.h"

namespace orv::inspect {

/// Makes the fresh descriptor at `field.to` of the copy tell what the one at `field.from` of the
/// source does. What no reader knows there stays as it is in a fresh descriptor, and the log is
/// told; the data pointer stays 0.
void CopyDescriptor(const RescueJob& job, const RescuedField& field);

}  // namespace orv::inspect
