// A file in memory, for the bare loops.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

namespace orv::bench {

/// The whole file mapped for reading and writing; positions count from 1.
class FloorMap {
 public:
  /// With `bytes` the file is made anew with that length.
  explicit FloorMap(const std::string& file, std::int64_t bytes = 0);
  ~FloorMap();
  FloorMap(const FloorMap&) = delete;
  FloorMap& operator=(const FloorMap&) = delete;

  char* At(std::int64_t position) const { return base_ + position - 1; }
  template <typename Integer>
  Integer IntegerAt(std::int64_t position) const {
    Integer value;
    std::memcpy(&value, At(position), sizeof value);
    return value;
  }
  std::int32_t Int32At(std::int64_t position) const { return IntegerAt<std::int32_t>(position); }

 private:
  char* base_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace orv::bench
