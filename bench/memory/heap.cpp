#include "memory/heap.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include <malloc.h>

namespace orv::bench {
namespace {

// The engine is single-threaded, and so is this program.
std::int64_t live = 0;
std::int64_t most = 0;

void* Counted(void* block) {
  if (block == nullptr) throw std::bad_alloc();
  live += static_cast<std::int64_t>(malloc_usable_size(block));
  most = std::max(most, live);
  return block;
}

void Free(void* block) {
  live -= static_cast<std::int64_t>(malloc_usable_size(block));
  std::free(block);
}

}  // namespace

HeapWatch::HeapWatch() : base_(live) { most = live; }

std::int64_t HeapWatch::Now() const { return live - base_; }

std::int64_t HeapWatch::Most() const { return most - base_; }

}  // namespace orv::bench

void* operator new(std::size_t bytes) { return orv::bench::Counted(std::malloc(bytes)); }

void* operator new(std::size_t bytes, std::align_val_t alignment) {
  const auto step = static_cast<std::size_t>(alignment);
  return orv::bench::Counted(std::aligned_alloc(step, (bytes + step - 1) / step * step));
}

void operator delete(void* block) noexcept { orv::bench::Free(block); }

void operator delete(void* block, std::size_t) noexcept { orv::bench::Free(block); }

void operator delete(void* block, std::align_val_t) noexcept { orv::bench::Free(block); }

void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
  orv::bench::Free(block);
}
