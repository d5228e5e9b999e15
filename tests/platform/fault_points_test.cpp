// Which operations of the file layer can be made to fail.
#include "platform/fault_points.h"

#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "platform/file.h"
#include "platform/file_names.h"
#include "platform/output_file.h"
#include "support/raises.h"
#include "support/temp_folder.h"

namespace orv::platform {
namespace {

class Recorder : public FaultPoints {
 public:
  Recorder() { installedFaultPoints = this; }
  ~Recorder() override { installedFaultPoints = nullptr; }

  bool Before(FileOperation operation) override {
    met.push_back(operation);
    if (operation == refused) Raise(RunTimeError::kDeviceIo);
    return operation != leftOut;
  }

  std::vector<FileOperation> met;
  std::optional<FileOperation> refused;
  std::optional<FileOperation> leftOut;
};

class FaultPointsTest : public testing::Test {
 protected:
  using Operations = std::vector<FileOperation>;
  static constexpr auto kStore = FileOperation::kStore;
  static constexpr auto kGrow = FileOperation::kGrow;

  test::TempFolder folder_;
  std::wstring name_ = folder_.Name(L"file");
  NumberedFiles files_;
};

TEST_F(FaultPointsTest, OpeningGrowingStoringTrimmingAndClosingAreAskedFor) {
  Recorder recorder;
  File& file = files_.Open(1, name_);
  file.Write(1, "text");
  file.WriteInt32(1, 7);
  file.WriteZeros(5, 3);
  file.Move(1, 2, 3);
  files_.Close(1);
  EXPECT_EQ(recorder.met, (Operations{FileOperation::kOpen, kGrow, kStore, kStore, kStore, kStore,
                                      FileOperation::kTrim, FileOperation::kClose}));
}

TEST_F(FaultPointsTest, ReadingAsksNothing) {
  test::WriteBytes(name_, "0123456789");
  const File& file = files_.Open(1, name_);
  Recorder recorder;
  EXPECT_EQ(file.View(2, 3), "123");
  EXPECT_EQ(file.ByteAt(1), '0');
  EXPECT_EQ(file.Int32At(20), 0);
  EXPECT_EQ(recorder.met, Operations());
}

TEST_F(FaultPointsTest, AStoreThatIsRefusedWritesNothing) {
  test::WriteBytes(name_, "0123456789");
  Recorder recorder;
  recorder.refused = kStore;
  File& file = files_.Open(1, name_);
  EXPECT_RAISES(57, file.Write(1, "text"));
  EXPECT_RAISES(57, file.WriteByte(1, 7));
  EXPECT_RAISES(57, file.Fill(1, 2, 'x'));
  EXPECT_RAISES(57, file.Move(1, 3, 2));
  EXPECT_EQ(file.View(1, 10), "0123456789");
}

TEST_F(FaultPointsTest, AGrowthThatIsRefusedLeavesTheFileAsItWas) {
  test::WriteBytes(name_, "0123456789");
  Recorder recorder;
  recorder.refused = kGrow;
  File& file = files_.Open(1, name_);
  EXPECT_RAISES(57, file.Write(8, "text"));
  EXPECT_EQ(file.Length(), 10);
  EXPECT_EQ(file.View(1, 10), "0123456789");
}

TEST_F(FaultPointsTest, ATrimmingThatIsLeftOutLeavesZeros) {
  Recorder recorder;
  recorder.leftOut = FileOperation::kTrim;
  files_.Open(1, name_).Write(1, "text");
  files_.Close(1);
  const std::string bytes = test::ReadBytes(name_);
  EXPECT_GT(bytes.size(), 4U);
  EXPECT_EQ(bytes.find_first_not_of('\0', 4), std::string::npos);
}

TEST_F(FaultPointsTest, ScratchFilesDeletionsAndOutputFilesAreAskedFor) {
  test::WriteBytes(name_, "");
  Recorder recorder;
  files_.OpenScratch();
  DeleteFile(name_);
  const auto output = CreateOutputFile(name_);
  output->Write("text");
  output->Close();
  EXPECT_EQ(recorder.met, (Operations{FileOperation::kScratch, FileOperation::kDelete,
                                      FileOperation::kOutputCreate, FileOperation::kOutputWrite,
                                      FileOperation::kOutputClose}));
}

TEST_F(FaultPointsTest, EachOfTheseCanBeRefused) {
  test::WriteBytes(name_, "there");
  Recorder recorder;
  recorder.refused = FileOperation::kScratch;
  EXPECT_RAISES(57, files_.OpenScratch());
  recorder.refused = FileOperation::kDelete;
  EXPECT_RAISES(57, DeleteFile(name_));
  recorder.refused = FileOperation::kOpen;
  EXPECT_RAISES(57, files_.Open(1, name_));
  recorder.refused = FileOperation::kOutputCreate;
  EXPECT_RAISES(57, CreateOutputFile(name_));
  EXPECT_EQ(test::ReadBytes(name_), "there");
  recorder.refused = FileOperation::kOutputWrite;
  EXPECT_RAISES(57, CreateOutputFile(name_)->Write("text"));
  recorder.refused = FileOperation::kOutputClose;
  EXPECT_RAISES(57, CreateOutputFile(name_)->Close());
}

}  // namespace
}  // namespace orv::platform
