#include <algorithm>
#include <limits>

#include <sys/resource.h>

#include "platform/file_limit.h"

namespace orv::platform {

std::int64_t FileSizeLimit() {
  constexpr std::int64_t kNoLimit = std::numeric_limits<std::int64_t>::max();
  rlimit limit = {};
  if (getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return kNoLimit;
  return static_cast<std::int64_t>(std::min<rlim_t>(limit.rlim_cur, rlim_t{kNoLimit}));
}

}  // namespace orv::platform
