// A rich container file, and random damage to it.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "support/container_bytes.h"

namespace orv::test {

/// Nested matrices, every style, properties, a dictionary, long texts, chains of many blocks.
std::string RichFile();

/// Makes damaged copies of a file: bits, bytes, pointers and counts changed in one to three places,
/// one copy in five cut as well.
class Damage {
 public:
  /// The file must outlive the object.
  Damage(const ContainerBytes& whole, unsigned seed);

  std::string Next();

 private:
  std::uint32_t Below(std::uint32_t end) { return static_cast<std::uint32_t>(random_()) % end; }
  void Hurt(ContainerBytes& file);
  std::int64_t WildValue(std::int64_t at, std::uint32_t size);

  const ContainerBytes& whole_;
  std::vector<std::int64_t> pointers_;  ///< what looks like a pointer or a count
  std::mt19937 random_;
};

}  // namespace orv::test
