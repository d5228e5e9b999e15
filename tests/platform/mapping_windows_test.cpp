// Files as other programs of the system see them, and maps whose pages are lost.
#include <filesystem>

#include <gtest/gtest.h>

#include "platform/file.h"
#include "platform/file_names.h"
#include "platform/windows_api.h"
#include "support/raises.h"
#include "support/temp_folder.h"

namespace orv::platform {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

class WindowsMappingTest : public testing::Test {
 protected:
  /// The file opened as another program would.
  Handle OpenAsOther(DWORD access, DWORD share) const {
    return Handle(
        CreateFileW(LongName(name_).c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
  }

  test::TempFolder folder_;
  std::wstring name_ = folder_.Name(L"file");
};

TEST_F(WindowsMappingTest, AFileThatAnotherProgramHasLockedRaises70) {
  test::WriteBytes(name_, "abc");
  const Handle lock = OpenAsOther(GENERIC_READ | GENERIC_WRITE, 0);
  ASSERT_TRUE(lock.IsValid());
  EXPECT_RAISES(70, MapFile(name_));
  EXPECT_TRUE(IdentityOf(name_).has_value()) << "a locked file can still be told apart";
}

TEST_F(WindowsMappingTest, AFileThatMayOnlyBeReadRaises70) {
  test::WriteBytes(name_, "abc");
  ASSERT_TRUE(SetFileAttributesW(LongName(name_).c_str(), FILE_ATTRIBUTE_READONLY));
  if (OpenAsOther(GENERIC_WRITE, kShareAll).IsValid()) {
    GTEST_SKIP() << "this user may write what is read-only";
  }
  EXPECT_RAISES(70, MapFile(name_));
  SetFileAttributesW(LongName(name_).c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(WindowsMappingTest, OtherProgramsReadAnOpenFile) {
  File file(MapFile(name_));
  file.Write(1, "abc");
  const Handle other = OpenAsOther(GENERIC_READ, kShareAll);
  ASSERT_TRUE(other.IsValid());
  char bytes[3] = {};
  DWORD count = 0;
  ASSERT_TRUE(ReadFile(other.get(), bytes, sizeof bytes, &count, nullptr));
  EXPECT_EQ(std::string(bytes, count), "abc");
}

TEST_F(WindowsMappingTest, NoProgramCutsAFileThatIsMapped) {
  test::WriteBytes(name_, "abc");
  const File file(MapFile(name_));
  const Handle other = OpenAsOther(GENERIC_WRITE, kShareAll);
  ASSERT_TRUE(other.IsValid());
  EXPECT_FALSE(SetEndOfFile(other.get()));
  EXPECT_EQ(file.View(1, 3), "abc");
}

TEST_F(WindowsMappingTest, WhatIsReadOfAFileOutlivesItsGrowthAndItsTrimming) {
  test::WriteBytes(name_, "abc");
  File file(MapFile(name_));
  const std::string_view view = file.View(1, 3);
  const char* const before = view.data();
  for (int i = 0; i < 20; ++i) file.Write(file.Length() + 1, std::string(500000, 'x'));
  file.Settle();
  EXPECT_EQ(file.View(1, 3).data(), before);
  EXPECT_EQ(view, "abc");
}

TEST_F(WindowsMappingTest, NamesAreLongAndInAnyAlphabet) {
  std::wstring folder = folder_.path().wstring();
  for (int level = 0; level < 8; ++level) {
    folder += L"\\" + std::wstring(40, static_cast<wchar_t>(L'\u0416' + level)) + L"\u6570";
    ASSERT_TRUE(CreateDirectoryW(LongName(folder).c_str(), nullptr));
  }
  const std::wstring name = folder + L"/\u0422\u0430\u0431\u043B\u0438\u0446\u0430 \U0001F600.orv";
  ASSERT_GT(name.size(), std::size_t{MAX_PATH});
  {
    File file(MapFile(name));
    file.Write(1, "abc");
  }
  EXPECT_TRUE(FileExists(name));
  EXPECT_EQ(File(MapFile(name)).View(1, 9), "abc");
  DeleteFile(name);
  EXPECT_FALSE(FileExists(name));
}

TEST_F(WindowsMappingTest, NamesThatNoFileCanHaveAreRefused) {
  EXPECT_RAISES(53, MapFile(std::wstring(L"a\0b", 3)));
  EXPECT_RAISES(76, MapFile(folder_.Name(L"missing/file")));
  EXPECT_RAISES(70, MapFile(folder_.path().wstring()));
  EXPECT_RAISES(70, MapFile(L"nul"));
}

// A page whose device has gone; for the process it is a page that cannot be touched.
void LosePages(File& file) {
  DWORD before = 0;
  const std::string_view all = file.View(1, file.Length());
  ASSERT_TRUE(VirtualProtect(const_cast<char*>(all.data()), all.size(), PAGE_NOACCESS, &before));
}

TEST_F(WindowsMappingTest, LostPagesReadAsZerosAndMarkTheirFileOnly) {
  constexpr std::size_t kBytes = 300000;
  test::WriteBytes(name_, std::string(kBytes, 'a'));
  test::WriteBytes(folder_.Name(L"other"), "other");
  const File other(MapFile(folder_.Name(L"other")));
  TakeMapFault();
  {
    File file(MapFile(name_));
    LosePages(file);
    EXPECT_EQ(file.ByteAt(kBytes), 0);
    EXPECT_TRUE(file.Faulted());
    EXPECT_FALSE(other.Faulted());
    EXPECT_TRUE(TakeMapFault());
    EXPECT_FALSE(TakeMapFault()) << "a fault is taken once";
    file.Write(5, "lost");
    EXPECT_RAISES(57, file.Write(kBytes + 1, "x"));
  }
  EXPECT_EQ(test::ReadBytes(name_), std::string(kBytes, 'a'));
  EXPECT_EQ(other.View(1, 5), "other");
}

char* hostPage = nullptr;
int hostCalls = 0;

LONG CALLBACK HostHandler(EXCEPTION_POINTERS* fault) {
  if (fault->ExceptionRecord->ExceptionInformation[1] != reinterpret_cast<ULONG_PTR>(hostPage)) {
    return EXCEPTION_CONTINUE_SEARCH;
  }
  ++hostCalls;
  DWORD before = 0;
  VirtualProtect(hostPage, 1, PAGE_READWRITE, &before);
  return EXCEPTION_CONTINUE_EXECUTION;
}

TEST_F(WindowsMappingTest, TheHostsOwnHandlerStillGetsItsFaults) {
  hostPage = static_cast<char*>(VirtualAlloc(nullptr, 1, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS));
  ASSERT_NE(hostPage, nullptr);
  const PVOID handler = AddVectoredExceptionHandler(0, HostHandler);
  const File file(MapFile(name_));
  *const_cast<volatile char*>(hostPage) = 'x';
  RemoveVectoredExceptionHandler(handler);
  EXPECT_EQ(hostCalls, 1);
  EXPECT_FALSE(file.Faulted());
  VirtualFree(hostPage, 0, MEM_RELEASE);
}

TEST_F(WindowsMappingTest, TheScratchFileIsPrivateAndLeavesNothingBehind) {
  const auto count = [] {
    int files = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::temp_directory_path())) {
      files += entry.path().filename().string().starts_with("orv-temp-") ? 1 : 0;
    }
    return files;
  };
  const int before = count();
  {
    File file(MapScratchFile());
    file.WriteInt32(1, 7);
    EXPECT_EQ(file.Int32At(1), 7);
    EXPECT_EQ(count(), before + 1);
  }
  EXPECT_EQ(count(), before);
}

}  // namespace
}  // namespace orv::platform
