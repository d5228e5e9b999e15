#include "platform/file.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <vector>

#include <gtest/gtest.h>

#include "platform/file_names.h"
#include "support/raises.h"
#include "support/temp_folder.h"

namespace orv::platform {
namespace {

using test::TempFolder;

class FileTest : public testing::Test {
 protected:
  std::unique_ptr<File> Open() const { return std::make_unique<File>(MapFile(name_)); }
  std::uintmax_t DiskLength() const { return std::filesystem::file_size(NativeName(name_)); }

  TempFolder folder_;
  std::wstring name_ = folder_.Name(L"file");
};

TEST_F(FileTest, AMissingFileIsCreatedEmpty) {
  EXPECT_EQ(Open()->Length(), 0);
  EXPECT_TRUE(test::Exists(name_));
}

TEST_F(FileTest, IntegersAreLittleEndianAndPositionsCountFromOne) {
  {
    const auto file = Open();
    file->WriteByte(1, 0xAB);
    file->WriteInt16(2, -2);
    file->WriteInt32(4, 0x01020304);
    EXPECT_EQ(file->ByteAt(1), 0xAB);
    EXPECT_EQ(file->Int16At(2), -2);
    EXPECT_EQ(file->Int32At(4), 0x01020304);
  }
  EXPECT_EQ(test::ReadBytes(name_), std::string("\xAB\xFE\xFF\x04\x03\x02\x01", 7));
}

TEST_F(FileTest, GrowsInStepsAndIsTrimmedWhenItIsClosed) {
  {
    const auto file = Open();
    file->Write(1, "abc");
    EXPECT_EQ(file->Length(), 3);
    EXPECT_GE(DiskLength(), 65536U);
    const std::uintmax_t afterFirst = DiskLength();
    for (int i = 0; i < 1000; ++i) file->Write(file->Length() + 1, "x");
    EXPECT_EQ(DiskLength(), afterFirst) << "a small append asks the operating system for nothing";
    EXPECT_EQ(file->Length(), 1003);
  }
  EXPECT_EQ(DiskLength(), 1003U);
}

TEST_F(FileTest, SettlingCutsAnOpenFileToItsTrueLengthAndItGrowsAgain) {
  const auto file = Open();
  file->Write(1, "abc");
  file->Settle();
  EXPECT_EQ(DiskLength(), 3U);
  file->Write(4, "def");
  EXPECT_EQ(file->View(1, 6), "abcdef");
  file->Settle();
  EXPECT_EQ(test::ReadBytes(name_), "abcdef");
}

TEST_F(FileTest, WhatAWriteHasStoredIsInTheFileAtOnce) {
  const auto file = Open();
  file->Write(1, "abc");
  EXPECT_EQ(test::ReadBytes(name_).substr(0, 3), "abc") << "not only after closing";
}

TEST_F(FileTest, WhatAFileGainsIsZeros) {
  test::WriteBytes(name_, "abc");
  {
    const auto file = Open();
    file->Reach(3, 2);
    EXPECT_EQ(file->Length(), 4);
    file->Reach(1, 2);
    EXPECT_EQ(file->Length(), 4) << "nothing is cut off";
    file->Reach(5, 200000);
    EXPECT_EQ(file->View(1, 200004), "abc" + std::string(200001, '\0'));
  }
  EXPECT_EQ(test::ReadBytes(name_), "abc" + std::string(200001, '\0'));
}

// The pages of a growing file are prepared ahead of its end; nothing of that may stay or reach what
// was stored.
TEST_F(FileTest, GrowingBySmallStepsKeepsEveryByte) {
  std::string expected;
  {
    const auto file = Open();
    for (int i = 0; i < 30000; ++i) {
      const std::string piece(static_cast<std::size_t>(1 + i % 13),
                              static_cast<char>('a' + i % 26));
      file->Write(file->Length() + 1, piece);
      expected += piece;
      if (i % 7000 == 0) file->Settle();
    }
    EXPECT_EQ(file->View(1, file->Length()), expected);
  }
  EXPECT_EQ(test::ReadBytes(name_), expected);
}

TEST_F(FileTest, BytesAreComposedInPlace) {
  const auto file = Open();
  file->Write(1, "abc");
  file->Compose(3, 3, [](char* bytes) { std::memcpy(bytes, "xyz", 3); });
  EXPECT_EQ(file->View(1, 10), "abxyz");
  EXPECT_RAISES(9, file->Compose(0, 1, [](char*) { FAIL(); }));
}

TEST_F(FileTest, AGapIsFilledWithZeros) {
  test::WriteBytes(name_, "ab");
  {
    const auto file = Open();
    file->Write(6, "z");
  }
  EXPECT_EQ(test::ReadBytes(name_), std::string("ab\0\0\0z", 6));
}

TEST_F(FileTest, AGapAfterTrimmingHoldsNoOldBytes) {
  const auto file = Open();
  file->Write(1, std::string(100, 'x'));
  file->Settle();
  file->Write(200, "z");
  EXPECT_EQ(file->View(101, 99), std::string(99, '\0'));
}

TEST_F(FileTest, ReadingBeyondTheEndGivesZerosOrLess) {
  test::WriteBytes(name_, "\x01\x02\x03");
  const auto file = Open();
  EXPECT_EQ(file->Int32At(1), 0x00030201);
  EXPECT_EQ(file->Int16At(3), 3);
  EXPECT_EQ(file->Int32At(4), 0);
  EXPECT_EQ(file->ByteAt(4), 0);
  EXPECT_EQ(file->Int32At(0), 0);
  EXPECT_EQ(file->Int32At(-5), 0);
  EXPECT_EQ(file->Int32At(2147483647), 0);
  EXPECT_EQ(file->View(2, 10), "\x02\x03");
  EXPECT_EQ(file->View(4, 1), "");
  EXPECT_EQ(file->View(0, 2), "");
  EXPECT_EQ(file->View(1, -1), "");
}

TEST_F(FileTest, ContainsKnowsTheEdges) {
  test::WriteBytes(name_, "abc");
  const auto file = Open();
  EXPECT_TRUE(file->Contains(1, 3));
  EXPECT_TRUE(file->Contains(3, 1));
  EXPECT_TRUE(file->Contains(4, 0));
  EXPECT_FALSE(file->Contains(1, 4));
  EXPECT_FALSE(file->Contains(5, 0));
  EXPECT_FALSE(file->Contains(0, 1));
  EXPECT_FALSE(file->Contains(1, -1));
  EXPECT_FALSE(file->Contains(2, INT64_MAX));
}

TEST_F(FileTest, WritingBelowPositionOneRaises9) {
  test::WriteBytes(name_, "abc");
  const auto file = Open();
  EXPECT_RAISES(9, file->Write(0, "x"));
  EXPECT_RAISES(9, file->WriteInt32(-3, 1));
  EXPECT_EQ(file->View(1, 3), "abc");
  EXPECT_EQ(file->Length(), 3);
}

TEST_F(FileTest, GrowthBeyondTheLastPositionRaises6BeforeAByteIsWritten) {
  test::WriteBytes(name_, "abc");
  {
    const auto file = Open();
    EXPECT_RAISES(6, file->Write(2147483648, "x"));
    EXPECT_RAISES(6, file->Write(2147483647, "xy"));
    EXPECT_RAISES(6, file->WriteInt32(2147483645, 1));
    EXPECT_RAISES(6, file->WriteZeros(4, 2147483645));
    EXPECT_RAISES(6, file->Write(INT64_MAX, "x"));
    EXPECT_EQ(file->Length(), 3);
  }
  EXPECT_EQ(test::ReadBytes(name_), "abc");
}

TEST_F(FileTest, WritingAViewOfTheSameFileSurvivesItsGrowth) {
  const auto file = Open();
  const std::string text(70000, 'q');
  file->Write(1, text);
  file->Write(file->Length() + 1, file->View(1, 70000));
  EXPECT_EQ(file->View(70001, 70000), text);
}

TEST_F(FileTest, MovingOverlappingBytesKeepsThem) {
  test::WriteBytes(name_, "abcdef");
  const auto file = Open();
  file->Move(1, 3, 4);
  EXPECT_EQ(file->View(1, 6), "ababcd");
  EXPECT_RAISES(9, file->Move(1, 4, 4));
  EXPECT_RAISES(9, file->Move(4, 1, 4));
}

TEST_F(FileTest, EveryOpeningHasItsOwnNumber) {
  const auto first = Open();
  const auto second = Open();
  EXPECT_NE(first->opening(), second->opening());
  EXPECT_EQ(first->Identity(), second->Identity());
}

TEST_F(FileTest, TwoOpeningsSeeOneAnothersWrites) {
  test::WriteBytes(name_, "abc");
  const auto first = Open();
  const auto second = Open();
  first->Write(2, "X");
  EXPECT_EQ(second->View(1, 3), "aXc");
}

TEST_F(FileTest, RefreshingTakesNoticeOfALengthThatAnotherProgramChanged) {
  test::WriteBytes(name_, "abc");
  const auto file = Open();
  std::ofstream(std::filesystem::path(NativeName(name_)), std::ios::binary | std::ios::app)
      << "def";
  EXPECT_EQ(file->Length(), 3);
  file->RefreshLength();
  EXPECT_EQ(file->View(1, 6), "abcdef");
}

// A mapping over plain memory whose disk has a size.
class SmallDisk final : public Mapping {
 public:
  explicit SmallDisk(std::int64_t capacity) : bytes_(static_cast<std::size_t>(capacity)) {
    base_ = bytes_.data();
  }
  FileIdentity Identity() const override { return {}; }
  void Refresh() override {}
  void Extend(std::int64_t size) override {
    asked_.push_back(size);
    if (size > static_cast<std::int64_t>(bytes_.size())) Raise(RunTimeError::kDiskFull);
    size_ = size;
  }
  void Trim(std::int64_t size) noexcept override { size_ = size; }
  bool Faulted() const noexcept override { return false; }

