#include "cli/scripted_interface.h"

#include <gtest/gtest.h>

#include "dialogs/compress_form.h"
#include "dialogs/cr_flt.h"
#include "dialogs/export_data.h"
#include "dialogs/message_boxes.h"
#include "dialogs/progress.h"

namespace orv::cli {
namespace {

using dialogs::CompressForm;
using dialogs::CrFlt;
using dialogs::ExportData;
using dialogs::Progress;
using nlohmann::json;

class ScriptedInterfaceTest : public testing::Test {
 protected:
  ScriptedInterfaceTest() { InstallUserInterface(&script_); }
  ~ScriptedInterfaceTest() override { InstallUserInterface(nullptr); }

  ScriptedInterface script_;
};

// Walks `records` records and counts those done before a cancel is found.
int Walk(dialogs::DialogModel& dialog, std::int32_t records) {
  dialog.SetRange(0, records);
  int done = 0;
  for (std::int32_t record = 1; record <= records; record++) {
    dialog.SetValue(record);
    dialog.ServiceEvents();
    if (dialogs::DialogModel::CancelRequested()) break;
    done++;
  }
  return done;
}

class FakeExport : public dialogs::ExportWork {
 public:
  std::wstring fieldSeparator;
  std::wstring recordSeparator;

  bool TargetExists() override { return false; }
  void DeleteTarget() override {}
  void SaveAsText(ExportData& dialog) override {
    fieldSeparator = dialog.settings()->fieldSeparator;
    recordSeparator = dialog.settings()->recordSeparator;
  }
  void SaveAsOrvImage(ExportData&) override {}
  void SaveAsOrvWithProp(ExportData&) override {}
  void DiscardTarget() override {}
};

TEST_F(ScriptedInterfaceTest, LogsNothingWhenNothingIsShown) {
  script_.Begin({});
  EXPECT_EQ(script_.TakeLog(), json::array());
}

TEST_F(ScriptedInterfaceTest, LogsAMessageBoxWithAllItsParts) {
  script_.Begin({});
  dialogs::ShowMessage({L"ORV Server v1.0", L"Файл уже существует!\rЗаписать вместо него?",
                        Icon::kNone, Buttons::kOkCancel});
  EXPECT_EQ(script_.TakeLog(), json::parse(R"([{
    "kind": "message", "caption": "ORV Server v1.0",
    "text": "Файл уже существует!\rЗаписать вместо него?",
    "icon": "none", "buttons": "okcancel", "answer": "cancel"}])"));
}

TEST_F(ScriptedInterfaceTest, NamesEveryIconButtonSetAndAnswer) {
  script_.Begin({{"ok", "cancel", "yes", "no"}, {}, {}});
  dialogs::ShowMessage({L"", L"1", Icon::kCritical, Buttons::kOk});
  dialogs::ShowMessage({L"", L"2", Icon::kExclamation, Buttons::kOkCancel});
  dialogs::ShowMessage({L"", L"3", Icon::kQuestion, Buttons::kYesNo});
  dialogs::ShowMessage({L"", L"4", Icon::kNone, Buttons::kYesNo});
  const json log = script_.TakeLog();
  ASSERT_EQ(log.size(), 4U);
  EXPECT_EQ(log[0]["icon"], "critical");
  EXPECT_EQ(log[0]["buttons"], "ok");
  EXPECT_EQ(log[0]["answer"], "ok");
  EXPECT_EQ(log[1]["icon"], "exclamation");
  EXPECT_EQ(log[1]["buttons"], "okcancel");
  EXPECT_EQ(log[1]["answer"], "cancel");
  EXPECT_EQ(log[2]["icon"], "question");
  EXPECT_EQ(log[2]["buttons"], "yesno");
  EXPECT_EQ(log[2]["answer"], "yes");
  EXPECT_EQ(log[3]["icon"], "none");
  EXPECT_EQ(log[3]["answer"], "no");
}

TEST_F(ScriptedInterfaceTest, PressesTheSafeButtonForAnEntryThatIsNoButtonOfTheBox) {
  script_.Begin({{"ok", "maybe", "YES", "yes"}, {}, {}});
  EXPECT_FALSE(dialogs::Confirm(L"q", L"c"));
  EXPECT_FALSE(dialogs::Confirm(L"q", L"c"));
  EXPECT_FALSE(dialogs::Confirm(L"q", L"c"));
  EXPECT_TRUE(dialogs::Confirm(L"q", L"c"));
  EXPECT_FALSE(dialogs::Confirm(L"q", L"c")) << "the list is used up";
}

TEST_F(ScriptedInterfaceTest, LogsADialogWhenItCloses) {
  script_.Begin({});
  {
    Progress dialog;
    dialog.Show(L"Сортировка данных");
    dialog.SetLabel(L"Загрузка...");
    EXPECT_EQ(Walk(dialog, 3), 3);
    dialog.SetLabel(L"Загрузка...");
    dialog.SetLabel(L"Сортировка...");
    dialog.SetRange(1, 2);
    dialog.SetValue(2);
    dialog.Close();
  }
  EXPECT_EQ(script_.TakeLog(), json::parse(R"([{
    "kind": "progress", "dialog": "Progress", "caption": "Сортировка данных",
    "labels": [{"label": "Label", "text": "Загрузка...", "bold": false},
               {"label": "Label", "text": "Сортировка...", "bold": false}],
    "minimum": 1, "maximum": 2, "value": 2, "cancelled": false}])"));
  EXPECT_EQ(script_.TakeLog(), json::array()) << "a log is taken once";
}

