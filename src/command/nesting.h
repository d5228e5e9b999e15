// The bound on nesting: parentheses, functions, formulas that read formulas.
#pragma once

#include <cstddef>

#include "platform/run_time_error.h"
#include "platform/stack_room.h"

namespace orv::command {

/// The number of evaluations that may be under way inside one another.
inline constexpr std::size_t kMostNested = 1000;
/// What one more evaluation, and the storage calls below it, may need of the stack.
inline constexpr std::size_t kStackReserve = std::size_t{128} * 1024;

/// One level of nesting, held while an evaluation runs. Raises 28 instead of entering a level too
/// deep, so that no text, however nested, overruns the stack.
class NestingLevel {
 public:
  explicit NestingLevel(std::size_t& depth) : depth_(depth) {
    if (depth_ >= kMostNested || platform::StackRoom() < kStackReserve) {
      platform::Raise(platform::RunTimeError::kOutOfStack);
    }
    ++depth_;
  }
  ~NestingLevel() { --depth_; }
  NestingLevel(const NestingLevel&) = delete;
  NestingLevel& operator=(const NestingLevel&) = delete;

 private:
  std::size_t& depth_;
};

}  // namespace orv::command
