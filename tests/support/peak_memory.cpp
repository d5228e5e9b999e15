#include "support/peak_memory.h"

#ifdef _WIN32
// clang-format off
#include <windows.h>
#include <psapi.h>
// clang-format on
#else
#include <sys/resource.h>
#endif

namespace orv::test {

#ifdef _WIN32
std::size_t PeakKilobytes() {
  constexpr std::size_t kBytesPerKilobyte = 1024;
  PROCESS_MEMORY_COUNTERS counters = {};
  K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PeakWorkingSetSize / kBytesPerKilobyte;
}
#else
std::size_t PeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::size_t>(usage.ru_maxrss);
}
#endif

}  // namespace orv::test
