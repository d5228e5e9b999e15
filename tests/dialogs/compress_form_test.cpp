#include "dialogs/compress_form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dialogs/recording_interface.h"

namespace orv::dialogs {
namespace {

using test::RecordingInterface;
using testing::ElementsAre;
using testing::IsEmpty;
using LabelText = RecordingInterface::LabelText;
using Step = CompressForm::Step;

std::vector<std::wstring> LabelNames(const Dialog& dialog) {
  std::vector<std::wstring> names;
  for (const DialogLabel& label : dialog.labels()) names.push_back(label.name);
  return names;
}

TEST(CompressForm, StandsWithThreeStepsWithoutResults) {
  const CompressForm dialog([](CompressForm&) {});
  EXPECT_THAT(LabelNames(dialog), ElementsAre(L"Label", L"Steps(1)", L"Steps(2)", L"Steps(3)",
                                              L"StpRes(1)", L"StpRes(2)", L"StpRes(3)"));
  EXPECT_EQ(dialog.name(), L"CompressForm");
  EXPECT_EQ(dialog.labels()[1].text, L"Анализ данных таблицы");
  EXPECT_EQ(dialog.labels()[2].text, L"Создание словаря");
  EXPECT_EQ(dialog.labels()[3].text, L"Обновление данных");
  for (int result = 4; result <= 6; result++) {
    EXPECT_EQ(dialog.labels()[static_cast<std::size_t>(result)].text, L"");
  }
}

TEST(CompressForm, ShowsStepsRunningInBoldAndFinishedPlain) {
  RecordingInterface screen;
  CompressForm dialog([](CompressForm& shown) {
    shown.RunStep(Step::kAnalysis);
    shown.ShowResult(Step::kAnalysis, L"99% - Эфективность метода");
    shown.FinishStep(Step::kAnalysis);
    shown.RunStep(Step::kDictionary);
    shown.ShowDone(Step::kUpdate);
    shown.FinishStep(Step::kDictionary);
    shown.RunStep(Step::kUpdate);
    shown.ShowDone(Step::kDictionary);
    shown.FinishStep(Step::kUpdate);
    shown.Close();
  });
  dialog.RunModal();
  EXPECT_THAT(screen.LastDialog().texts,
              ElementsAre(LabelText{L"Steps(1)", L"» Анализ данных таблицы...", true},
                          LabelText{L"StpRes(1)", L"99% - Эфективность метода", false},
                          LabelText{L"Steps(1)", L"Анализ данных таблицы", false},
                          LabelText{L"Steps(2)", L"» Создание словаря...", true},
                          LabelText{L"StpRes(3)", L"Выполнено", false},
                          LabelText{L"Steps(2)", L"Создание словаря", false},
                          LabelText{L"Steps(3)", L"» Обновление данных...", true},
                          LabelText{L"StpRes(2)", L"Выполнено", false},
                          LabelText{L"Steps(3)", L"Обновление данных", false}));
}

TEST(CompressForm, AppendsTheStyleInQuotesToTheHeading) {
  RecordingInterface screen;
  CompressForm dialog([](CompressForm& shown) {
    shown.AppendHeading(L"Словарный");
    shown.Close();
  });
  const std::wstring heading = dialog.labels()[0].text;
  dialog.RunModal();
  EXPECT_THAT(screen.LastDialog().texts,
              ElementsAre(LabelText{L"Label", heading + L"\"Словарный\"", false}));
}

TEST(CompressForm, HidesUnusedSteps) {
  RecordingInterface screen;
  CompressForm dialog([](CompressForm& shown) {
    shown.HideStep(Step::kAnalysis);
    shown.HideStep(Step::kDictionary);
    shown.Close();
  });
  dialog.RunModal();
  EXPECT_THAT(screen.LastDialog().hidden, ElementsAre(L"Steps(1)", L"Steps(2)"));
  EXPECT_THAT(screen.LastDialog().texts, IsEmpty());
  EXPECT_TRUE(dialog.labels()[3].visible);
}

TEST(CompressForm, AsksBeforeItCancels) {
  RecordingInterface screen;
  screen.answers = {Button::kNo, Button::kYes};
  std::vector<bool> requested;
  CompressForm dialog([&requested](CompressForm& shown) {
    shown.OnCancel();
    requested.push_back(DialogModel::CancelRequested());
    shown.OnCancel();
    requested.push_back(DialogModel::CancelRequested());
    EXPECT_FALSE(shown.closed()) << "the running loop closes the dialog, not the button";
    shown.Close();
  });
  dialog.RunModal();
  EXPECT_THAT(requested, ElementsAre(false, true));
  EXPECT_TRUE(screen.LastDialog().cancelled);
  ASSERT_EQ(screen.messages.size(), 2U);
  EXPECT_EQ(screen.messages[0].caption, L"ORV DBServer");
  EXPECT_EQ(screen.messages[0].text,
            L"Вы действительно хотите отменить изменение способа храниения данных?\r"
            L"Никакие данные не будут повреждены в любом случае!");
  EXPECT_EQ(screen.messages[0].icon, Icon::kQuestion);
  EXPECT_EQ(screen.messages[0].buttons, Buttons::kYesNo);
}

TEST(CompressForm, StaysOpenUntilAPersonClosesItWhenItsWorkDidNothing) {
  RecordingInterface screen;
  screen.answers = {Button::kNo, Button::kYes};
  screen.onRunModal = [](Dialog& dialog) {
    dialog.OnTimer();
    EXPECT_FALSE(dialog.closed());
    dialog.OnCancel();
    EXPECT_FALSE(dialog.closed()) << "the question was answered with No";
    dialog.OnCancel();
    EXPECT_TRUE(dialog.closed());
  };
  CompressForm dialog([](CompressForm&) {});
  dialog.RunModal();
  EXPECT_TRUE(screen.LastDialog().cancelled);
}

TEST(CompressForm, IsClosedWithoutAQuestionByItsCloseBoxWhenNothingRuns) {
  RecordingInterface screen;
  CompressForm dialog([](CompressForm&) {});
  dialog.RunModal();
  EXPECT_TRUE(screen.LastDialog().closed);
  EXPECT_FALSE(screen.LastDialog().cancelled);
  EXPECT_THAT(screen.messages, IsEmpty());
}

TEST(CompressForm, ClearsARequestLeftByAnEarlierOperation) {
  CancelRequest::Make();
  bool requested = true;
  CompressForm dialog([&requested](CompressForm& shown) {
    requested = DialogModel::CancelRequested();
    shown.Close();
  });
  dialog.RunModal();
  EXPECT_FALSE(requested);
}

TEST(CompressForm, RestoresThePointerThatItsWorkLeftBusyWhenItFailed) {
  RecordingInterface screen;
  CompressForm dialog([](CompressForm& shown) {
    shown.SetBusyPointer(true);
    throw 5;
  });
  EXPECT_THROW(dialog.RunModal(), int);
  EXPECT_THAT(screen.pointer, ElementsAre(true, false));
}

}  // namespace
}  // namespace orv::dialogs
