// What shall happen to the operations of the file layer while a member works.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <utility>

#include "platform/fault_points.h"
#include "platform/run_time_error.h"

namespace orv::test {

inline constexpr std::size_t kFileOperations =
    static_cast<std::size_t>(platform::FileOperation::kOutputClose) + 1;

/// Whether the operation cannot fail for its caller: it is only left out.
inline bool CannotFail(platform::FileOperation operation) {
  return operation == platform::FileOperation::kTrim ||
         operation == platform::FileOperation::kClose;
}

/// Counts the operations met, and lets one of them, or all from one on, fail. Installed for as long
/// as it lives.
class FaultPlan : public platform::FaultPoints {
 public:
  FaultPlan() : former_(std::exchange(platform::installedFaultPoints, this)) {}
  ~FaultPlan() override { platform::installedFaultPoints = former_; }
  FaultPlan(const FaultPlan&) = delete;
  FaultPlan& operator=(const FaultPlan&) = delete;

  /// Operation `n`, counted from 1 over all kinds, fails; with `andAllAfter` so do those behind it.
  void FailAt(std::size_t n, platform::RunTimeError error, bool andAllAfter) {
    failAt_ = n;
    error_ = error;
    andAllAfter_ = andAllAfter;
  }
  /// Called before operation `n`, instead of anything else.
  void CallAt(std::size_t n, std::function<void()> call) {
    callAt_ = n;
    call_ = std::move(call);
  }

  std::size_t met() const { return met_; }
  std::size_t met(platform::FileOperation kind) const {
    return kinds_[static_cast<std::size_t>(kind)];
  }
  /// Whether a failure was raised, or a trimming left out.
  bool raised() const { return raised_; }
  bool leftOut() const { return leftOut_; }

  bool Before(platform::FileOperation operation) override {
    ++met_;
    ++kinds_[static_cast<std::size_t>(operation)];
    if (met_ == callAt_) call_();
    const bool fails = failAt_ != 0 && (met_ == failAt_ || (andAllAfter_ && met_ > failAt_));
    if (!fails) return true;
    if (CannotFail(operation)) {
      leftOut_ = true;
      return false;
    }
    raised_ = true;
    platform::Raise(error_);
  }

 private:
  platform::FaultPoints* former_;
  std::array<std::size_t, kFileOperations> kinds_{};
  std::size_t met_ = 0;
  std::size_t failAt_ = 0;
  std::size_t callAt_ = 0;
  std::function<void()> call_;
  platform::RunTimeError error_ = platform::RunTimeError::kDeviceIo;
  bool andAllAfter_ = false;
  bool raised_ = false;
  bool leftOut_ = false;
};

}  // namespace orv::test
