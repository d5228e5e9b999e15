#include "dialogs/message_boxes.h"

#include <gtest/gtest.h>

#include "dialogs/installed_interface.h"
#include "dialogs/recording_interface.h"

namespace orv::dialogs {
namespace {

using test::RecordingInterface;

TEST(SafeButton, IsCancelElseNoElseOk) {
  EXPECT_EQ(SafeButton(Buttons::kOkCancel), Button::kCancel);
  EXPECT_EQ(SafeButton(Buttons::kYesNo), Button::kNo);
  EXPECT_EQ(SafeButton(Buttons::kOk), Button::kOk);
}

TEST(HasButton, NamesExactlyTheButtonsOfTheBox) {
  EXPECT_TRUE(HasButton(Buttons::kOk, Button::kOk));
  EXPECT_FALSE(HasButton(Buttons::kOk, Button::kCancel));
  EXPECT_FALSE(HasButton(Buttons::kOk, Button::kYes));
  EXPECT_FALSE(HasButton(Buttons::kOk, Button::kNo));
  EXPECT_TRUE(HasButton(Buttons::kOkCancel, Button::kOk));
  EXPECT_TRUE(HasButton(Buttons::kOkCancel, Button::kCancel));
  EXPECT_FALSE(HasButton(Buttons::kOkCancel, Button::kYes));
  EXPECT_FALSE(HasButton(Buttons::kOkCancel, Button::kNo));
  EXPECT_TRUE(HasButton(Buttons::kYesNo, Button::kYes));
  EXPECT_TRUE(HasButton(Buttons::kYesNo, Button::kNo));
  EXPECT_FALSE(HasButton(Buttons::kYesNo, Button::kOk));
  EXPECT_FALSE(HasButton(Buttons::kYesNo, Button::kCancel));
}

TEST(ShowMessage, AnswersWithTheButtonPressed) {
  RecordingInterface screen;
  screen.answers = {Button::kYes, Button::kOk};
  EXPECT_EQ(ShowMessage({L"c", L"t", Icon::kQuestion, Buttons::kYesNo}), Button::kYes);
  EXPECT_EQ(ShowMessage({L"c", L"t", Icon::kQuestion, Buttons::kOkCancel}), Button::kOk);
}

TEST(ShowMessage, TakesAButtonThatTheBoxLacksForTheSafeOne) {
  RecordingInterface screen;
  screen.answers = {Button::kYes, Button::kOk, Button::kNo};
  EXPECT_EQ(ShowMessage({L"", L"", Icon::kNone, Buttons::kOkCancel}), Button::kCancel);
  EXPECT_EQ(ShowMessage({L"", L"", Icon::kNone, Buttons::kYesNo}), Button::kNo);
  EXPECT_EQ(ShowMessage({L"", L"", Icon::kNone, Buttons::kOk}), Button::kOk);
}

TEST(ShowNotice, ShowsABoxWithAnOkButton) {
  RecordingInterface screen;
  ShowNotice(L"Таблица пуста!", Icon::kExclamation, L"ORV DataBase Server");
  ShowNotice(L"Invalid ID", Icon::kNone);
  ASSERT_EQ(screen.messages.size(), 2U);
  EXPECT_EQ(screen.messages[0].caption, L"ORV DataBase Server");
  EXPECT_EQ(screen.messages[0].text, L"Таблица пуста!");
  EXPECT_EQ(screen.messages[0].icon, Icon::kExclamation);
  EXPECT_EQ(screen.messages[0].buttons, Buttons::kOk);
  EXPECT_EQ(screen.messages[1].caption, L"");
  EXPECT_EQ(screen.messages[1].icon, Icon::kNone);
}

TEST(ConfirmOverwrite, AsksInTwoLinesAndOnlyOkAllowsIt) {
  RecordingInterface screen;
  screen.answers = {Button::kOk, Button::kCancel};
  EXPECT_TRUE(ConfirmOverwrite());
  EXPECT_FALSE(ConfirmOverwrite());
  EXPECT_FALSE(ConfirmOverwrite());
  ASSERT_EQ(screen.messages.size(), 3U);
  EXPECT_EQ(screen.messages[0].caption, L"ORV Server v1.0");
  EXPECT_EQ(screen.messages[0].text, L"Файл уже существует!\rЗаписать вместо него?");
  EXPECT_EQ(screen.messages[0].icon, Icon::kNone);
  EXPECT_EQ(screen.messages[0].buttons, Buttons::kOkCancel);
}

TEST(InstallUserInterface, ReturnsTheFormerOneAndNullForTheSilentOne) {
  RecordingInterface* const first = new RecordingInterface;
  EXPECT_EQ(&InstalledInterface(), first);
  EXPECT_EQ(InstallUserInterface(nullptr), first);
  EXPECT_NE(&InstalledInterface(), first);
  EXPECT_EQ(InstallUserInterface(first), nullptr);
  delete first;
  EXPECT_EQ(InstallUserInterface(nullptr), nullptr);
}

TEST(Beep, SoundsOnTheInstalledInterface) {
  RecordingInterface screen;
  Beep();
  EXPECT_EQ(screen.beeps, 1);
}

}  // namespace
}  // namespace orv::dialogs