  const std::vector<std::int64_t>& asked() const { return asked_; }

 private:
  std::vector<char> bytes_;
  std::vector<std::int64_t> asked_;
};

TEST(FullDiskTest, TheStepShrinksToWhatIsNeeded) {
  auto disk = std::make_unique<SmallDisk>(10);
  const SmallDisk& watched = *disk;
  File file(std::move(disk));
  file.Write(1, "0123456789");
  EXPECT_EQ(file.View(1, 10), "0123456789");
  ASSERT_EQ(watched.asked().size(), 2U);
  EXPECT_GT(watched.asked()[0], 10);
  EXPECT_EQ(watched.asked()[1], 10);
}

TEST(FullDiskTest, GrowthBeyondItRaises61AndChangesNothing) {
  File file(std::make_unique<SmallDisk>(10));
  file.Write(1, "0123456789");
  EXPECT_RAISES(61, file.Write(9, "abc"));
  EXPECT_RAISES(61, file.WriteInt32(11, 1));
  EXPECT_EQ(file.Length(), 10);
  EXPECT_EQ(file.View(1, 10), "0123456789");
  file.Write(9, "ab");
  EXPECT_EQ(file.View(1, 10), "01234567ab");
}

class NumberedFilesTest : public testing::Test {
 protected:
  TempFolder folder_;
  NumberedFiles files_;
};

TEST_F(NumberedFilesTest, ANumberThatIsNotOpenIsNothingOr52) {
  EXPECT_EQ(files_.Find(1), nullptr);
  EXPECT_EQ(files_.Find(NumberedFiles::kCreation), nullptr);
  EXPECT_RAISES(52, files_.At(10));
  files_.Close(3);
}

TEST_F(NumberedFilesTest, OpeningANumberThatIsOpenClosesItFirst) {
  const std::uint64_t first = files_.Open(1, folder_.Name(L"a")).opening();
  files_.At(1).Write(1, "abc");
  const std::uint64_t second = files_.Open(1, folder_.Name(L"b")).opening();
  EXPECT_NE(first, second);
  EXPECT_EQ(files_.At(1).opening(), second);
  EXPECT_EQ(test::ReadBytes(folder_.Name(L"a")), "abc") << "closed means trimmed";
}

TEST_F(NumberedFilesTest, AFailedOpeningLeavesTheNumberClosed) {
  files_.Open(1, folder_.Name(L"a"));
  EXPECT_RAISES(76, files_.Open(1, folder_.Name(L"missing/a")));
  EXPECT_EQ(files_.Find(1), nullptr);
}

TEST_F(NumberedFilesTest, AFolderCannotBeOpened) {
  std::filesystem::create_directory(folder_.path() / "sub");
  EXPECT_RAISES(70, files_.Open(1, folder_.Name(L"sub")));
}

TEST_F(NumberedFilesTest, ClosingByIdentityClosesEveryNumberOnTheFile) {
  files_.Open(1, folder_.Name(L"a"));
  files_.Open(2, folder_.Name(L"b"));
  files_.Open(NumberedFiles::kCreation, folder_.Name(L"a"));
  files_.CloseOn(files_.At(1).Identity());
  EXPECT_EQ(files_.Find(1), nullptr);
  EXPECT_EQ(files_.Find(NumberedFiles::kCreation), nullptr);
  EXPECT_NE(files_.Find(2), nullptr);
}

TEST_F(NumberedFilesTest, ARetiredFileIsCutToLengthAndStillReadable) {
  File& file = files_.Open(1, folder_.Name(L"a"));
  file.Write(1, "abc");
  files_.Retire(1);
  EXPECT_EQ(files_.Find(1), nullptr);
  EXPECT_EQ(test::ReadBytes(folder_.Name(L"a")), "abc");
  EXPECT_EQ(file.View(1, 3), "abc");
  files_.ReleaseRetired();
}

TEST_F(NumberedFilesTest, TheScratchFileHasNoName) {
  File& scratch = files_.OpenScratch();
  scratch.WriteInt32(1, 0x04030201);
  EXPECT_EQ(scratch.View(1, 4), "\x01\x02\x03\x04");
  EXPECT_TRUE(std::filesystem::is_empty(folder_.path()));
}

TEST_F(NumberedFilesTest, ClosingAllFreesEveryNumber) {
  for (int number = 1; number <= 10; ++number) {
    files_.Open(number, folder_.Name(std::to_wstring(number)));
  }
  files_.CloseAll();
  for (int number = 1; number <= 10; ++number) EXPECT_EQ(files_.Find(number), nullptr);
}

TEST_F(NumberedFilesTest, MoreMapsThanThereIsRoomForRaise67AndLeaveTheOthersUsable) {
  std::vector<std::unique_ptr<File>> open;
  int raised = 0;
  for (int i = 0; i < 200 && raised == 0; ++i) {
    raised = test::RaisedBy(
        [&] { open.push_back(std::make_unique<File>(MapFile(folder_.Name(std::to_wstring(i))))); });
  }
  EXPECT_EQ(raised, 67);
  ASSERT_GE(open.size(), 11U);
  open.front()->Write(1, "abc");
  EXPECT_EQ(open.front()->View(1, 3), "abc");
  open.pop_back();
  EXPECT_EQ(test::RaisedBy([&] { MapFile(folder_.Name(L"again")); }), 0);
}

}  // namespace
}  // namespace orv::platform
