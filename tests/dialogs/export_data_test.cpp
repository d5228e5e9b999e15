#include "dialogs/export_data.h"

#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dialogs/recording_interface.h"
#include "platform/run_time_error.h"

namespace orv::dialogs {
namespace {

using platform::RunTimeError;
using platform::RunTimeFailure;
using test::RecordingInterface;
using testing::ElementsAre;
using testing::IsEmpty;
using Format = ExportData::Format;
using LabelText = RecordingInterface::LabelText;
using Step = ExportData::Step;

// Writes down what the wizard asks of it.
class FakeWork : public ExportWork {
 public:
  bool exists = false;
  std::function<void(ExportData&)> save = [](ExportData& dialog) { dialog.Finish(); };
  std::string fails;  // the function that raises a failure
  std::vector<std::string> calls;

  bool TargetExists() override {
    Call("exists");
    return exists;
  }
  void DeleteTarget() override { Call("delete"); }
  void SaveAsText(ExportData& dialog) override { Save("text", dialog); }
  void SaveAsOrvImage(ExportData& dialog) override { Save("image", dialog); }
  void SaveAsOrvWithProp(ExportData& dialog) override { Save("prop", dialog); }
  void DiscardTarget() override { Call("discard"); }

 private:
  void Call(const std::string& name) {
    calls.push_back(name);
    if (name == fails) platform::Raise(RunTimeError::kPermissionDenied);
  }
  void Save(const std::string& name, ExportData& dialog) {
    Call(name);
    save(dialog);
  }
};

constexpr wchar_t kStartFailure[] =
    L"Произошла ошибка открытия фала получателя данных. Попробуйте повторить попытку.";
constexpr wchar_t kWriteFailure[] =
    L"Произошла ошибка во время записи данных. Попробуйте повторить попытку.";

TEST(ExportData, ExportsTextAndCloses) {
  RecordingInterface screen;
  FakeWork work;
  ExportData dialog(work, Format::kText, true);
  dialog.RunModal();
  EXPECT_THAT(work.calls, ElementsAre("exists", "text"));
  EXPECT_EQ(dialog.step(), Step::kFinished);
  EXPECT_EQ(screen.LastDialog().name, L"ExportData");
  EXPECT_TRUE(screen.LastDialog().closed);
  EXPECT_THAT(screen.messages, IsEmpty());
}

TEST(ExportData, ExportsAContainerWithPropertiesOrWithoutAsChosen) {
  FakeWork with;
  ExportData(with, Format::kContainer, true).RunModal();
  EXPECT_THAT(with.calls, ElementsAre("exists", "prop"));
  FakeWork without;
  ExportData(without, Format::kContainer, false).RunModal();
  EXPECT_THAT(without.calls, ElementsAre("exists", "image"));
}

TEST(ExportData, TakesTheChoiceMadeOnItsSettingsPage) {
  RecordingInterface screen;
  screen.onRunModal = [](Dialog& dialog) {
    dialog.OnTimer();
    dialog.settings()->withProperties = false;
    dialog.OnForward();
  };
  FakeWork work;
  ExportData(work, Format::kContainer, true).RunModal();
  EXPECT_THAT(work.calls, ElementsAre("exists", "image"));
}

TEST(ExportData, OffersTheChoicesForContainersAndTheSeparatorsForText) {
  RecordingInterface screen;
  std::vector<bool> choices;
  std::vector<bool> separators;
  screen.onRunModal = [&](Dialog& dialog) {
    dialog.OnTimer();
    choices.push_back(dialog.settings()->choicesAvailable);
    separators.push_back(dialog.settings()->separatorsAvailable);
  };
  FakeWork work;
  ExportData(work, Format::kContainer, true).RunModal();
  ExportData(work, Format::kText, true).RunModal();
  EXPECT_THAT(choices, ElementsAre(true, false));
  EXPECT_THAT(separators, ElementsAre(false, true));
}

TEST(ExportData, StartsWithTheNamedSeparators) {
  FakeWork work;
  ExportData dialog(work, Format::kText, true);
  EXPECT_EQ(dialog.settings()->fieldSeparator, L"табуляция");
  EXPECT_EQ(dialog.settings()->recordSeparator, L"перенос строки");
}

TEST(ExportData, WaitsForTheForwardButtonAndTakesItOnce) {
  RecordingInterface screen;
  FakeWork work;
  screen.onRunModal = [&work](Dialog& dialog) {
    dialog.OnForward();
    EXPECT_THAT(work.calls, IsEmpty()) << "forward before the timer has checked the target";
    dialog.OnTimer();
    EXPECT_TRUE(dialog.AwaitsForward());
    EXPECT_THAT(work.calls, ElementsAre("exists"));
    dialog.OnForward();
    EXPECT_FALSE(dialog.AwaitsForward());
    dialog.OnForward();
  };
  ExportData(work, Format::kText, true).RunModal();
  EXPECT_THAT(work.calls, ElementsAre("exists", "text"));
}

TEST(ExportData, DeletesAnExistingTargetAfterOk) {
  RecordingInterface screen;
  screen.answers = {Button::kOk};
  FakeWork work;
  work.exists = true;
  ExportData(work, Format::kText, true).RunModal();
  EXPECT_THAT(work.calls, ElementsAre("exists", "delete", "text"));
  ASSERT_EQ(screen.messages.size(), 1U);
  EXPECT_EQ(screen.messages[0].caption, L"ORV Server v1.0");
  EXPECT_EQ(screen.messages[0].text, L"Файл уже существует!\rЗаписать вместо него?");
  EXPECT_EQ(screen.messages[0].buttons, Buttons::kOkCancel);
}

TEST(ExportData, ClosesWithoutExportingWhenTheOverwriteIsDeclined) {
  RecordingInterface screen;
  FakeWork work;
  work.exists = true;
  ExportData(work, Format::kText, true).RunModal();
  EXPECT_THAT(work.calls, ElementsAre("exists"));
  EXPECT_TRUE(screen.LastDialog().closed);
  EXPECT_FALSE(screen.LastDialog().cancelled);
}

TEST(ExportData, RefusesWithAMessageWhenTheTargetCannotBeCheckedOrDeleted) {
  for (const std::string step : {"exists", "delete"}) {
    RecordingInterface screen;
    screen.answers = {step == "delete" ? Button::kOk : Button::kCancel};
    FakeWork work;
    work.exists = true;
    work.fails = step;
    ExportData dialog(work, Format::kText, true);
    EXPECT_THROW(dialog.RunModal(), RunTimeFailure);
    EXPECT_EQ(work.calls.back(), step);
    EXPECT_EQ(screen.messages.back().text, kStartFailure);
    EXPECT_EQ(screen.messages.back().icon, Icon::kCritical);
    EXPECT_EQ(screen.messages.back().buttons, Buttons::kOk);
    EXPECT_EQ(screen.messages.back().caption, L"");
    EXPECT_TRUE(screen.LastDialog().closed);
  }
}

TEST(ExportData, ReportsAWriteFailureOfTextAndOfValues) {
  for (const std::string kind : {"text", "image"}) {
    RecordingInterface screen;
    FakeWork work;
    work.fails = kind;
    ExportData dialog(work, kind == "text" ? Format::kText : Format::kContainer, false);
    EXPECT_THROW(dialog.RunModal(), RunTimeFailure);
    ASSERT_EQ(screen.messages.size(), 1U);
    EXPECT_EQ(screen.messages[0].text, kWriteFailure);
    EXPECT_EQ(screen.messages[0].icon, Icon::kCritical);
    EXPECT_EQ(screen.messages[0].caption, L"");
    EXPECT_THAT(work.calls, ElementsAre("exists", kind)) << "nothing is discarded";
    EXPECT_TRUE(screen.LastDialog().closed);
  }
}

TEST(ExportData, HandsOnTheFailureOfAFullCopyWithoutAMessage) {
  RecordingInterface screen;
  FakeWork work;
  work.fails = "prop";
  ExportData dialog(work, Format::kContainer, true);
  EXPECT_THROW(dialog.RunModal(), RunTimeFailure);
  EXPECT_THAT(screen.messages, IsEmpty());
  EXPECT_TRUE(screen.LastDialog().closed);
}

TEST(ExportData, CancelButtonClosesTheSettingsPageWithoutAQuestion) {
  RecordingInterface screen;
  screen.onRunModal = [](Dialog& dialog) {
    dialog.OnTimer();
    dialog.OnCancel();
    EXPECT_TRUE(dialog.closed());
    dialog.OnForward();
  };
  FakeWork work;
  ExportData(work, Format::kText, true).RunModal();
  EXPECT_THAT(work.calls, ElementsAre("exists"));
  EXPECT_THAT(screen.messages, IsEmpty());
  EXPECT_FALSE(screen.LastDialog().cancelled);
}

TEST(ExportData, AsksBeforeItCancelsARunningExport) {
  RecordingInterface screen;
  screen.answers = {Button::kNo, Button::kYes};
  std::vector<bool> requested;
  FakeWork work;
  work.save = [&requested](ExportData& dialog) {
    dialog.OnCancel();
    requested.push_back(DialogModel::CancelRequested());
    dialog.OnCancel();
    requested.push_back(DialogModel::CancelRequested());
  };
  ExportData(work, Format::kText, true).RunModal();
  EXPECT_THAT(requested, ElementsAre(false, true));
  EXPECT_THAT(work.calls, ElementsAre("exists", "text", "discard"));
  EXPECT_TRUE(screen.LastDialog().cancelled);
  EXPECT_TRUE(screen.LastDialog().closed);
  ASSERT_EQ(screen.messages.size(), 2U);
  EXPECT_EQ(screen.messages[0].caption, L"ORV DB Server");
  EXPECT_EQ(screen.messages[0].text, L"Вы действительно хотите прервать экспорт?");
  EXPECT_EQ(screen.messages[0].icon, Icon::kQuestion);
  EXPECT_EQ(screen.messages[0].buttons, Buttons::kYesNo);
}

TEST(ExportData, ClosesWithoutAQuestionOnceTheExportHasFinished) {
  RecordingInterface screen;
  FakeWork work;
  work.save = [](ExportData& dialog) {
    dialog.Finish();
    dialog.OnCancel();
    EXPECT_TRUE(dialog.closed());
  };
  ExportData(work, Format::kText, true).RunModal();
  EXPECT_THAT(screen.messages, IsEmpty());
  EXPECT_THAT(work.calls, ElementsAre("exists", "text"));
}

TEST(ExportData, DiscardsTheTargetOfACancelledExportThatAlsoFailed) {
  RecordingInterface screen;
  screen.answers = {Button::kYes};
  FakeWork work;
  work.save = [](ExportData& dialog) {
    dialog.OnCancel();
    platform::Raise(RunTimeError::kDiskFull);
  };
  ExportData dialog(work, Format::kContainer, true);
  EXPECT_THROW(dialog.RunModal(), RunTimeFailure);
  EXPECT_THAT(work.calls, ElementsAre("exists", "prop", "discard"));
}

TEST(ExportData, ClosesEvenWhenTheTargetCannotBeDiscarded) {
  RecordingInterface screen;
  screen.answers = {Button::kYes};
  FakeWork work;
  work.fails = "discard";
  work.save = [](ExportData& dialog) { dialog.OnCancel(); };
  ExportData dialog(work, Format::kText, true);
  EXPECT_THROW(dialog.RunModal(), RunTimeFailure);
  EXPECT_TRUE(screen.LastDialog().closed);
}

TEST(ExportData, IgnoresARequestLeftByAnEarlierOperation) {
  CancelRequest::Make();
  FakeWork work;
  ExportData(work, Format::kText, true).RunModal();
  EXPECT_THAT(work.calls, ElementsAre("exists", "text"));
}

TEST(ExportData, ShowsTheSourceTitleUnlessItIsEmpty) {
  RecordingInterface screen;
  FakeWork work;
  work.save = [](ExportData& dialog) {
    dialog.ShowSourceTitle(L"");
    dialog.ShowSourceTitle(L"Города");
  };
  ExportData(work, Format::kText, true).RunModal();
  EXPECT_THAT(screen.LastDialog().texts, ElementsAre(LabelText{L"LabelS1(7)", L"Города", false}));
}

}  // namespace
}  // namespace orv::dialogs
