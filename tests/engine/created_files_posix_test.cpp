// Who may read and write the files that the engine makes, and which names it follows.
#include <filesystem>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file_names.h"
#include "platform/mapping.h"
#include "support/driver.h"

namespace orv {
namespace {

class CreatedFilesTest : public testing::Test {
 protected:
  ~CreatedFilesTest() override { umask(before_); }

  static int Permissions(const std::wstring& name) {
    struct stat status = {};
    if (stat(platform::NativeName(name).c_str(), &status) != 0) return -1;
    return static_cast<int>(status.st_mode & 07777);
  }
  void Link(std::wstring_view target, std::wstring_view name) {
    ASSERT_EQ(symlink(platform::NativeName(db_.folder().Name(target)).c_str(),
                      platform::NativeName(db_.folder().Name(name)).c_str()),
              0);
  }

  test::Driver db_;
  mode_t before_ = umask(022);
};

TEST_F(CreatedFilesTest, TheirPermissionsAreTheProcessesOwnDefault) {
  for (const auto& [mask, expected] : {std::pair{022, 0644}, {077, 0600}, {027, 0640}}) {
    umask(static_cast<mode_t>(mask));
    const std::wstring name = std::to_wstring(mask);
    db_.Use(name);
    db_.New();
    db_.AddFields(L"", 1, 1);
    db_.AddRecords(L"", 1, 1);
    db_.SaveAs(L"", name + L".txt", true, 2);
    db_.SaveAs(L"", name + L".orv", true, 1);
    EXPECT_EQ(Permissions(db_.file()), expected) << "a container";
    EXPECT_EQ(Permissions(db_.folder().Name(name + L".txt")), expected) << "an exported text";
    EXPECT_EQ(Permissions(db_.folder().Name(name + L".orv")), expected) << "an exported container";
  }
}

TEST_F(CreatedFilesTest, AFileThatIsThereKeepsItsPermissions) {
  db_.New();
  db_.CloseAll();
  ASSERT_EQ(chmod(platform::NativeName(db_.file()).c_str(), 0600), 0);
  db_.AddFields(L"", 1, 1);
  db_.CloseAll();
  EXPECT_EQ(Permissions(db_.file()), 0600);
}

TEST_F(CreatedFilesTest, TheScratchFileHasNoNameAndIsItsOwnersOnly) {
  const auto scratch = platform::MapScratchFile();
  const platform::FileIdentity identity = scratch->Identity();
  bool found = false;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::temp_directory_path())) {
    struct stat status = {};
    if (lstat(entry.path().c_str(), &status) != 0) continue;
    found = found || (status.st_dev == identity.device && status.st_ino == identity.file);
  }
  EXPECT_FALSE(found);
}

TEST_F(CreatedFilesTest, ALinkLeadsToItsFileAsForAnyProgram) {
  db_.Use(L"real");
  db_.New("behind the link");
  db_.CloseAll();
  Link(L"real", L"link");
  db_.Use(L"link");
  EXPECT_EQ(db_.Title(), "behind the link");
}

TEST_F(CreatedFilesTest, ALinkToItselfAndAFolderAreErrorsAndAPipeDoesNotBlock) {
  Link(L"loop", L"loop");
  db_.Use(L"loop");
  EXPECT_EQ(db_.Records(), -1);
  EXPECT_EQ(db_.Error(), 76);
  ASSERT_EQ(mkdir(platform::NativeName(db_.folder().Name(L"folder")).c_str(), 0700), 0);
  db_.Use(L"folder");
  EXPECT_EQ(db_.Records(), -1);
  EXPECT_EQ(db_.Error(), 75);
  ASSERT_EQ(mkfifo(platform::NativeName(db_.folder().Name(L"pipe")).c_str(), 0600), 0);
  db_.Use(L"pipe");
  EXPECT_EQ(db_.Records(), -1);
  EXPECT_EQ(db_.Error(), 75);
  EXPECT_TRUE(test::Exists(db_.file())) << "it is not deleted";
}

}  // namespace
}  // namespace orv
