// Every operation of the file layer fails in turn, with every error the platform knows, in every
// member that changes a file.
#include <array>
#include <cstdio>

#include <gtest/gtest.h>

#include "durability/member_fixture.h"
#include "support/tier.h"

namespace orv {
namespace {

using platform::FileOperation;
using platform::RunTimeError;
using test::FaultPlan;
using test::Outcomes;
using test::Snapshot;

constexpr std::array kErrors = {
    RunTimeError::kDiskFull,      RunTimeError::kDeviceIo,     RunTimeError::kPermissionDenied,
    RunTimeError::kTooManyFiles,  RunTimeError::kOutOfMemory,  RunTimeError::kOverflow,
    RunTimeError::kBadFileNumber, RunTimeError::kFileNotFound, RunTimeError::kAlreadyOpen,
    RunTimeError::kPathNotFound,
};
#ifdef _WIN32
constexpr bool kOnWindows = true;  // opening a file is slow there
#else
constexpr bool kOnWindows = false;
#endif
/// The fast tier tries as many of them at each operation, other ones at the next.
constexpr std::size_t kErrorsOfFastTier = kOnWindows ? 1 : 2;
/// It tries every other operation with everything read before and the ones between without, and
/// fewer where there are many.
constexpr std::size_t kManyOperations = 20;

/// What a member makes of a failure: a file that may not be opened counts as locked.
bool IsCodeOf(int code, RunTimeError error) {
  constexpr int kLocked = 75;
  const bool locked = error == RunTimeError::kPermissionDenied && code == kLocked;
  return locked || code == static_cast<int>(error);
}

class FailingOperationsTest : public test::MemberTest {
 protected:
  struct Failure {
    std::size_t operation;
    RunTimeError error;
    bool andAllAfter;
    bool warm;
  };

  std::size_t CountOperations(bool warm) {
    Restore(warm);
    FaultPlan plan;
    EXPECT_EQ(Act(), 0);
    stores_ = plan.met(FileOperation::kStore);
    return plan.met();
  }

  void FailEach(bool warm) {
    const std::size_t operations = CountOperations(warm);
    operations_ += operations;
    const std::size_t errors = test::LongTier() ? kErrors.size() : kErrorsOfFastTier;
    const std::size_t step = test::LongTier() ? 1 : 2 + operations / kManyOperations;
    for (std::size_t n = warm && !test::LongTier() ? 2 : 1; n <= operations; n += step) {
      for (std::size_t i = 0; i < errors; ++i) {
        const RunTimeError error = kErrors[(n * errors + i) % kErrors.size()];
        Try({n, error, false, warm});
        if (HasFailure()) return;
      }
      Try({n, RunTimeError::kDiskFull, true, warm});
      if (HasFailure()) return;
    }
  }

  void Try(const Failure& failure) {
    SCOPED_TRACE("operation " + std::to_string(failure.operation) + ", error " +
                 std::to_string(static_cast<int>(failure.error)) +
                 (failure.andAllAfter ? " from there on" : "") + (failure.warm ? ", warm" : ""));
    Restore(failure.warm);
    int code = 0;
    {
      FaultPlan plan;
      plan.FailAt(failure.operation, failure.error, failure.andAllAfter);
      code = Act();
      EXPECT_TRUE(plan.raised() || plan.leftOut()) << "the operation was not met";
    }
    ++tried_;
    const Snapshot live = Look();
    const Snapshot seen = ExpectRecoverable(outcomes_);
    EXPECT_EQ(live, seen) << "what is remembered differs from what the file holds";
    if (code == 0) {
      ++survived_;
      EXPECT_EQ(seen, after_) << "a call without an error code has done its work";
    } else {
      EXPECT_TRUE(IsCodeOf(code, failure.error)) << "code " << code;
    }
    if (failure.error == RunTimeError::kDiskFull) ExpectContinuation(seen);
  }

  std::size_t operations_ = 0;
  std::size_t stores_ = 0;
  std::size_t tried_ = 0;
  std::size_t survived_ = 0;
  Outcomes outcomes_;
};

TEST_P(FailingOperationsTest, LeaveTheOldStateOrTheNewOne) {
  FailEach(false);
  FailEach(true);
  std::printf("fail | %s | %zu | %zu | %zu | %zu | %zu | %zu | %zu\n", Case().name.c_str(),
              operations_, tried_, survived_, outcomes_.old, outcomes_.whole, outcomes_.between,
              outcomes_.window);
  EXPECT_GT(operations_, 0U);
  EXPECT_GT(tried_, 0U);
  if (test::LongTier()) {
    EXPECT_EQ(tried_, operations_ * (kErrors.size() + 1));
  }
  EXPECT_EQ(outcomes_.Sum(), tried_);
}

INSTANTIATE_TEST_SUITE_P(Member, FailingOperationsTest,
                         testing::Range(std::size_t{0}, test::MemberCases().size()),
                         test::CaseName);

}  // namespace
}  // namespace orv
