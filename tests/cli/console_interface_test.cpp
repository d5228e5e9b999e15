#include "cli/console_interface.h"

#include <chrono>
#include <csignal>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
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
using dialogs::DialogModel;
using dialogs::ExportData;
using dialogs::Progress;
using std::chrono::milliseconds;
using testing::HasSubstr;

class ConsoleInterfaceTest : public testing::Test {
 protected:
  ~ConsoleInterfaceTest() override { InstallUserInterface(nullptr); }

  // Installs a console on the two streams; the clock stands until it is set forward.
  ConsoleInterface& Start(bool answers, bool paints, ConsoleChoices choices = {}) {
    console_ = std::make_unique<ConsoleInterface>(
        std::move(choices), Console{&in_, &out_, answers, paints, [] { return std::size_t{80}; },
                                    [this] { return now_; }});
    InstallUserInterface(console_.get());
    return *console_;
  }

  std::string TakeOutput() {
    std::string text = out_.str();
    out_.str({});
    return text;
  }

  std::istringstream in_;
  std::ostringstream out_;
  Console::Clock::time_point now_{};
  std::unique_ptr<ConsoleInterface> console_;
};

TEST_F(ConsoleInterfaceTest, AsksAQuestionAndTakesTheAnswer) {
  Start(true, true);
  in_.str("y\nn\nYES\n\nwhat\nyes\n");
  EXPECT_TRUE(dialogs::Confirm(L"Прервать?\rСовсем?", L"ORV DB Server"));
  EXPECT_EQ(TakeOutput(), "ORV DB Server: Прервать?\nСовсем? [yes/No] ");
  EXPECT_FALSE(dialogs::Confirm(L"q", L""));
  EXPECT_TRUE(dialogs::Confirm(L"q", L""));
  EXPECT_FALSE(dialogs::Confirm(L"q", L"")) << "an empty answer is the safe one";
  TakeOutput();
  EXPECT_TRUE(dialogs::Confirm(L"q", L""));
  EXPECT_EQ(TakeOutput(), "q [yes/No] [yes/No] ") << "asked again until understood";
  EXPECT_FALSE(dialogs::Confirm(L"q", L"")) << "the end of input is the safe answer";
}

TEST_F(ConsoleInterfaceTest, OffersTheButtonsOfTheBox) {
  Start(true, true);
  in_.str("o\nc\ny\nok\n");
  EXPECT_TRUE(dialogs::ConfirmOverwrite());
  EXPECT_THAT(TakeOutput(), HasSubstr("Записать вместо него? [ok/Cancel] "));
  EXPECT_FALSE(dialogs::ConfirmOverwrite());
  EXPECT_TRUE(dialogs::ConfirmOverwrite()) << "y is no button here, ok is";
}

TEST_F(ConsoleInterfaceTest, PressesTheSafeButtonWhereNobodyAnswers) {
  Start(false, false);
  in_.str("y\n");
  EXPECT_FALSE(dialogs::Confirm(L"q", L"c"));
  EXPECT_EQ(TakeOutput(), "c: q [yes/No] no\n");
}

TEST_F(ConsoleInterfaceTest, AnswersForThePersonWhoSaidSoBeforehand) {
  Start(false, false, {.fieldSeparator = {}, .recordSeparator = {}, .assumeYes = true});
  EXPECT_TRUE(dialogs::Confirm(L"q", L"c"));
  EXPECT_TRUE(dialogs::ConfirmOverwrite());
}

TEST_F(ConsoleInterfaceTest, WritesNoticesAndRemembersThem) {
  ConsoleInterface& console = Start(false, false);
  EXPECT_FALSE(console.refused());
  dialogs::Confirm(L"q", L"c");
  EXPECT_FALSE(console.refused()) << "a question is no refusal";
  TakeOutput();
  dialogs::ShowNotice(L"Таблица пуста!", Icon::kExclamation, L"ORV DataBase Server");
  EXPECT_EQ(TakeOutput(), "ORV DataBase Server: Таблица пуста!\n");
  EXPECT_TRUE(console.refused());
}

TEST_F(ConsoleInterfaceTest, LeavesNoTraceOfAShortDialog) {
  for (const bool paints : {true, false}) {
    Start(paints, paints);
    Progress dialog;
    dialog.Show(L"Сортировка данных");
    dialog.SetLabel(L"Загрузка...");
    dialog.SetRange(1, 100);
    for (int record = 1; record <= 100; record++) {
      now_ += milliseconds(4);
      dialog.SetValue(record);
      dialog.ServiceEvents();
    }
    dialog.Close();
    EXPECT_EQ(TakeOutput(), "");
  }
}

TEST_F(ConsoleInterfaceTest, PaintsOneLineWithBarRateAndRemainingTime) {
  Start(true, true);
  Progress dialog;
  dialog.Show(L"Сортировка данных");
  dialog.SetLabel(L"Загрузка...");
  dialog.SetRange(0, 1000);
  now_ += milliseconds(1000);
  dialog.SetValue(250);
  dialog.ServiceEvents();
  EXPECT_EQ(TakeOutput(),
            "Сортировка данных (Ctrl-C cancels)\n"
            "\rЗагрузка... [######------------------]  25 %  250/1000  250/s  3 s left\x1b[K");
  now_ += milliseconds(10);
  dialog.SetValue(251);
  dialog.ServiceEvents();
  EXPECT_EQ(TakeOutput(), "") << "painting is coalesced";
  now_ += milliseconds(100);
  dialog.ServiceEvents();
  EXPECT_THAT(TakeOutput(), HasSubstr("251/1000"));
  dialog.Close();
  EXPECT_EQ(TakeOutput(), "\r\x1b[K") << "the line goes with the dialog";
}

