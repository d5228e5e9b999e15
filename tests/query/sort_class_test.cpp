// SortData: its refusals, its dialog, and that it leaves the file alone.
#include "query/sort_class.h"

#include <string>

#include <gtest/gtest.h>

#include "dialogs/recording_interface.h"
#include "engine/component.h"
#include "support/driver.h"

namespace orv {
namespace {

using test::Driver;
using test::RecordingInterface;

constexpr const wchar_t* kCaption = L"ORV DataBase Server";

class SortClassTest : public testing::Test {
 protected:
  void Make(int records, int fields = 2) {
    db_.Use(std::to_wstring(++files_) + L".orv");
    db_.New();
    if (fields > 0) db_.AddFields(L"", fields, 1);
    if (records > 0) db_.AddRecords(L"", records, 1);
    for (int r = 1; r <= records; ++r) db_.Set(L"", r, 1, std::to_string(records - r));
  }
  void Sort(int f, std::wstring_view steps = {}) {
    std::wstring path = db_.Path(steps);
    auto field = static_cast<std::int16_t>(f);
    db_.engine.SortData(path, field);
  }
  void ExpectRefusal(const std::wstring& text, Icon icon) {
    ASSERT_EQ(seen_.messages.size(), 1U);
    EXPECT_EQ(seen_.messages[0].caption, kCaption);
    EXPECT_EQ(seen_.messages[0].text, text);
    EXPECT_EQ(seen_.messages[0].icon, icon);
    EXPECT_EQ(seen_.messages[0].buttons, Buttons::kOk);
    EXPECT_TRUE(seen_.dialogs.empty());
  }

  Driver db_;
  int files_ = 0;
  RecordingInterface seen_;
};

TEST_F(SortClassTest, LoadsAndSortsBehindTheDialog) {
  Make(5);
  Sort(1);
  EXPECT_TRUE(seen_.messages.empty());
  ASSERT_EQ(seen_.dialogs.size(), 1U);
  const RecordingInterface::Shown& dialog = seen_.dialogs[0];
  EXPECT_EQ(dialog.name, L"Progress");
  EXPECT_EQ(dialog.caption, L"Сортировка данных");
  EXPECT_EQ(dialog.texts, (std::vector<RecordingInterface::LabelText>{
                              {L"Label", L"Загрузка..."}, {L"Label", L"Сортировка..."}}));
  EXPECT_EQ(dialog.phases, (std::vector<RecordingInterface::Phase>{{1, 5, 5}, {1, 2, 2}}));
  EXPECT_TRUE(dialog.closed);
  EXPECT_FALSE(dialog.cancelled);
  EXPECT_EQ(seen_.pointer, (std::vector<bool>{true, false}));
  EXPECT_EQ(seen_.services, 2 * 5 + 2);
  EXPECT_EQ(db_.Error(), 0);
}

TEST_F(SortClassTest, TheFileKeepsItsBytes) {
  Make(9);
  db_.CloseAll();
  const std::string before = db_.Bytes();
  Sort(1);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), before);
}

TEST_F(SortClassTest, AViewIsRefusedBeforeAnythingIsCounted) {
  Make(1);
  Sort(99, L"/f(1)=0");
  ASSERT_EQ(seen_.messages.size(), 1U);
  EXPECT_EQ(seen_.messages[0].text,
            L"Невозможно сортироварь данные под фильтром!\rОчистите фильтр и повторите попытку.");
  EXPECT_EQ(seen_.messages[0].icon, Icon::kCritical);
  EXPECT_EQ(seen_.messages[0].caption, kCaption);
}

TEST_F(SortClassTest, AnErrorIsShownWithItsNumber) {
  Make(3);
  Sort(1, L"/[1,1]");
  ExpectRefusal(L"Произошла ошибка № 19\rПроцесс сортировки невозможен", Icon::kCritical);
  EXPECT_EQ(db_.Error(), 19);
}

