// The matrices of a rescue, from the root to the nested ones.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "inspect/rescue_copy.h"
#include "inspect/rescued_structure.h"

namespace orv::inspect {

/// Gives each matrix its header and title in the copy when it is met, and lets it wait there for
/// its fields: so a matrix in a matrix takes memory, but no stack.
class MatrixQueue {
 public:
  explicit MatrixQueue(const RescueJob& job) : job_(job) {}

  /// Begins the copy, an empty file, with the matrix at `position` of the source as its root.
  void EnterRoot(std::int32_t position);
  /// Appends the matrix at `position` of the source, for which there is no obstacle, and returns
  /// its position in the copy; 0 when the copy has no room. `step` leads to it from its parent.
  std::int32_t Enter(std::int32_t position, const RescuedMatrix& parent, const std::string& step);
  /// Why what stands at `position` cannot be copied as a matrix of `parent`; nothing when it can.
  std::optional<std::string> Obstacle(std::int32_t position, const RescuedMatrix& parent) const;

  /// The matrix that waits longest, which then waits no longer; nullptr when none is left. It lives
  /// as long as the queue.
  const RescuedMatrix* Next() { return next_ < matrices_.size() ? &matrices_[next_++] : nullptr; }

 private:
  std::string TitleOf(std::int32_t matrix, const std::string& path);
  std::int16_t CodeOf(std::int32_t matrix) const;

  RescueJob job_;
  std::deque<RescuedMatrix> matrices_;  ///< in the order of copying; references stay good
  std::size_t next_ = 0;
};

}  // namespace orv::inspect
