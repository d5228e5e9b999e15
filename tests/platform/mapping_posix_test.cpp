// Files that another program cuts short while they are mapped. The host process must never die of
// it.
#include <csetjmp>
#include <csignal>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/file.h"
#include "platform/file_names.h"
#include "support/temp_folder.h"

namespace orv::platform {
namespace {

constexpr std::size_t kFileBytes = 1 << 20;

class MappingFaultTest : public testing::Test {
 protected:
  void SetUp() override {
    test::WriteBytes(name_, std::string(kFileBytes, 'a'));
    TakeMapFault();
  }

  test::TempFolder folder_;
  std::wstring name_ = folder_.Name(L"file");
};

TEST_F(MappingFaultTest, CutBetweenCallsTheLostPagesReadAsZeros) {
  File file(MapFile(name_));
  EXPECT_EQ(file.ByteAt(kFileBytes), 'a');
  test::ResizeFile(name_, 100);
  EXPECT_EQ(file.ByteAt(kFileBytes), 0);
  EXPECT_TRUE(file.Faulted());
  EXPECT_EQ(file.ByteAt(100), 'a');
  EXPECT_EQ(file.ByteAt(101), 0) << "the rest of the last page is zeros without a fault";
  EXPECT_TRUE(TakeMapFault());
  EXPECT_FALSE(TakeMapFault()) << "a fault is taken once";
}

TEST_F(MappingFaultTest, CutByAnotherProcessDuringARead) {
  File file(MapFile(name_));
  const std::string_view view = file.View(1, kFileBytes);
  EXPECT_EQ(view[10], 'a');
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) _exit(truncate(NativeName(name_).c_str(), 0) == 0 ? 0 : 1);
  int status = -1;
  waitpid(child, &status, 0);
  ASSERT_EQ(status, 0);
  std::size_t zeros = 0;
  for (const char c : view) zeros += c == '\0' ? 1 : 0;
  EXPECT_EQ(zeros, kFileBytes);
  EXPECT_TRUE(file.Faulted());
}

TEST_F(MappingFaultTest, WritingIntoALostPageKeepsNothingAndDoesNotBringTheFileBack) {
  {
    File file(MapFile(name_));
    test::ResizeFile(name_, 10);
    file.Write(500000, "lost");
    EXPECT_TRUE(file.Faulted());
  }
  EXPECT_EQ(test::ReadBytes(name_), std::string(10, 'a'));
}

TEST_F(MappingFaultTest, AFaultMarksItsOwnFileOnly) {
  const std::wstring otherName = folder_.Name(L"other");
  test::WriteBytes(otherName, std::string(kFileBytes, 'b'));
  NumberedFiles files;
  files.Open(1, name_);
  files.Open(2, otherName);
  test::ResizeFile(name_, 0);
  EXPECT_EQ(files.At(1).ByteAt(5), 0);
  EXPECT_EQ(files.At(2).ByteAt(5), 'b');
  EXPECT_FALSE(files.At(2).Faulted());
  files.CloseFaulted();
  EXPECT_EQ(files.Find(1), nullptr);
  EXPECT_NE(files.Find(2), nullptr);
}

TEST_F(MappingFaultTest, AFileOpenedAgainStartsWithoutTheMark) {
  {
    File file(MapFile(name_));
    test::ResizeFile(name_, 0);
    EXPECT_EQ(file.ByteAt(5), 0);
  }
  test::WriteBytes(name_, "fresh");
  File file(MapFile(name_));
  EXPECT_EQ(file.View(1, 5), "fresh");
  EXPECT_FALSE(file.Faulted());
}

// A map of the host's own, whose pages are lost.
class HostMap {
 public:
  explicit HostMap(const std::wstring& name) {
    test::WriteBytes(name, std::string(kFileBytes, 'h'));
    const int descriptor = open(NativeName(name).c_str(), O_RDWR | O_CLOEXEC);
    base_ = static_cast<volatile char*>(
        mmap(nullptr, kFileBytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0));
    close(descriptor);
    test::ResizeFile(name, 0);
  }
  ~HostMap() { munmap(const_cast<char*>(base_), kFileBytes); }
  HostMap(const HostMap&) = delete;
  HostMap& operator=(const HostMap&) = delete;

