#include "dialogs/progress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dialogs/recording_interface.h"

namespace orv::dialogs {
namespace {

using test::RecordingInterface;
using testing::ElementsAre;
using testing::IsEmpty;
using LabelText = RecordingInterface::LabelText;
using Phase = RecordingInterface::Phase;

TEST(Progress, ShowsCaptionLabelAndBarAsTheyAreSet) {
  RecordingInterface screen;
  Progress dialog;
  dialog.Show(L"Сортировка данных");
  dialog.SetLabel(L"Загрузка...");
  dialog.SetRange(1, 4);
  for (int record = 1; record <= 4; record++) dialog.SetValue(record);
  dialog.SetLabel(L"Сортировка...");
  dialog.SetRange(1, 2);
  dialog.SetValue(2);
  EXPECT_FALSE(screen.LastDialog().closed);
  dialog.Close();

  const auto& shown = screen.LastDialog();
  EXPECT_EQ(shown.name, L"Progress");
  EXPECT_EQ(shown.caption, L"Сортировка данных");
  EXPECT_THAT(shown.texts, ElementsAre(LabelText{L"Label", L"Загрузка...", false},
                                       LabelText{L"Label", L"Сортировка...", false}));
  EXPECT_THAT(shown.phases, ElementsAre(Phase{1, 4, 4}, Phase{1, 2, 2}));
  EXPECT_TRUE(shown.closed);
  EXPECT_FALSE(shown.cancelled);
  EXPECT_THAT(screen.messages, IsEmpty());
}

TEST(Progress, PutsTheBarAtTheLowerEndOfANewRange) {
  Progress dialog;
  dialog.SetValue(7);
  dialog.SetRange(1, 9);
  EXPECT_EQ(dialog.minimum(), 1);
  EXPECT_EQ(dialog.maximum(), 9);
  EXPECT_EQ(dialog.value(), 1);
}

TEST(Progress, ShowsTheBusyPointerWhileItIsOpen) {
  RecordingInterface screen;
  Progress dialog;
  EXPECT_THAT(screen.pointer, IsEmpty());
  dialog.Show(L"x");
  EXPECT_THAT(screen.pointer, ElementsAre(true));
  dialog.Close();
  EXPECT_THAT(screen.pointer, ElementsAre(true, false));
  dialog.Close();
  EXPECT_THAT(screen.pointer, ElementsAre(true, false));
}

TEST(Progress, ClearsARequestLeftByAnEarlierOperationWhenItIsShown) {
  CancelRequest::Make();
  Progress dialog;
  EXPECT_TRUE(dialog.CancelRequested());
  dialog.Show(L"x");
  EXPECT_FALSE(dialog.CancelRequested());
  dialog.Close();
}

TEST(Progress, CancelsAtOnceWithoutAQuestion) {
  RecordingInterface screen;
  screen.pressCancel = {1, 2};
  Progress dialog;
  dialog.Show(L"x");
  dialog.SetRange(1, 5);
  int records = 0;
  for (int record = 1; record <= 5 && !dialog.CancelRequested(); record++) {
    dialog.SetValue(record);
    dialog.ServiceEvents();
    records++;
  }
  EXPECT_EQ(records, 2);
  EXPECT_THAT(screen.messages, IsEmpty());
  dialog.Close();
  EXPECT_TRUE(screen.LastDialog().cancelled);
}

TEST(Progress, KeepsTheRequestAndStaysHiddenWhenItIsWrittenAfterItClosed) {
  RecordingInterface screen;
  Progress dialog;
  dialog.Show(L"x");
  dialog.SetLabel(L"Загрузка...");
  dialog.SetRange(1, 5);
  dialog.OnCancel();
  dialog.Close();

  dialog.SetLabel(L"Сортировка...");
  dialog.SetRange(1, 2);
  dialog.SetValue(1);
  dialog.ServiceEvents();
  EXPECT_TRUE(dialog.CancelRequested());
  dialog.Close();

  ASSERT_EQ(screen.dialogs.size(), 1U);
  EXPECT_THAT(screen.LastDialog().texts, ElementsAre(LabelText{L"Label", L"Загрузка...", false}));
  EXPECT_THAT(screen.LastDialog().phases, ElementsAre(Phase{1, 5, 1}));
  EXPECT_THAT(screen.pointer, ElementsAre(true, false));
  EXPECT_EQ(screen.services, 1);
}

TEST(Progress, ClosesWhenAFailureUnwindsTheOperation) {
  RecordingInterface screen;
  EXPECT_THROW(
      {
        Progress dialog;
        dialog.Show(L"x");
        throw 5;
      },
      int);
  EXPECT_TRUE(screen.LastDialog().closed);
  EXPECT_THAT(screen.pointer, ElementsAre(true, false));
}

}  // namespace
}  // namespace orv::dialogs
