// Counting the heap: this program's operator new and delete are replaced by ones that count.
#pragma once

#include <cstdint>

namespace orv::bench {

/// What is allocated beyond what there was when the watch began, in bytes as the allocator rounds
/// them. The engine allocates through operator new alone; mapped files are not part of it.
class HeapWatch {
 public:
  HeapWatch();
  std::int64_t Now() const;
  /// The most there has been since the latest watch began.
  std::int64_t Most() const;

 private:
  std::int64_t base_;
};

}  // namespace orv::bench
