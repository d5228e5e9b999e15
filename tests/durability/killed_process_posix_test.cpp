// A process that works at full speed is killed at any moment. Whatever call had returned by then
// has lasted; the file opens and its structures are sound.
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <new>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "durability/workload.h"
#include "support/structure_walk.h"
#include "support/styled_file.h"
#include "support/tier.h"

namespace orv {
namespace {

using test::Workload;
using test::WorkloadCall;
using test::WorkloadTable;
using Kind = WorkloadCall::Kind;

constexpr int kCallFailed = 9;

/// What the working process reports; it lies in memory that both processes share.
struct Report {
  std::atomic<std::size_t> begun = 0;
  std::atomic<std::size_t> returned = 0;
  std::atomic<int> code = 0;
};

/// A text whose beginning is the new one's and whose rest is the old one's: texts of several pieces
/// are rewritten piece by piece.
bool IsTorn(const std::string& was, const std::string& becomes, const std::string& is) {
  const auto prefix = static_cast<std::size_t>(
      std::mismatch(is.begin(), is.end(), becomes.begin(), becomes.end()).first - is.begin());
  for (std::size_t border = 0; border <= std::min(prefix, was.size()); ++border) {
    if (is.compare(border, std::string::npos, was, border, std::string::npos) == 0) return true;
  }
  return false;
}

class KilledProcessTest : public testing::Test {
 protected:
  void SetUp() override {
    void* shared =
        mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(shared, MAP_FAILED);
    report_ = new (shared) Report;
  }
  void TearDown() override { munmap(report_, sizeof(Report)); }

  void StartAnew() {
    Workload::MakeFile(db_);
    table_ = {};
    style_ = 0;
    rounds_ = 0;
    tornCell_.clear();
  }

  /// Works until it is killed.
  [[noreturn]] void Work(unsigned seed) {
    Workload workload(seed, table_, style_);
    for (;;) {
      const WorkloadCall call = workload.Next();
      report_->begun.fetch_add(1);
      workload.Call(call, db_);
      report_->code = db_.Error();
      if (report_->code != 0) _exit(kCallFailed);
      report_->returned.fetch_add(1);
      workload.Apply(call);
    }
  }

  void KillOnce(unsigned seed, unsigned microseconds) {
    report_->begun = 0;
    report_->returned = 0;
    const pid_t child = fork();
    if (child == 0) Work(seed);
    while (report_->begun == 0) sched_yield();
    Sleep(microseconds);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "a call failed with " << report_->code;
    calls_ += report_->returned;
    Verify(seed);
  }

  static void Sleep(unsigned microseconds) {
    constexpr long kNanoseconds = 1000;
    timespec rest = {0, static_cast<long>(microseconds) * kNanoseconds};
    while (nanosleep(&rest, &rest) != 0 && errno == EINTR) continue;
  }

  /// Compares the file with the model after every call that had returned, and with what the call
  /// that had not may have done.
  void Verify(unsigned seed) {
    Workload workload(seed, table_, style_);
    for (std::size_t i = 0; i < report_->returned; ++i) workload.Apply(workload.Next());
    const WorkloadTable before = workload.table();
    const int style = workload.style();
    const WorkloadCall call = workload.Next();
    workload.Apply(call);
    const bool wasWorking = report_->begun > report_->returned;
    interrupted_ += wasWorking ? 1 : 0;
    SCOPED_TRACE("seed " + std::to_string(seed) + ", call " + std::to_string(report_->begun) +
                 " of kind " + std::to_string(static_cast<int>(call.kind)));

    const WorkloadTable seen = Read();
    WorkloadTable finished = before;
    bool inMoves = false;
    if (seen != before) {
      ++changed_;
      finished = workload.table();
      inMoves = call.kind == Kind::kInsert && seen != finished;
    }
    if (inMoves) {
      ++moving_;
      ExpectMoving(before, call.r, seen);
    } else if (seen != finished) {
      ExpectTorn(before, call, seen);
    }
    ExpectSound(inMoves);
    if (HasFailure()) return;
    table_ = seen;
    // Whether a conversion was finished only the field tells.
    style_ = call.kind == Kind::kConvert && IsConverted(workload) ? workload.style() : style;
    if (inMoves || !tornCell_.empty() || ++rounds_ == kRoundsOfAFile) StartAnew();
  }