TEST_F(SortClassTest, FewerThanTwoRecordsAreNotEnough) {
  for (const int records : {0, 1}) {
    Make(records);
    seen_.messages.clear();
    Sort(1);
    ExpectRefusal(L"Недостаточно данных для сортировки!\rТаблица содержит менее двух записей.",
                  Icon::kExclamation);
  }
}

TEST_F(SortClassTest, AMatrixWithoutFieldsIsEmpty) {
  Make(2, 1);
  std::wstring path = db_.Path();
  std::int16_t field = 1;
  db_.engine.CmdDelFld(path, field);
  Sort(1);
  ExpectRefusal(L"Таблица пуста!", Icon::kExclamation);
}

TEST_F(SortClassTest, TheFieldNumberIsChecked) {
  Make(3);
  for (const int f : {0, 3, -1}) {
    seen_.messages.clear();
    Sort(f);
    ExpectRefusal(L"Неверно указан номер поля!", Icon::kCritical);
  }
}

/// A dBASE III table with one field of four bytes.
std::string DbaseTable(int records) {
  std::string bytes(32, '\0');
  bytes[0] = 3;
  bytes[4] = static_cast<char>(records);
  bytes[8] = 65;
  bytes[10] = 5;
  std::string field("NAME");
  field.resize(32, '\0');
  field[16] = 4;
  bytes += field + "\r";
  for (int r = 0; r < records; ++r) bytes += " abcd";
  return bytes;
}

TEST_F(SortClassTest, ADbaseTableIsRefusedLast) {
  db_.Use(L"table.dbf");
  test::WriteBytes(db_.file(), DbaseTable(3));
  Sort(1);
  ExpectRefusal(L"Сортировка не возможна Неверно указан номер поля!", Icon::kCritical);
  seen_.messages.clear();
  Sort(2);
  ExpectRefusal(L"Неверно указан номер поля!", Icon::kCritical);
}

TEST_F(SortClassTest, ACancelWhileLoadingLetsOnePassThrough) {
  Make(10);
  seen_.pressCancel = {.phase = 1, .value = 4};
  Sort(1);
  const RecordingInterface::Shown& dialog = seen_.LastDialog();
  EXPECT_TRUE(dialog.cancelled);
  EXPECT_TRUE(dialog.closed);
  EXPECT_EQ(dialog.phases, (std::vector<RecordingInterface::Phase>{{1, 10, 4}}));
  EXPECT_EQ(seen_.services, 2 * 4 + 1);
  EXPECT_TRUE(seen_.messages.empty());
}

TEST_F(SortClassTest, ACancelWhileSortingEndsTheSort) {
  Make(10);
  seen_.pressCancel = {.phase = 2, .value = 3};
  Sort(1);
  const RecordingInterface::Shown& dialog = seen_.LastDialog();
  EXPECT_TRUE(dialog.cancelled);
  EXPECT_EQ(dialog.phases, (std::vector<RecordingInterface::Phase>{{1, 10, 10}, {1, 5, 3}}));
  EXPECT_TRUE(seen_.messages.empty());
}

TEST_F(SortClassTest, AnEarlierCancelHasNoEffect) {
  Make(6);
  dialogs::CancelRequest::Make();
  Sort(1);
  EXPECT_EQ(seen_.LastDialog().phases,
            (std::vector<RecordingInterface::Phase>{{1, 6, 6}, {1, 3, 3}}));
}

TEST_F(SortClassTest, FilesClosedByAHostCallAreOpenedAgain) {
  Make(8);
  int calls = 0;
  seen_.onServiceEvents = [&] {
    if (++calls == 5) db_.CloseAll();
  };
  Sort(1);
  EXPECT_EQ(seen_.LastDialog().phases,
            (std::vector<RecordingInterface::Phase>{{1, 8, 8}, {1, 4, 4}}));
  EXPECT_EQ(db_.Error(), 0);
}

TEST_F(SortClassTest, IndexingDoesNothing) {
  Make(2);
  const std::string before = db_.Bytes();
  engine::Component::Instance().sort.Indexing(db_.Path(), 1);
  EXPECT_EQ(db_.Bytes(), before);
  EXPECT_TRUE(seen_.messages.empty());
}

}  // namespace
}  // namespace orv
