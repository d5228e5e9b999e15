// Cell reads and overwrites in place ask the operating system for nothing. They run in a process
// that is killed by any system call but its own exit.
#include <cstddef>
#include <string>

#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/driver.h"
#include "support/hex_text.h"

namespace orv {
namespace {

constexpr int kNotForbidden = 7;
constexpr int kWrongValue = 8;

/// From here on, any system call but exit_group kills the process.
bool ForbidSystemCalls() {
  sock_filter rules[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_exit_group, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
  };
  const sock_fprog program{static_cast<unsigned short>(std::size(rules)), rules};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

class SystemCallTest : public testing::Test {
 protected:
  /// The status of a process that does the work once freely and once without system calls. The work
  /// returns whether its values are right.
  template <typename Work>
  static int StatusWithout(Work work) {
    const pid_t child = fork();
    if (child == 0) {
      if (!work()) _exit(kWrongValue);
      if (!ForbidSystemCalls()) _exit(kNotForbidden);
      _exit(work() ? 0 : kWrongValue);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
  }

  template <typename Work>
  static void ExpectNone(Work work) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer makes system calls of its own";
#endif
    const int status = StatusWithout(work);
    if (WIFEXITED(status) && WEXITSTATUS(status) == kNotForbidden) {
      GTEST_SKIP() << "system calls cannot be forbidden here";
    }
    EXPECT_TRUE(WIFEXITED(status)) << "killed by signal " << WTERMSIG(status) << ": a system call";
    EXPECT_EQ(WEXITSTATUS(status), 0);
  }

  void FillContainer() {
    db_.New();
    db_.AddFields(L"", 3, 1);
    for (int r = 1; r <= 500; ++r) {
      db_.AddRecords(L"", 1, r);
      for (int f = 1; f <= 3; ++f) db_.Set(L"", r, f, "text " + std::to_string(1000 + r));
    }
  }

  test::Driver db_;
};

TEST_F(SystemCallTest, TheFilterKillsAProcessThatMakesOne) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer makes system calls of its own";
#endif
  int calls = 0;
  const int status = StatusWithout([&calls] { return ++calls == 1 || syscall(SYS_getppid) > 0; });
  if (WIFEXITED(status) && WEXITSTATUS(status) == kNotForbidden) {
    GTEST_SKIP() << "system calls cannot be forbidden here";
  }
  EXPECT_TRUE(WIFSIGNALED(status));
}

TEST_F(SystemCallTest, ReadingCells) {
  FillContainer();
  ExpectNone([this] {
    for (int r = 1; r <= 500; ++r) {
      if (db_.Get(L"", r, 1 + r % 3) != "text " + std::to_string(1000 + r)) return false;
    }
    return db_.Error() == 0;
  });
}

TEST_F(SystemCallTest, OverwritingCellsWithTheSameLength) {
  FillContainer();
  ExpectNone([this] {
    for (int r = 1; r <= 500; ++r) {
      const std::string text = "over " + std::to_string(1000 + r);
      db_.Set(L"", r, 2, text);
      if (db_.Get(L"", r, 2) != text) return false;
    }
    return db_.Error() == 0;
  });
}

TEST_F(SystemCallTest, CellsOfADbaseTable) {
  db_.Use(L"t.dbf");
  std::string table = test::FromHex(
      "03 7c 01 01  e8 03 00 00  41 00  06 00  00*20 \"NAME\" 00*7  \"C\" 00*4  05  00*15  0d");
  for (int r = 1; r <= 1000; ++r) table += " " + std::to_string(10000 + r);
  test::WriteBytes(db_.file(), table);
  db_.Get(L"", 1, 1);
  ExpectNone([this] {
    for (int r = 1; r <= 1000; ++r) {
      db_.Set(L"", r, 1, std::to_string(20000 + r));
      if (db_.Get(L"", r, 1) != std::to_string(20000 + r)) return false;
    }
    return db_.Error() == 0;
  });
}

}  // namespace
}  // namespace orv
