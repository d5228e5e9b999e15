// A disk of a fixed size that tests can fill.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orv::test {

/// A file system in memory, mounted where only this process sees it; temporary folders made while
/// it is there lie on it. Only a privileged process can have one.
class SmallDisk {
 public:
  static constexpr std::uint64_t kBytes = std::uint64_t{4} << 20;

  SmallDisk();
  ~SmallDisk();
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  bool IsMounted() const { return mounted_; }
  static std::uint64_t BlockBytes();
  /// Takes up everything but `blocks` blocks; false when there are fewer than that.
  bool LeaveFree(std::uint64_t blocks);
  /// Gives back what was taken up.
  void Release();

 private:
  std::string root_;
  std::optional<std::string> formerTemp_;
  bool mounted_ = false;
};

}  // namespace orv::test
