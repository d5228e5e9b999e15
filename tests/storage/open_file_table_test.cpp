#include "storage/open_file_table.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace orv::storage {
namespace {

class OpenFileTableTest : public testing::Test {
 protected:
  using Reopening = OpenFileTable::Reopening;

  std::wstring Make(std::wstring_view name, std::string_view content = "content") const {
    const std::wstring full = folder_.Name(name);
    test::WriteBytes(full, content);
    return full;
  }
  /// Fills all ten slots with files 1 to 10.
  void FillTable() {
    for (int i = 1; i <= 10; ++i) ASSERT_EQ(table_.OpenFile(Make(std::to_wstring(i))), i);
  }

  test::TempFolder folder_;
  platform::NumberedFiles files_;
  ErrorCode error_;
  OpenFileTable table_{files_, error_};
};

TEST_F(OpenFileTableTest, FilesGetTheFirstFreeNumberAndKeepIt) {
  const std::wstring a = Make(L"a");
  const std::wstring b = Make(L"b");
  EXPECT_EQ(table_.OpenFile(a), 1);
  EXPECT_EQ(table_.OpenFile(b), 2);
  const std::uint64_t opening = files_.At(1).opening();
  EXPECT_EQ(table_.OpenFile(a), 1);
  EXPECT_EQ(files_.At(1).opening(), opening) << "a hit opens nothing";
  EXPECT_EQ(table_.OpenFile(b), 2);
  EXPECT_FALSE(error_.IsSet());
}

TEST_F(OpenFileTableTest, AnotherLetterCaseIsAHit) {
  const std::wstring a = Make(L"Table.orv");
  EXPECT_EQ(table_.OpenFile(a), 1);
  EXPECT_EQ(table_.OpenFile(folder_.Name(L"tABLE.ORV")), 1);
}

TEST_F(OpenFileTableTest, TwoFilesThatDifferInCaseOnlyAreNeverMixedUp) {
  const std::wstring a = Make(L"table", "small");
  if (test::Exists(folder_.Name(L"TABLE"))) GTEST_SKIP() << "this file system tells no cases apart";
  const std::wstring b = Make(L"TABLE", "capital");
  EXPECT_EQ(table_.OpenFile(a), 1);
  EXPECT_EQ(table_.OpenFile(b), 2);
  EXPECT_EQ(files_.At(2).View(1, 7), "capital");
  EXPECT_EQ(table_.OpenFile(a), 1);
}

TEST_F(OpenFileTableTest, AFileThatIsReachedByAnotherNameIsAHit) {
  const std::wstring a = Make(L"a");
  std::filesystem::create_hard_link(folder_.path() / "a", folder_.path() / "b");
  EXPECT_EQ(table_.OpenFile(a), 1);
  EXPECT_EQ(table_.OpenFile(folder_.Name(L"b")), 1);
}

TEST_F(OpenFileTableTest, AMissingFirstFileIs53AndDoesNotComeIntoBeing) {
  EXPECT_EQ(table_.OpenFile(folder_.Name(L"missing")), -1);
  EXPECT_EQ(error_.value(), 53);
  EXPECT_FALSE(test::Exists(folder_.Name(L"missing")));
  EXPECT_EQ(files_.Find(1), nullptr);
}

TEST_F(OpenFileTableTest, AnEmptyFirstFileIs53AndDeleted) {
  const std::wstring empty = Make(L"empty", "");
  EXPECT_EQ(table_.OpenFile(empty), -1);
  EXPECT_EQ(error_.value(), 53);
  EXPECT_FALSE(test::Exists(empty));
}

TEST_F(OpenFileTableTest, AMissingFileIsAcceptedWhileNumberOneHoldsData) {
  table_.OpenFile(Make(L"a"));
  EXPECT_EQ(table_.OpenFile(folder_.Name(L"missing")), 2);
  EXPECT_FALSE(error_.IsSet());
  EXPECT_TRUE(test::Exists(folder_.Name(L"missing")));
  EXPECT_EQ(files_.At(2).Length(), 0);
}

TEST_F(OpenFileTableTest, AnEleventhFileIs9AndClosesNumberOneUnderItsSlot) {
  FillTable();
  const std::wstring eleventh = Make(L"11");
  EXPECT_EQ(table_.OpenFile(eleventh), -1);
  EXPECT_EQ(error_.value(), 9);
  EXPECT_EQ(files_.Find(1), nullptr);
  for (int number = 2; number <= 10; ++number) EXPECT_NE(files_.Find(number), nullptr);
  EXPECT_EQ(table_.OpenFile(folder_.Name(L"1")), 1) << "the slot still lists its path";
  EXPECT_NE(files_.Find(1), nullptr) << "and a hit opens it again";
  EXPECT_EQ(table_.OpenFile(eleventh), -1) << "no slot was given up";
}

TEST_F(OpenFileTableTest, AnEleventhFileThatIsMissingIsNotCreated) {
  FillTable();
  EXPECT_EQ(table_.OpenFile(folder_.Name(L"missing")), -1);
  EXPECT_EQ(error_.value(), 9);
  EXPECT_FALSE(test::Exists(folder_.Name(L"missing")));
}

TEST_F(OpenFileTableTest, AHitInTheTenthSlotIsFoundInAFullTable) {
  FillTable();
  EXPECT_EQ(table_.OpenFile(folder_.Name(L"10")), 10);
  EXPECT_FALSE(error_.IsSet());
}

TEST_F(OpenFileTableTest, WhatNumberOneHeldWhenItWasClosedIsWhatItHoldsWhenReopened) {
  FillTable();
  files_.At(1).Write(files_.At(1).Length() + 1, " and more");
  table_.OpenFile(folder_.Name(L"missing"));
  files_.ReleaseRetired();
  EXPECT_EQ(table_.OpenFile(folder_.Name(L"1")), 1);
  EXPECT_EQ(files_.At(1).View(1, 100), "content and more");
}

TEST_F(OpenFileTableTest, AClosedNumberWhoseFileIsGoneIs53) {
  FillTable();
  table_.OpenFile(folder_.Name(L"missing"));
  files_.ReleaseRetired();
  std::filesystem::remove(folder_.path() / "1");
  EXPECT_EQ(table_.OpenFile(folder_.Name(L"1")), -1);
  EXPECT_EQ(error_.value(), 53);
  EXPECT_FALSE(test::Exists(folder_.Name(L"1")));
}

TEST_F(OpenFileTableTest, AFolderIsReportedAsLocked) {
  std::filesystem::create_directory(folder_.path() / "sub");
  EXPECT_EQ(table_.OpenFile(folder_.Name(L"sub")), -1);
  EXPECT_EQ(error_.value(), 75);
}

TEST_F(OpenFileTableTest, AnotherRunTimeErrorKeepsItsNumber) {
  EXPECT_EQ(table_.OpenFile(folder_.Name(L"no/such/folder")), -1);
  EXPECT_EQ(error_.value(), 76);
}

TEST_F(OpenFileTableTest, AfterAFailureTheSlotIsFreeForTheNextFile) {
  table_.OpenFile(folder_.Name(L"missing"));
  EXPECT_EQ(table_.OpenFile(Make(L"a")), 1);
}

TEST_F(OpenFileTableTest, ClearingFreesTheSlots) {
  table_.OpenFile(Make(L"a"));
  table_.OpenFile(Make(L"b"));
  table_.Clear();
  files_.CloseAll();
  EXPECT_EQ(table_.OpenFile(folder_.Name(L"b")), 1);
}

TEST_F(OpenFileTableTest, DroppingAFileClosesItAndFreesItsSlotOnly) {
  const std::wstring a = Make(L"a");
  table_.OpenFile(a);
  table_.OpenFile(Make(L"b"));
  table_.Drop(folder_.Name(L"A"));
  EXPECT_EQ(files_.Find(1), nullptr);
  EXPECT_NE(files_.Find(2), nullptr);
  EXPECT_EQ(table_.OpenFile(Make(L"c")), 1);
}

using Reopening = OpenFileTable::Reopening;

TEST_F(OpenFileTableTest, ReopeningNeverCreatesAndNeverTakesAnotherFile) {
  const std::wstring a = Make(L"a");
  table_.OpenFile(a);
  const platform::FileIdentity identity = files_.At(1).Identity();
  table_.Clear();
  files_.CloseAll();
  EXPECT_EQ(table_.Reopen(4, a, identity), Reopening::kDone) << "under whatever number it had";
  EXPECT_NE(files_.Find(4), nullptr);
  table_.Clear();
  files_.CloseAll();
  test::WriteBytes(folder_.Name(L"new"), "new");
  std::filesystem::rename(folder_.path() / "new", folder_.path() / "a");
  EXPECT_EQ(table_.Reopen(4, a, identity), Reopening::kAnotherFile);
  std::filesystem::remove(folder_.path() / "a");
  EXPECT_EQ(table_.Reopen(4, a, identity), Reopening::kMissing);
  EXPECT_FALSE(test::Exists(a));
}

TEST_F(OpenFileTableTest, ReopeningDoesNotTakeANumberThatServesAnotherFile) {
  const std::wstring a = Make(L"a");
  table_.OpenFile(a);
  const platform::FileIdentity identity = files_.At(1).Identity();
  table_.Clear();
  files_.CloseAll();
  table_.OpenFile(Make(L"b"));
  EXPECT_EQ(table_.Reopen(1, a, identity), Reopening::kAnotherFile);
  EXPECT_EQ(table_.OpenFile(folder_.Name(L"b")), 1);
}

}  // namespace
}  // namespace orv::storage
