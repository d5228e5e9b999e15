#include "dialogs/cr_flt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dialogs/recording_interface.h"
#include "platform/run_time_error.h"

namespace orv::dialogs {
namespace {

using test::RecordingInterface;
using testing::ElementsAre;
using testing::IsEmpty;
using LabelText = RecordingInterface::LabelText;
using Phase = RecordingInterface::Phase;

constexpr std::int32_t kRecords = 10;

// A loop like the filter builder's: the request is tested before events are serviced.
int CountRecords(CrFlt& dialog) {
  dialog.SetRange(0, kRecords);
  int taken = 0;
  for (std::int32_t record = 1; record <= kRecords; record++) {
    dialog.SetValue(record);
    if (DialogModel::CancelRequested()) break;
    dialog.ServiceEvents();
    taken++;
  }
  return taken;
}

TEST(CrFlt, RunsItsWorkOnceAndCloses) {
  RecordingInterface screen;
  int taken = 0;
  CrFlt dialog([&taken](CrFlt& shown) {
    shown.SetLabel(L"f(2)=abc");
    taken += CountRecords(shown);
  });
  dialog.RunModal();
  EXPECT_EQ(taken, kRecords);
  EXPECT_EQ(screen.LastDialog().name, L"CrFlt");
  EXPECT_THAT(screen.LastDialog().texts, ElementsAre(LabelText{L"Label", L"f(2)=abc", false}));
  EXPECT_THAT(screen.LastDialog().phases, ElementsAre(Phase{0, kRecords, kRecords}));
  EXPECT_TRUE(screen.LastDialog().closed);
  EXPECT_THAT(screen.messages, IsEmpty());
  EXPECT_THAT(screen.pointer, IsEmpty());
}

TEST(CrFlt, AsksBeforeItCancelsAndGoesOnAfterNo) {
  RecordingInterface screen;
  screen.pressCancel = {1, 4};
  screen.answers = {Button::kNo};
  int taken = 0;
  CrFlt dialog([&taken](CrFlt& shown) { taken = CountRecords(shown); });
  dialog.RunModal();
  EXPECT_EQ(taken, kRecords);
  EXPECT_FALSE(screen.LastDialog().cancelled);
  ASSERT_EQ(screen.messages.size(), 1U);
  EXPECT_EQ(screen.messages[0].caption, L"ORV DB Server");
  EXPECT_EQ(screen.messages[0].text,
            L"Если прервать создание фильтра то возможно будут паказаны не все записи "
            L"удовлетворяющие условие.\rВы хотите прервать создание фильтра в любом случае?");
  EXPECT_EQ(screen.messages[0].icon, Icon::kQuestion);
  EXPECT_EQ(screen.messages[0].buttons, Buttons::kYesNo);
}

TEST(CrFlt, CancelAtTheBarsPositionKeepsTheRecordsUpToIt) {
  for (const std::int32_t place : {0, 1, 4, kRecords}) {
    RecordingInterface screen;
    screen.pressCancel = {1, place};
    screen.answers = {Button::kYes};
    int taken = 0;
    CrFlt dialog([&taken](CrFlt& shown) {
      shown.SetRange(0, kRecords);
      shown.ServiceEvents();
      taken = CountRecords(shown);
    });
    dialog.RunModal();
    EXPECT_EQ(taken, place);
    EXPECT_TRUE(screen.LastDialog().cancelled);
  }
}

TEST(CrFlt, ClearsARequestLeftByAnEarlierOperation) {
  CancelRequest::Make();
  int taken = 0;
  CrFlt dialog([&taken](CrFlt& shown) { taken = CountRecords(shown); });
  dialog.RunModal();
  EXPECT_EQ(taken, kRecords);
}

TEST(CrFlt, ClosesAndHandsOnTheFailureOfItsWork) {
  RecordingInterface screen;
  CrFlt dialog([](CrFlt&) { platform::Raise(platform::RunTimeError::kSubscript); });
  try {
    dialog.RunModal();
    FAIL() << "the failure was swallowed";
  } catch (const platform::RunTimeFailure& failure) {
    EXPECT_EQ(failure.number(), platform::RunTimeError::kSubscript);
  }
  EXPECT_TRUE(screen.LastDialog().closed);
}

TEST(CrFlt, ThrowsNothingIntoTheInterfaceThatStartsItsWork) {
  RecordingInterface screen;
  bool returned = false;
  screen.onRunModal = [&returned](Dialog& dialog) {
    dialog.OnTimer();
    returned = true;
  };
  CrFlt dialog([](CrFlt&) { throw 5; });
  EXPECT_THROW(dialog.RunModal(), int);
  EXPECT_TRUE(returned);
}

TEST(CrFlt, TreatsItsCloseBoxAsTheCancelButtonWhileItRuns) {
  RecordingInterface screen;
  screen.answers = {Button::kYes};
  CrFlt dialog([](CrFlt& shown) {
    shown.OnClose();
    EXPECT_FALSE(shown.closed());
    EXPECT_TRUE(DialogModel::CancelRequested());
  });
  dialog.RunModal();
  EXPECT_EQ(screen.messages.size(), 1U);
}

TEST(CrFlt, OneDialogCanStandOnAnother) {
  RecordingInterface screen;
  CrFlt outer([](CrFlt& shown) {
    shown.SetRange(0, 2);
    CrFlt inner([](CrFlt& innerShown) { innerShown.SetRange(0, 7); });
    inner.RunModal();
    shown.SetValue(1);
  });
  outer.RunModal();
  ASSERT_EQ(screen.dialogs.size(), 2U);
  EXPECT_THAT(screen.dialogs[0].phases, ElementsAre(Phase{0, 2, 1}));
  EXPECT_THAT(screen.dialogs[1].phases, ElementsAre(Phase{0, 7, 0}));
  EXPECT_TRUE(screen.AllClosed());
}

}  // namespace
}  // namespace orv::dialogs
