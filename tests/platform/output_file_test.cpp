#include "platform/output_file.h"

#include <string>

#include <gtest/gtest.h>

#include "support/raises.h"
#include "support/temp_folder.h"

namespace orv::platform {
namespace {

TEST(OutputFile, HoldsWhatWasWrittenInOrder) {
  const test::TempFolder folder;
  const std::wstring name = folder.Name(L"новый файл");
  const auto file = CreateOutputFile(name);
  file->Write("one ");
  file->Write("");
  file->Write(std::string(300'000, 'x'));
  file->Close();
  EXPECT_TRUE(test::ReadBytes(name) == "one " + std::string(300'000, 'x'));
}

TEST(OutputFile, EmptiesAnExistingFile) {
  const test::TempFolder folder;
  const std::wstring name = folder.Name(L"file");
  test::WriteBytes(name, "a longer text");
  CreateOutputFile(name)->Write("short");
  EXPECT_EQ(test::ReadBytes(name), "short");
}

TEST(OutputFile, CannotStandInAMissingFolderNorInTheFoldersPlace) {
  const test::TempFolder folder;
  EXPECT_RAISES(RunTimeError::kPathNotFound, CreateOutputFile(folder.Name(L"missing/file")));
  EXPECT_RAISES(RunTimeError::kPermissionDenied, CreateOutputFile(folder.path().wstring()));
}

#ifdef __linux__
TEST(OutputFile, TellsOfAFullDisk) {
  const auto file = CreateOutputFile(L"/dev/full");
  EXPECT_RAISES(RunTimeError::kDiskFull, file->Write("text"));
}
#endif

}  // namespace
}  // namespace orv::platform
