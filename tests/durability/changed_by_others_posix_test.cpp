// Files that another program cuts, deletes, replaces, locks or forbids, between calls and in the
// middle of them: the host lives, hears of it where the system tells, and what was there is there.
#include <array>
#include <cstdio>
#include <filesystem>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "durability/member_fixture.h"
#include "platform/file_names.h"
#include "support/tier.h"

namespace orv {
namespace {

using test::Driver;
using test::FaultPlan;
using test::Snapshot;

constexpr int kDeviceIo = 57;
constexpr int kLocked = 75;
constexpr int kMissing = 53;
constexpr std::size_t kPage = 4096;

std::string NativeFile(const Driver& db) { return platform::NativeName(db.file()); }

/// Each member with a file of several pages; long unreferenced stretches keep its structures apart.
class CutFileTest : public test::MemberTest {
 protected:
  /// Cuts the file to `length` bytes before the member's operation `n`, or before the call for 0.
  void CutAndCall(std::size_t length, std::size_t n) {
    SCOPED_TRACE("cut to " + std::to_string(length) + " bytes before operation " +
                 std::to_string(n));
    Restore(true);
    int code = 0;
    {
      FaultPlan plan;
      const auto cut = [&] { test::ResizeFile(db_.file(), length); };
      if (n == 0) {
        cut();
      } else {
        plan.CallAt(n, cut);
      }
      code = Act();
      EXPECT_TRUE(code >= 0 && code <= 255) << code;
    }
    Look();  // whatever is told of the rest: the host lives
    ++calls_;
    db_.CloseAll();
    const std::string kept = test::Exists(db_.file()) ? db_.Bytes() : std::string();
    ++(code == 0 ? done_ : code == kDeviceIo ? deviceErrors_ : otherCodes_);
    if (!RemakesFile()) {
      EXPECT_EQ(kept.size(), length) << "code " << code;
    }
    Restore(false);
    EXPECT_EQ(Look(), before_) << "the whole file again";
  }

  /// Only this call has a right to a file that is longer afterwards than it was cut to.
  bool RemakesFile() const { return Case().name == "CmdNewOrvDB: over an old one"; }
  void Print(const char* what) const {
    std::printf("%s | %s | %zu | %zu | %zu | %zu\n", what, Case().name.c_str(), calls_, done_,
                deviceErrors_, otherCodes_);
  }

  std::size_t calls_ = 0;
  std::size_t done_ = 0;
  std::size_t deviceErrors_ = 0;
  std::size_t otherCodes_ = 0;
};

TEST_P(CutFileTest, TheHostLivesWhereverItIsCut) {
  PadTo(kPage);
  const std::size_t step = test::LongTier() ? 13 : 1031;
  for (std::size_t length = 0; length < LengthBefore(); length += step) {
    CutAndCall(length, 0);
    if (HasFailure()) return;
  }
  for (std::size_t page = 0; page < LengthBefore(); page += kPage) {
    CutAndCall(page, 0);
    if (page > 0) CutAndCall(page - 1, 0);
    CutAndCall(page + 1, 0);
    if (HasFailure()) return;
  }
  Print("cut");
  EXPECT_GT(calls_, 0U);
}

TEST_P(CutFileTest, TheHostLivesWheneverItIsCut) {
  Restore(true);
  std::size_t operations = 0;
  {
    FaultPlan plan;
    Act();
    operations = plan.met();
  }
  const std::size_t step = test::LongTier() ? 1 : 1 + operations / 20;
  for (std::size_t n = 1; n <= operations; n += step) {
    for (const std::size_t length : {std::size_t{0}, std::size_t{60}, LengthBefore() / 2}) {
      CutAndCall(length, n);
      if (HasFailure()) return;
    }
  }
  Print("cut inside");
  EXPECT_EQ(calls_ > 0, operations > 0);
}

/// Those that have a file before the call.
std::vector<std::size_t> CasesWithFile() {
  std::vector<std::size_t> cases;
  for (std::size_t i = 0; i < test::MemberCases().size(); ++i) {
    if (test::MemberCases()[i].name != "CmdNewOrvDB: a new file") cases.push_back(i);
  }
  return cases;
}

INSTANTIATE_TEST_SUITE_P(Member, CutFileTest, testing::ValuesIn(CasesWithFile()), test::CaseName);

class ForeignChangeTest : public testing::Test {
 protected:
  void SetUp() override {
    MakeRichFile(db_);
    whole_ = db_.Bytes();
    seen_ = test::TakeSnapshot(db_);
  }

