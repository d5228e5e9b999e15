#include "support/floor_map.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/workload.h"

namespace orv::bench {

FloorMap::FloorMap(const std::string& file, std::int64_t bytes) {
  constexpr int kMode = 0600;
  const int created = bytes > 0 ? O_CREAT | O_TRUNC : 0;
  const int descriptor = open(file.c_str(), O_RDWR | O_CLOEXEC | created, kMode);
  if (descriptor < 0) throw NotMeasured("cannot open " + file);
  struct stat status = {};
  const bool sized = bytes == 0 || posix_fallocate(descriptor, 0, bytes) == 0;
  void* base = MAP_FAILED;
  if (sized && fstat(descriptor, &status) == 0) {
    size_ = static_cast<std::size_t>(status.st_size);
    base = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
  }
  close(descriptor);
  if (base == MAP_FAILED) throw NotMeasured("cannot map " + file);
  base_ = static_cast<char*>(base);
}

FloorMap::~FloorMap() { munmap(base_, size_); }

}  // namespace orv::bench
