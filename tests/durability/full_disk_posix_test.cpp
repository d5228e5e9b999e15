// Every member that changes a file, on a disk that is really full, and where the process may not
// make files any longer.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "durability/member_fixture.h"
#include "support/structure_walk.h"
#include "support/tier.h"

namespace orv {
namespace {

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

SmallDisk::SmallDisk() {
  std::string name = (std::filesystem::temp_directory_path() / "orv-disk-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) return;
  root_ = name;
  // Mounts of a process of its own are gone with it, whatever becomes of it.
  const std::string options = "size=" + std::to_string(kBytes);
  mounted_ = unshare(CLONE_NEWNS) == 0 &&
             mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
             mount("tmpfs", root_.c_str(), "tmpfs", 0, options.c_str()) == 0;
  if (!mounted_) return;
  if (const char* former = std::getenv("TMPDIR")) formerTemp_ = former;
  setenv("TMPDIR", root_.c_str(), 1);
}

SmallDisk::~SmallDisk() {
  if (mounted_) {
    if (formerTemp_) {
      setenv("TMPDIR", formerTemp_->c_str(), 1);
    } else {
      unsetenv("TMPDIR");
    }
    umount2(root_.c_str(), MNT_DETACH);
  }
  if (!root_.empty()) rmdir(root_.c_str());
}

std::uint64_t SmallDisk::BlockBytes() { return static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)); }

bool SmallDisk::LeaveFree(std::uint64_t blocks) {
  Release();
  struct statvfs space = {};
  if (statvfs(root_.c_str(), &space) != 0 || space.f_bfree < blocks) return false;
  const int descriptor = open((root_ + "/filler").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  if (descriptor < 0) return false;
  const auto bytes = static_cast<off_t>((space.f_bfree - blocks) * space.f_bsize);
  const bool taken = bytes == 0 || posix_fallocate(descriptor, 0, bytes) == 0;
  close(descriptor);
  return taken && statvfs(root_.c_str(), &space) == 0 && space.f_bfree == blocks;
}

void SmallDisk::Release() { unlink((root_ + "/filler").c_str()); }

using test::Outcomes;
using test::Snapshot;

constexpr int kDiskFull = 61;

class NoRoomTest : public test::MemberTest {
 protected:
  /// Judges a call that may have lacked room; `free` makes room again.
  template <typename Free>
  void Judge(int code, Free free) {
    ++calls_;
    const Snapshot seen = ExpectRecoverable(outcomes_);
    if (code == 0) {
      ++done_;
      EXPECT_EQ(seen, after_);
    } else {
      EXPECT_EQ(code, kDiskFull);
    }
    free();
    ExpectContinuation(seen);
  }

  bool MakesFile() const {
    return !Case().target.empty() || Case().name.starts_with("CmdNewOrvDB");
  }
  /// Whether the call makes any file longer.
  bool Grows() {
    Restore(false);
    test::FaultPlan plan;
    Act();
    return plan.met(platform::FileOperation::kGrow) > 0 ||
           plan.met(platform::FileOperation::kOutputWrite) > 0;
  }

  void Print(const char* what) const {
    std::printf("%s | %s | %zu | %zu | %zu | %zu | %zu | %zu\n", what, Case().name.c_str(), calls_,
                done_, outcomes_.old, outcomes_.whole, outcomes_.between, outcomes_.window);
  }

  std::size_t calls_ = 0;
  std::size_t done_ = 0;
  Outcomes outcomes_;
};

/// The disk is there before the fixture makes its folder, and gone after it.
class FullDiskTest : protected SmallDisk, public NoRoomTest {
 protected:
  void SetUp() override {
    if (!IsMounted()) {
      GTEST_SKIP() << "NOT TESTED: a full disk. This process may not mount a file system.";
    }
    NoRoomTest::SetUp();
  }
};

TEST_P(FullDiskTest, LeavesTheOldStateOrTheNewOne) {
  constexpr std::uint64_t kMostBlocks = 40;
  PadTo(BlockBytes());  // so that the last block has no room either
  for (std::uint64_t blocks = 0; blocks <= kMostBlocks; ++blocks) {
    SCOPED_TRACE(std::to_string(blocks) + " free blocks");
    Restore(true);
    ASSERT_TRUE(LeaveFree(blocks));
    const int code = Act();
    Judge(code, [this] { Release(); });
    if (HasFailure()) return;
    if (code == 0 && blocks > 0) break;
  }
  Print("full");
  EXPECT_GT(done_, 0U) << "the call never found enough room";
  // Only an overwritten file makes room for itself.
  if (Grows() && Case().name != "CmdNewOrvDB: over an old one") {
    EXPECT_GT(calls_, done_) << "the call never lacked room";
  }
}

/// The process may not make files longer than a limit, as under a quota.
class FileLimitTest : public NoRoomTest {
 protected:
  static void Limit(rlim_t bytes) {
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = bytes == RLIM_INFINITY ? limit.rlim_max : bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
};

TEST_P(FileLimitTest, LeavesTheOldStateOrTheNewOne) {
  std::size_t refused = 0;
  std::size_t step = test::LongTier() ? 1 : 20;
  bool done = false;
  for (std::size_t more = 0; !done; more += step) {
    SCOPED_TRACE(std::to_string(more) + " bytes more");
    Restore(true);
    Limit(static_cast<rlim_t>((MakesFile() ? 0 : LengthBefore()) + more));
    const int code = Act();
    db_.CloseAll();
    Limit(RLIM_INFINITY);
    Judge(code, [] {});
    if (HasFailure()) return;
    refused += code != 0 ? 1 : 0;
    done = code == 0;
    if (more >= 200) step = more / 4;
  }
  Print("limit");
  if (Grows()) {
    EXPECT_GT(refused, 0U) << "the call never lacked room";
  }
  EXPECT_EQ(calls_, refused + 1);
}

class FillingDiskTest : protected SmallDisk, public testing::Test {
 protected:
  void SetUp() override {
    if (!IsMounted()) {
      GTEST_SKIP() << "NOT TESTED: a full disk. This process may not mount a file system.";
    }
  }
};

TEST_F(FillingDiskTest, RecordsAreAppendedUntilNothingFitsAndAllOfThemLast) {
  test::Driver db;
  db.New();
  db.AddFields(L"", 2, 1);
  const auto textOf = [](int r) { return std::to_string(r) + std::string(100, 'x'); };
  int written = 0;
  for (int r = 1; db.Error() == 0; ++r) {
    db.AddRecords(L"", 1, r);
    if (db.Error() == 0) db.Set(L"", r, 1, textOf(r));
    if (db.Error() == 0) written = r;
  }
  EXPECT_EQ(db.Error(), kDiskFull);
  EXPECT_GT(static_cast<std::uint64_t>(written) * 100, kBytes / 2) << "the disk was hardly used";
  db.SetStyle(L"", 1, 1, 120);
  EXPECT_EQ(db.Error(), kDiskFull) << "a conversion needs room as well";
  db.Set(L"", 1, 1, "no room needed");
  EXPECT_EQ(db.Error(), 0);
  EXPECT_EQ(test::WalkStructures(db.Bytes()).Text(), "");
  for (int r = 2; r <= written; ++r) {
    ASSERT_EQ(db.Get(L"", r, 1), textOf(r));
  }
  EXPECT_EQ(db.Get(L"", 1, 1), "no room needed");
}

INSTANTIATE_TEST_SUITE_P(Member, FullDiskTest,
                         testing::Range(std::size_t{0}, test::MemberCases().size()),
                         test::CaseName);
INSTANTIATE_TEST_SUITE_P(Member, FileLimitTest,
                         testing::Range(std::size_t{0}, test::MemberCases().size()),
                         test::CaseName);

}  // namespace
}  // namespace orv