TEST_F(ScriptedInterfaceTest, LogsLabelsInBoldAndLeavesOutMereHiding) {
  script_.Begin({});
  CompressForm dialog([](CompressForm& shown) {
    shown.HideStep(CompressForm::Step::kAnalysis);
    shown.RunStep(CompressForm::Step::kUpdate);
    shown.Close();
  });
  dialog.RunModal();
  EXPECT_EQ(
      script_.TakeLog()[0]["labels"],
      json::array({{{"label", "Steps(3)"}, {"text", "» Обновление данных..."}, {"bold", true}}}));
}

TEST_F(ScriptedInterfaceTest, PressesCancelWhenTheBarFirstReachesThePlace) {
  script_.Begin({{}, 2, {}});
  Progress dialog;
  dialog.Show(L"x");
  EXPECT_EQ(Walk(dialog, 5), 1);
  dialog.Close();
  const json log = script_.TakeLog();
  ASSERT_EQ(log.size(), 1U);
  EXPECT_EQ(log[0]["value"], 2);
  EXPECT_EQ(log[0]["cancelled"], true);
}

TEST_F(ScriptedInterfaceTest, PressesCancelOnceACallThoughTheAnswerWasNo) {
  script_.Begin({{"no", "yes"}, 2, {}});
  int done = 0;
  CrFlt dialog([&done](CrFlt& shown) { done = Walk(shown, 5) + Walk(shown, 5); });
  dialog.RunModal();
  EXPECT_EQ(done, 10);
  const json log = script_.TakeLog();
  ASSERT_EQ(log.size(), 2U) << "the question, then the dialog";
  EXPECT_EQ(log[0]["kind"], "message");
  EXPECT_EQ(log[0]["answer"], "no");
  EXPECT_EQ(log[1]["kind"], "progress");
  EXPECT_EQ(log[1]["cancelled"], false);
}

TEST_F(ScriptedInterfaceTest, CancelQuestionTakesItsAnswerFromTheList) {
  script_.Begin({{"yes"}, 3, {}});
  int done = 0;
  CrFlt dialog([&done](CrFlt& shown) { done = Walk(shown, 5); });
  dialog.RunModal();
  EXPECT_EQ(done, 2);
  EXPECT_EQ(script_.TakeLog()[1]["cancelled"], true);
}

TEST_F(ScriptedInterfaceTest, PressesAtAPlaceThatTheBarJumpsOver) {
  script_.Begin({{}, 3, {}});
  Progress dialog;
  dialog.Show(L"x");
  dialog.SetRange(0, 10);
  dialog.SetValue(2);
  dialog.ServiceEvents();
  EXPECT_FALSE(dialog.cancelled());
  dialog.SetValue(5);
  dialog.ServiceEvents();
  EXPECT_TRUE(dialog.cancelled());
}

TEST_F(ScriptedInterfaceTest, NeverPressesAtAPlaceBeyondTheBar) {
  script_.Begin({{}, 6, {}});
  Progress dialog;
  dialog.Show(L"x");
  EXPECT_EQ(Walk(dialog, 5), 5);
  dialog.Close();
  EXPECT_EQ(script_.TakeLog()[0]["cancelled"], false);
}

TEST_F(ScriptedInterfaceTest, ForgetsThePressOfTheFormerCall) {
  script_.Begin({{}, 1, {}});
  {
    Progress dialog;
    dialog.Show(L"x");
    dialog.SetRange(1, 5);  // reached, and closed before events were serviced
  }
  script_.Begin({});
  Progress dialog;
  dialog.Show(L"x");
  EXPECT_EQ(Walk(dialog, 5), 5);
}

TEST_F(ScriptedInterfaceTest, TypesTheSeparatorsAndPressesForward) {
  script_.Begin({{}, {}, {{L";", L"|"}}});
  FakeExport work;
  ExportData(work, ExportData::Format::kText, true).RunModal();
  EXPECT_EQ(work.fieldSeparator, L";");
  EXPECT_EQ(work.recordSeparator, L"|");
  const json log = script_.TakeLog();
  ASSERT_EQ(log.size(), 1U);
  EXPECT_EQ(log[0]["dialog"], "ExportData");
}

TEST_F(ScriptedInterfaceTest, LeavesTheSeparatorsThatTheDialogStartsWith) {
  script_.Begin({});
  FakeExport work;
  ExportData(work, ExportData::Format::kText, true).RunModal();
  EXPECT_EQ(work.fieldSeparator, L"табуляция");
  EXPECT_EQ(work.recordSeparator, L"перенос строки");
}

TEST_F(ScriptedInterfaceTest, ClosesADialogThatItsWorkLeavesOpen) {
  script_.Begin({});
  CompressForm([](CompressForm&) {}).RunModal();
  const json log = script_.TakeLog();
  ASSERT_EQ(log.size(), 1U) << "no question is asked";
  EXPECT_EQ(log[0]["dialog"], "CompressForm");
  EXPECT_EQ(log[0]["cancelled"], false);
}

TEST_F(ScriptedInterfaceTest, LogsADialogInsideAnotherFirst) {
  script_.Begin({});
  CrFlt outer([](CrFlt& shown) {
    shown.SetLabel(L"outer");
    CrFlt([](CrFlt& inner) { inner.SetLabel(L"inner"); }).RunModal();
  });
  outer.RunModal();
  const json log = script_.TakeLog();
  ASSERT_EQ(log.size(), 2U);
  EXPECT_EQ(log[0]["labels"][0]["text"], "inner");
  EXPECT_EQ(log[1]["labels"][0]["text"], "outer");
}

}  // namespace
}  // namespace orv::cli