  WorkloadTable Read() {
    db_.CloseAll();
    WorkloadTable table;
    const int records = db_.Records();
    EXPECT_EQ(db_.Error(), 0);
    for (int r = 1; r <= records; ++r) {
      std::vector<std::string>& record = table.emplace_back();
      for (int f = 1; f <= Workload::kFields; ++f) record.push_back(db_.Get(L"", r, f));
      EXPECT_EQ(db_.Error(), 0);
    }
    return table;
  }

  /// The styles are free, fixed, dictionary, fixed.
  bool IsConverted(const Workload& workload) {
    constexpr const char* kFreeSizes[] = {"0", "1", "11", "1"};
    const std::string style = db_.Style(L"", Workload::kFields);
    return style.substr(0, style.find(' ')) == kFreeSizes[workload.style()];
  }

  void ExpectTorn(const WorkloadTable& before, const WorkloadCall& call,
                  const WorkloadTable& seen) {
    ++torn_;
    ASSERT_EQ(call.kind, Kind::kSet);
    const auto r = static_cast<std::size_t>(call.r - 1);
    const auto f = static_cast<std::size_t>(call.f - 1);
    ASSERT_GT(seen.size(), r);
    const bool betweenWrites =
        call.f == test::styled::kFree && IsTorn(before[r][f], call.text, seen[r][f]);
    if (!betweenWrites) {
      ++tornWrites_;
      tornCell_ = "root, field " + std::to_string(call.f) + ", record " + std::to_string(call.r);
    }
    WorkloadTable others = seen;
    others[r][f] = before[r][f];
    EXPECT_TRUE(others == before) << "another cell has changed";
  }

  /// Each record shows, field by field, what it held or what the one before it held, and at most
  /// one place of a field is empty in between: no text is gone.
  void ExpectMoving(const WorkloadTable& before, int row, const WorkloadTable& seen) {
    ASSERT_EQ(seen.size(), before.size() + 1) << "records are counted before they move";
    for (std::size_t f = 0; f < Workload::kFields; ++f) {
      std::size_t border = seen.size() - 1;
      while (border > static_cast<std::size_t>(row) - 1 && seen[border][f] == before[border - 1][f])
        --border;
      for (std::size_t r = 0; r < border; ++r) {
        EXPECT_EQ(seen[r][f], before[r][f]) << "field " << f + 1 << ", record " << r + 1;
      }
    }
  }

  void ExpectSound(bool inMoves) {
    db_.CloseAll();
    for (const std::string& problem : test::WalkStructures(db_.Bytes()).problems) {
      const bool ofMoves = inMoves && problem.find("overlaps") != problem.npos;
      const bool ofTornCell = !tornCell_.empty() && problem.find(tornCell_) != problem.npos;
      EXPECT_TRUE(ofMoves || ofTornCell) << problem;
    }
  }

  static constexpr int kRoundsOfAFile = 10;

  test::Driver db_;
  Report* report_ = nullptr;
  WorkloadTable table_;
  int style_ = 0;
  int rounds_ = 0;
  std::size_t calls_ = 0;
  std::size_t interrupted_ = 0;
  std::size_t changed_ = 0;
  std::size_t moving_ = 0;
  std::size_t torn_ = 0;
  /// Kills in the middle of one store, which takes several instructions: rare, but they happen.
  std::size_t tornWrites_ = 0;
  std::string tornCell_;
};

TEST_F(KilledProcessTest, LeavesEveryCallThatHadReturned) {
  constexpr unsigned kLongestMicroseconds = 8000;
  const unsigned kills = test::LongTier() ? 1000 : 20;
  std::mt19937 random(20);
  StartAnew();
  for (unsigned i = 0; i < kills; ++i) {
    KillOnce(i, static_cast<unsigned>(random()) % kLongestMicroseconds);
    if (HasFailure()) return;
  }
  std::printf(
      "kill | %u kills | %zu calls had returned | %zu kills inside a call | %zu of these had "
      "changed a text | %zu torn texts, %zu inside a write | %zu insertions half moved\n",
      kills, calls_, interrupted_, changed_, torn_, tornWrites_, moving_);
  EXPECT_LE(tornWrites_, 1 + kills / 100) << "more than a kill inside a store explains";
  EXPECT_GT(calls_, std::size_t{kills}) << "the process hardly worked";
  EXPECT_GT(interrupted_, 0U) << "no call was ever interrupted";
}

}  // namespace
}  // namespace orv
