// Dictionary fields with an index of every width: writing, reading, searches and views agree.
#include <string>

#include <gtest/gtest.h>

#include "support/container_bytes.h"
#include "support/driver.h"
#include "support/styled_file.h"

namespace orv {
namespace {

namespace styled = test::styled;

class DictionaryWidthTest : public testing::TestWithParam<int> {
 protected:
  static constexpr int kRecords = 300;

  void SetUp() override {
    MakeStyledFile(db_);
    db_.AddRecords(L"", kRecords, 1);
    db_.CloseAll();
    test::ContainerBytes file(db_.Bytes());
    file.MakeDictionary(file.Root(), styled::kDictionary, GetParam());
    test::WriteBytes(db_.file(), file.bytes());
    for (int r = 1; r <= kRecords; ++r) {
      if (r % 7 != 0) db_.Set(L"", r, styled::kDictionary, Text(r));
    }
    ASSERT_EQ(db_.Error(), 0);
  }
  static std::string Text(int r) { return r % 7 == 0 ? "" : "value-" + std::to_string(r % 280); }
  int Find(std::wstring value, std::int32_t from, bool inCell) {
    std::wstring path = db_.Path();
    std::int32_t record = from;
    std::int16_t field = styled::kDictionary;
    std::int16_t region = 0;
    std::int16_t direct = 0;
    Boolean within = ToBoolean(inCell);
    Boolean exact = Boolean::kFalse;
    return db_.engine.MtxFindFirst(path, record, field, value, region, within, direct, exact);
  }

  test::Driver db_;
};
INSTANTIATE_TEST_SUITE_P(Bytes, DictionaryWidthTest, testing::Values(1, 2, 4, 8));

TEST_P(DictionaryWidthTest, EveryRecordReadsWhatWasWritten) {
  for (int r = 1; r <= kRecords; ++r) {
    EXPECT_EQ(db_.Get(L"", r, styled::kDictionary), Text(r)) << r;
  }
  // 240 distinct values and the empty text: a byte suffices until the last ones.
  db_.CloseAll();
  for (int i = 0; i < 30; ++i) db_.Set(L"", 7, styled::kDictionary, "more " + std::to_string(i));
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Get(L"", 7, styled::kDictionary), "more 29");
  EXPECT_EQ(db_.Get(L"", 300, styled::kDictionary), Text(300));
}

TEST_P(DictionaryWidthTest, SearchesFindTheFirstRecordOfAValue) {
  EXPECT_EQ(Find(L"value-20", 1, false), 20);
  EXPECT_EQ(Find(L"value-20", 21, false), 300);
  EXPECT_EQ(Find(L"ALUE-19", 1, true), 19);
  EXPECT_EQ(Find(L"none of them", 1, false), -1);
  EXPECT_EQ(db_.Error(), 0);
}

TEST_P(DictionaryWidthTest, ViewsCountTheRecordsOfAValue) {
  EXPECT_EQ(db_.Records(L"/f(5)=\"value-20\""), 2);
  EXPECT_EQ(db_.Records(L"/f(5)<>\"value-20\""), kRecords - 2);
  EXPECT_EQ(db_.Records(L"/f(5)=none"), 0);
  EXPECT_EQ(db_.Records(L"/(cell(rec,5)=\"\")"), kRecords / 7);
}

}  // namespace
}  // namespace orv