  Driver db_;
  std::string whole_;
  Snapshot seen_;
};

TEST_F(ForeignChangeTest, AReadOfEveryCellFailsWithADeviceErrorWhereItsPageIsGone) {
  db_.Set(L"", 5, 1, std::string(3 * kPage, 'p'));
  db_.Set(L"", 1, 1, "a second piece on the last page");
  db_.CloseAll();
  EXPECT_EQ(db_.Get(L"", 5, 1).size(), 3 * kPage);
  test::ResizeFile(db_.file(), kPage);
  db_.Get(L"", 5, 1);
  EXPECT_EQ(db_.Error(), kDeviceIo);
  db_.Get(L"", 2, 1);
  EXPECT_EQ(db_.Error(), 0) << "the file was closed and opens again as it is now";
  EXPECT_EQ(db_.Get(L"", 2, 1), "abcdefghijklmnop");
}

TEST_F(ForeignChangeTest, ADeletedFileLivesUntilItIsClosedAndIsMissingThen) {
  db_.Get(L"", 1, 1);
  std::filesystem::remove(NativeFile(db_));
  EXPECT_EQ(db_.Get(L"", 1, 1), "first");
  db_.Set(L"", 1, 1, "into nothing");
  EXPECT_EQ(db_.Error(), 0) << "the system does not tell";
  db_.CloseAll();
  db_.Get(L"", 2, 1);
  EXPECT_EQ(db_.Error(), kMissing);
  EXPECT_FALSE(test::Exists(db_.file())) << "it is not created by being asked for";
}

TEST_F(ForeignChangeTest, AFilePutInItsPlaceIsLeftAloneUntilTheOldOneIsClosed) {
  db_.Get(L"", 1, 1);
  const std::wstring other = db_.folder().Name(L"other");
  test::WriteBytes(other, whole_);
  std::filesystem::rename(platform::NativeName(other), NativeFile(db_));
  db_.Set(L"", 1, 1, "into the old file");
  EXPECT_EQ(db_.Bytes(), whole_);
  db_.CloseAll();
  EXPECT_EQ(test::TakeSnapshot(db_), seen_) << "the new file";
}

TEST_F(ForeignChangeTest, DuringACallADeletedFileDoesNotStopIt) {
  FaultPlan plan;
  plan.CallAt(3, [&] { std::filesystem::remove(NativeFile(db_)); });
  db_.CloseAll();
  db_.AddRecords(L"", 2, 2);
  EXPECT_GT(plan.met(), 3U);
  EXPECT_EQ(db_.Error(), 0);
  db_.CloseAll();
  EXPECT_FALSE(test::Exists(db_.file()));
}

/// Runs the steps in a process that may not do everything, and returns what they return.
template <typename Steps>
int InUnprivilegedProcess(Steps steps) {
  constexpr uid_t kNobody = 65534;
  const pid_t child = fork();
  if (child == 0) {
    if (geteuid() == 0 && seteuid(kNobody) != 0) _exit(99);
    _exit(steps());
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(ForeignChangeTest, AFileThatIsReadOnlyCountsAsLocked) {
  db_.CloseAll();
  chmod(NativeFile(db_).c_str(), 0444);
  chmod(db_.folder().path().c_str(), 0755);
  const int code = InUnprivilegedProcess([this] {
    db_.Set(L"", 1, 1, "forbidden");
    return db_.Error();
  });
  EXPECT_EQ(code, kLocked);
  EXPECT_EQ(db_.Bytes(), whole_);
  chmod(NativeFile(db_).c_str(), 0644);
}

TEST_F(ForeignChangeTest, MadeReadOnlyWhileItIsOpenItStaysWritable) {
  db_.CloseAll();
  chmod(db_.folder().path().c_str(), 0777);
  chmod(NativeFile(db_).c_str(), 0666);
  const int code = InUnprivilegedProcess([this] {
    db_.Get(L"", 1, 1);
    if (db_.Error() != 0) return 98;
    seteuid(0);
    chmod(NativeFile(db_).c_str(), 0444);
    db_.Set(L"", 1, 1, "still");
    if (db_.Error() != 0) return 97;
    return db_.Get(L"", 1, 1) == "still" ? 0 : 96;
  });
  EXPECT_EQ(code, 0);
}

TEST_F(ForeignChangeTest, AnotherProcessLeaseCountsAsALock) {
  db_.CloseAll();
  std::array<int, 2> ready{};
  ASSERT_EQ(pipe(ready.data()), 0);
  const pid_t child = fork();
  if (child == 0) {
    const int descriptor = open(NativeFile(db_).c_str(), O_RDWR);
    signal(SIGIO, SIG_IGN);
    const char answer = fcntl(descriptor, F_SETLEASE, F_WRLCK) == 0 ? 'y' : 'n';
    if (write(ready[1], &answer, 1) != 1) _exit(1);
    for (;;) pause();
  }
  char answer = 'n';
  ASSERT_EQ(read(ready[0], &answer, 1), 1);
  if (answer == 'y') {
    db_.Set(L"", 1, 1, "refused");
    EXPECT_EQ(db_.Error(), kLocked);
  }
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  close(ready[0]);
  close(ready[1]);
  if (answer != 'y') GTEST_SKIP() << "NOT TESTED: leases. This file system has none.";
  EXPECT_EQ(test::TakeSnapshot(db_), seen_);
}

TEST_F(ForeignChangeTest, AdvisoryLocksOfOthersAreNotAskedFor) {
  db_.CloseAll();
  const int descriptor = open(NativeFile(db_).c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(descriptor, LOCK_EX), 0);
  const int code = InUnprivilegedProcess([this] {
    seteuid(0);
    db_.Set(L"", 1, 1, "written");
    return db_.Error();
  });
  EXPECT_EQ(code, 0);
  close(descriptor);
  EXPECT_EQ(db_.Get(L"", 1, 1), "written");
}

}  // namespace
}  // namespace orv
