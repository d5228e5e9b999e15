#include "platform/fault_points.h"

namespace orv::platform {

bool AskFaultPoints(FileOperation operation) { return installedFaultPoints->Before(operation); }

}  // namespace orv::platform
