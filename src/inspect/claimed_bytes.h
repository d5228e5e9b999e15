// Which bytes of a file belong to a structure that has been met.
#pragma once

#include <cstdint>
#include <map>

namespace orv::inspect {

/// A set of ranges. Ranges that touch become one, so that it stays small in a file without holes.
class ClaimedBytes {
 public:
  /// Takes the bytes of the range, none of which may be taken yet. Otherwise takes nothing and
  /// returns the first position of the range that is taken; 0 after success and for no bytes.
  std::int64_t Claim(std::int64_t position, std::int64_t count);

  /// How many bytes are taken.
  std::int64_t count() const { return count_; }

 private:
  std::map<std::int64_t, std::int64_t> ends_;  ///< by beginning: the position behind the range
  std::int64_t count_ = 0;
};

}  // namespace orv::inspect