  void Touch() const { base_[kFileBytes / 2] = 'x'; }

 private:
  volatile char* base_;
};

sigjmp_buf hostReturn;
volatile std::sig_atomic_t hostCalls = 0;

void PlainHostHandler(int) {
  hostCalls = hostCalls + 1;
  siglongjmp(hostReturn, 1);
}

void InformedHostHandler(int, siginfo_t* info, void*) {
  if (info != nullptr && info->si_addr != nullptr) hostCalls = hostCalls + 1;
  siglongjmp(hostReturn, 1);
}

/// Puts a handler of the host's in place for the life of the object.
class HostHandler {
 public:
  explicit HostHandler(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    Install(action);
  }
  explicit HostHandler(void (*handler)(int, siginfo_t*, void*)) {
    struct sigaction action = {};
    action.sa_sigaction = handler;
    action.sa_flags = SA_SIGINFO;
    Install(action);
  }
  ~HostHandler() { sigaction(SIGBUS, &before_, nullptr); }
  HostHandler(const HostHandler&) = delete;
  HostHandler& operator=(const HostHandler&) = delete;

 private:
  void Install(const struct sigaction& action) {
    hostCalls = 0;
    sigaction(SIGBUS, &action, &before_);
  }
  struct sigaction before_ = {};
};

void TouchAndComeBack(const HostMap& map) {
  if (sigsetjmp(hostReturn, 1) == 0) map.Touch();
}

TEST_F(MappingFaultTest, TheHostsOwnHandlerStillGetsItsFaults) {
  const HostMap hostMap(folder_.Name(L"host"));
  const HostHandler handler(PlainHostHandler);
  File file(MapFile(name_));
  TouchAndComeBack(hostMap);
  EXPECT_EQ(hostCalls, 1);
  EXPECT_FALSE(file.Faulted());

  test::ResizeFile(name_, 0);
  EXPECT_EQ(file.ByteAt(5), 0);
  EXPECT_TRUE(file.Faulted());
  EXPECT_EQ(hostCalls, 1) << "a fault of ours is no business of the host's";
}

TEST_F(MappingFaultTest, AHandlerThatAsksForTheSignalsDetailsGetsThem) {
  const HostMap hostMap(folder_.Name(L"host"));
  const HostHandler handler(InformedHostHandler);
  const File file(MapFile(name_));
  TouchAndComeBack(hostMap);
  EXPECT_EQ(hostCalls, 1);
}

TEST_F(MappingFaultTest, TheSignalIsGivenBackWhenTheLastFileIsClosed) {
  const HostHandler handler(PlainHostHandler);
  {
    const File first(MapFile(name_));
    const File second(MapFile(folder_.Name(L"second")));
  }
  struct sigaction present = {};
  sigaction(SIGBUS, nullptr, &present);
  EXPECT_EQ(present.sa_handler, &PlainHostHandler);
}

TEST_F(MappingFaultTest, AHandlerThatTheHostInstalledLaterIsLeftInPlace) {
  struct sigaction before = {};
  sigaction(SIGBUS, nullptr, &before);
  {
    const File file(MapFile(name_));
    struct sigaction late = {};
    late.sa_handler = PlainHostHandler;
    sigaction(SIGBUS, &late, nullptr);
  }
  struct sigaction present = {};
  sigaction(SIGBUS, &before, &present);
  EXPECT_EQ(present.sa_handler, &PlainHostHandler);
}

TEST_F(MappingFaultTest, AFaultElsewhereStillEndsAHostThatHasNoHandler) {
  const std::wstring hostName = folder_.Name(L"host");
  EXPECT_DEATH(
      {
        signal(SIGBUS, SIG_DFL);
        const File file(MapFile(name_));
        HostMap(hostName).Touch();
      },
      "");
}

}  // namespace
}  // namespace orv::platform
