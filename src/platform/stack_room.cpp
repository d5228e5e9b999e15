#include "platform/stack_room.h"

#include <cstdint>
#include <limits>

#ifdef _WIN32
#include <windows.h>
#else
#include <pthread.h>
#endif

namespace orv::platform {
namespace {

struct Bounds {
  std::uintptr_t low = 0;
  std::uintptr_t high = 0;
};

#if defined(_WIN32)
Bounds AskSystem() noexcept {
  ULONG_PTR low = 0;
  ULONG_PTR high = 0;
  GetCurrentThreadStackLimits(&low, &high);
  return {low, high};
}
#elif defined(__linux__)
Bounds AskSystem() noexcept {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return {};
  void* low = nullptr;
  std::size_t size = 0;
  const bool known = pthread_attr_getstack(&attributes, &low, &size) == 0;
  pthread_attr_destroy(&attributes);
  if (!known) return {};
  const auto start = reinterpret_cast<std::uintptr_t>(low);
  return {start, start + size};
}
#else
Bounds AskSystem() noexcept { return {}; }
#endif

}  // namespace

std::size_t StackRoom() noexcept {
  thread_local const Bounds bounds = AskSystem();
  // Not the address of a local: sanitizers keep locals elsewhere.
  const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  if (here <= bounds.low || here > bounds.high) return std::numeric_limits<std::size_t>::max();
  return here - bounds.low;
}

}  // namespace orv::platform
