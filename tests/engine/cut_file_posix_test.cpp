// Files that another program cuts short under their map. Windows refuses to cut a mapped file.
#include <string>

#include <gtest/gtest.h>

#include "support/driver.h"
#include "support/temp_folder.h"

namespace orv {
namespace {

using test::Driver;

class CutFileTest : public testing::Test {
 protected:
  static constexpr int kRecords = 5000;
  void SetUp() override {
    db_.New("cut");
    db_.AddFields(L"", 1, 1);
    db_.AddRecords(L"", kRecords, 1);
    for (int r = 1; r <= kRecords; ++r) db_.Set(L"", r, 1, std::string(100, 'x'));
    db_.CloseAll();
    ASSERT_EQ(db_.Get(L"", kRecords, 1), std::string(100, 'x'));
  }

  Driver db_;
};

TEST_F(CutFileTest, AReadOfALostPageIs57AndTheNextCallSeesWhatIsLeft) {
  test::ResizeFile(db_.file(), 5000);
  db_.Get(L"", kRecords, 1);
  EXPECT_EQ(db_.Error(), 57);
  EXPECT_EQ(db_.Title(), "cut");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Get(L"", kRecords, 1), "");
  EXPECT_EQ(db_.Error(), 9);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes().size(), 5000U);
}

TEST_F(CutFileTest, AWriteIntoALostPageIs57) {
  test::ResizeFile(db_.file(), 5000);
  db_.Set(L"", kRecords, 1, std::string(100, 'y'));
  EXPECT_EQ(db_.Error(), 57);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes().size(), 5000U);
}

TEST_F(CutFileTest, GrowthOfACutFileIs57EvenWhenNoPageWasLost) {
  const std::size_t whole = db_.Bytes().size();
  test::ResizeFile(db_.file(), whole - 1);
  db_.Put(L"", 1, 1, std::string(100000, 't'));
  EXPECT_EQ(db_.Error(), 57);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes().size(), whole - 1) << "the lost byte is not replaced by a zero";
}

}  // namespace
}  // namespace orv
