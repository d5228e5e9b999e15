// The process is stopped dead before every single operation of the file layer, in every member that
// changes a file. Stores into a shared map survive the death of the process, so what the next
// process finds is what a kill at that moment leaves.
#include <cstdio>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "durability/member_fixture.h"
#include "support/tier.h"

namespace orv {
namespace {

using platform::FileOperation;
using test::FaultPlan;
using test::Outcomes;
using test::Snapshot;

/// The fast tier leaves some out where there are more than that.
constexpr std::size_t kManyOperations = 50;
constexpr int kStopped = 77;
constexpr int kFinished = 78;

class StoppedProcessTest : public test::MemberTest {
 protected:
  /// How the process ended that works until operation `n`.
  int StatusOfStop(std::size_t n) {
    const pid_t child = fork();
    if (child == 0) {
      FaultPlan plan;
      plan.CallAt(n, [] { _exit(kStopped); });
      Act();
      _exit(kFinished);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }

  void CountOperations() {
    Restore(false);
    FaultPlan plan;
    EXPECT_EQ(Act(), 0);
    db_.CloseAll();
    operations_ = plan.met();
    stores_ = plan.met(FileOperation::kStore);
  }

  std::size_t operations_ = 0;
  std::size_t stores_ = 0;
  Outcomes outcomes_;
};

TEST_P(StoppedProcessTest, LeavesTheOldStateOrTheNewOne) {
  CountOperations();
  std::size_t stops = 0;
  const std::size_t step = test::LongTier() ? 1 : 1 + operations_ / kManyOperations;
  for (std::size_t n = 1; n <= operations_; n += step) {
    SCOPED_TRACE("stopped before operation " + std::to_string(n));
    Restore(false);
    const int status = StatusOfStop(n);
    if (status == kFinished) break;  // closed only after the call: nothing is left to stop
    ASSERT_EQ(status, kStopped);
    ++stops;
    const Snapshot seen = ExpectRecoverable(outcomes_);
    ExpectContinuation(seen);
    if (HasFailure()) return;
  }
  std::printf("stop | %s | %zu | %zu | %zu | %zu | %zu | %zu\n", Case().name.c_str(), stops,
              stores_, outcomes_.old, outcomes_.whole, outcomes_.between, outcomes_.window);
  EXPECT_GT(stops, 0U);
  if (step == 1) {
    EXPECT_GE(stops, stores_) << "every store is a point where the process was stopped";
  }
  EXPECT_EQ(stores_ > 0 || Case().writesNothing, true);
  EXPECT_EQ(outcomes_.Sum(), stops);
}

INSTANTIATE_TEST_SUITE_P(Member, StoppedProcessTest,
                         testing::Range(std::size_t{0}, test::MemberCases().size()),
                         test::CaseName);

}  // namespace
}  // namespace orv