TEST_F(ConsoleInterfaceTest, MeasuresTheRateOfEachPhaseByItself) {
  Start(true, true);
  Progress dialog;
  dialog.Show(L"x");
  dialog.SetRange(0, 1000);
  now_ += milliseconds(10000);
  dialog.SetValue(1000);
  dialog.SetRange(0, 500);
  now_ += milliseconds(1000);
  dialog.SetValue(100);
  dialog.ServiceEvents();
  EXPECT_THAT(TakeOutput(), HasSubstr("100/500  100/s  4 s left"));
}

TEST_F(ConsoleInterfaceTest, WritesFewPlainLinesWhereNothingCanBePaintedOver) {
  Start(false, false);
  Progress dialog;
  dialog.Show(L"Сортировка данных");
  dialog.SetLabel(L"Загрузка...");
  dialog.SetRange(0, 10000);
  for (int record = 1; record <= 10000; record++) {
    now_ += milliseconds(1);
    dialog.SetValue(record);
    dialog.ServiceEvents();
  }
  dialog.Close();
  EXPECT_EQ(TakeOutput(),
            "Сортировка данных\n"
            "Загрузка...   5 %  500/10000  1000/s  10 s left\n"
            "Загрузка...  55 %  5500/10000  1000/s  5 s left\n");
}

TEST_F(ConsoleInterfaceTest, WritesResultsOnLinesOfTheirOwn) {
  Start(true, true);
  CompressForm([](CompressForm& dialog) {
    dialog.ShowResult(CompressForm::Step::kAnalysis, L"99% - Эфективность метода");
    dialog.Close();
  }).RunModal();
  EXPECT_EQ(TakeOutput(), "99% - Эфективность метода\n");
}

TEST_F(ConsoleInterfaceTest, TakesAnInterruptForTheCancelButton) {
  ConsoleInterface& console = Start(true, true);
  in_.str("yes\n");
  int done = 0;
  CrFlt([&done](CrFlt& dialog) {
    dialog.SetRange(0, 10);
    for (int record = 1; record <= 10 && !DialogModel::CancelRequested(); record++) {
      dialog.SetValue(record);
      if (record == 4) std::raise(SIGINT);
      dialog.ServiceEvents();
      done++;
    }
  }).RunModal();
  EXPECT_EQ(done, 4);
  EXPECT_TRUE(console.cancelled());
  EXPECT_THAT(TakeOutput(), HasSubstr("Вы хотите прервать создание фильтра в любом случае?"));
}

TEST_F(ConsoleInterfaceTest, GoesOnWhenTheCancelQuestionIsAnsweredWithNo) {
  ConsoleInterface& console = Start(true, true);
  in_.str("no\n");
  int done = 0;
  CrFlt([&done](CrFlt& dialog) {
    dialog.SetRange(0, 3);
    for (int record = 1; record <= 3 && !DialogModel::CancelRequested(); record++) {
      if (record == 2) std::raise(SIGINT);
      dialog.SetValue(record);
      dialog.ServiceEvents();
      done++;
    }
  }).RunModal();
  EXPECT_EQ(done, 3);
  EXPECT_FALSE(console.cancelled());
}

volatile std::sig_atomic_t interruptsSeen = 0;

TEST_F(ConsoleInterfaceTest, LeavesInterruptsToTheProgramWhileNoDialogIsOpen) {
  Start(true, true);
  interruptsSeen = 0;
  std::signal(SIGINT, [](int) { interruptsSeen = interruptsSeen + 1; });
  {
    Progress dialog;
    dialog.Show(L"x");
    std::raise(SIGINT);
    EXPECT_EQ(interruptsSeen, 0);
    dialog.ServiceEvents();
    EXPECT_TRUE(dialog.cancelled());
  }
  std::raise(SIGINT);
  EXPECT_EQ(interruptsSeen, 1);
  std::signal(SIGINT, SIG_DFL);
}

class FakeExport : public dialogs::ExportWork {
 public:
  std::wstring typed;

  bool TargetExists() override { return false; }
  void DeleteTarget() override {}
  void SaveAsText(ExportData& dialog) override {
    typed = dialog.settings()->fieldSeparator + L"|" + dialog.settings()->recordSeparator;
  }
  void SaveAsOrvImage(ExportData&) override {}
  void SaveAsOrvWithProp(ExportData&) override {}
  void DiscardTarget() override {}
};

TEST_F(ConsoleInterfaceTest, SendsTheExportForwardWithTheSeparatorsOfTheCommandLine) {
  FakeExport work;
  Start(true, true, {.fieldSeparator = L";", .recordSeparator = {}, .assumeYes = false});
  ExportData(work, ExportData::Format::kText, true).RunModal();
  EXPECT_EQ(work.typed, L";|перенос строки");
  Start(true, true, {.fieldSeparator = {}, .recordSeparator = L"#", .assumeYes = false});
  ExportData(work, ExportData::Format::kText, true).RunModal();
  EXPECT_EQ(work.typed, L"табуляция|#");
}

TEST_F(ConsoleInterfaceTest, ClearsItsLineBeforeAMessage) {
  Start(true, true);
  Progress dialog;
  dialog.Show(L"x");
  dialog.SetRange(0, 10);
  now_ += milliseconds(600);
  dialog.ServiceEvents();
  TakeOutput();
  dialogs::ShowNotice(L"text", Icon::kNone);
  EXPECT_EQ(TakeOutput(), "\r\x1b[Ktext\n");
}

}  // namespace
}  // namespace orv::cli
