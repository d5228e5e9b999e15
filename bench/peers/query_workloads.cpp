#include "peers/workloads.h"

namespace orv::bench {

void AddQueryWorkloads(std::vector<Planned>&) {}

}  // namespace orv::bench
