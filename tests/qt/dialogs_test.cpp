#include "orv/qt/dialogs.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QWindow>
#include <functional>
#include <string>

#include "dialogs/compress_form.h"
#include "dialogs/cr_flt.h"
#include "dialogs/export_data.h"
#include "dialogs/message_boxes.h"
#include "dialogs/progress.h"
#include "qt/window_driver.h"

namespace orv::qt {
namespace {

using dialogs::CompressForm;
using dialogs::CrFlt;
using dialogs::DialogModel;
using dialogs::ExportData;
using dialogs::Progress;

constexpr int kRecords = 1000;
constexpr int kEarly = 50;
constexpr int kLate = 400;

// A loop over records as every long operation has one; a record takes a millisecond.
int Walk(DialogModel& dialog, int records = kRecords) {
  dialog.SetRange(0, records);
  int done = 0;
  for (int record = 1; record <= records; record++) {
    dialog.SetValue(record);
    dialog.ServiceEvents();
    if (DialogModel::CancelRequested()) break;
    QThread::msleep(1);
    done++;
  }
  return done;
}

class FakeExport : public dialogs::ExportWork {
 public:
  bool exists = false;
  std::function<void(ExportData&)> save = [](ExportData&) {};
  QStringList calls;
  ExportSettings settings;

  bool TargetExists() override { return exists; }
  void DeleteTarget() override { calls << "delete"; }
  void SaveAsText(ExportData& dialog) override { Save("text", dialog); }
  void SaveAsOrvImage(ExportData& dialog) override { Save("image", dialog); }
  void SaveAsOrvWithProp(ExportData& dialog) override { Save("prop", dialog); }
  void DiscardTarget() override { calls << "discard"; }

 private:
  void Save(const char* name, ExportData& dialog) {
    calls << name;
    settings = *dialog.settings();
    save(dialog);
  }
};

}  // namespace

class DialogsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void cleanup();

  void messageBoxShowsItsParts_data();
  void messageBoxShowsItsParts();
  void messageBoxPressesTheSafeButtonOnEscape();
  void messageBoxShowsMarkupAsItStands();

  void progressShowsALiveBar();
  void progressIsCancelledByAClickDuringTheWork();
  void progressShowsTheBusyPointer();
  void progressTakesItsCloseBoxForTheCancelButton();
  void progressCostsLittlePerRecord();

  void filterAsksBeforeItCancels();
  void filterShowsItsCondition();

  void conversionShowsStepsAndResults();
  void conversionIsCancelledAfterAQuestion();
  void conversionThatDidNothingWaitsForAPerson();

  void exportPassesOnItsSettings();
  void exportOffersTheContainerChoices();
  void exportClosesOnItsSettingsPage();
  void exportAsksBeforeItOverwrites();
  void exportIsCancelledByAClickDuringTheWork();

  void workStartsAfterTheWindowWasPainted();
  void oneDialogStandsOnAnother();
};

void DialogsTest::initTestCase() {
  QApplication::setApplicationDisplayName("host");
  InstallDialogs();
}

// No test leaves a window or a pointer behind.
void DialogsTest::cleanup() {
  for (const QWidget* const widget : QApplication::topLevelWidgets()) {
    QVERIFY(!widget->isVisible());
  }
  QCOMPARE(QApplication::overrideCursor(), nullptr);
}

void DialogsTest::messageBoxShowsItsParts_data() {
  QTest::addColumn<Icon>("icon");
  QTest::addColumn<Buttons>("buttons");
  QTest::addColumn<QString>("press");
  QTest::addColumn<Button>("answer");
  QTest::addColumn<QMessageBox::Icon>("boxIcon");
  QTest::newRow("critical ok") << Icon::kCritical << Buttons::kOk << "ok" << Button::kOk
                               << QMessageBox::Critical;
  QTest::newRow("exclamation ok") << Icon::kExclamation << Buttons::kOk << "ok" << Button::kOk
                                  << QMessageBox::Warning;
  QTest::newRow("overwrite ok") << Icon::kNone << Buttons::kOkCancel << "ok" << Button::kOk
                                << QMessageBox::NoIcon;
  QTest::newRow("overwrite cancel")
      << Icon::kNone << Buttons::kOkCancel << "cancel" << Button::kCancel << QMessageBox::NoIcon;
  QTest::newRow("question yes") << Icon::kQuestion << Buttons::kYesNo << "yes" << Button::kYes
                                << QMessageBox::Question;
  QTest::newRow("question no") << Icon::kQuestion << Buttons::kYesNo << "no" << Button::kNo
                               << QMessageBox::Question;
}

void DialogsTest::messageBoxShowsItsParts() {
  QFETCH(Icon, icon);
  QFETCH(Buttons, buttons);
  QFETCH(QString, press);
  QFETCH(Button, answer);
  QFETCH(QMessageBox::Icon, boxIcon);
  bool seen = false;
  WhenBox([&] {
    QMessageBox* const box = VisibleBox();
    QVERIFY(box != nullptr);
    QCOMPARE(box->windowTitle(), u"ORV Server v1.0"_qs);
    QCOMPARE(box->text(), u"Файл уже существует!\nЗаписать вместо него?"_qs);
    QCOMPARE(box->icon(), boxIcon);
    QCOMPARE(box->buttons().size(), buttons == Buttons::kOk ? 1 : 2);
    seen = true;
    TakePicture(box, "message-" + press);
    ClickBox(press);
  });
  const Button pressed = dialogs::ShowMessage(
      {L"ORV Server v1.0", L"Файл уже существует!\rЗаписать вместо него?", icon, buttons});
  QVERIFY(seen);
  QCOMPARE(pressed, answer);
}

void DialogsTest::messageBoxPressesTheSafeButtonOnEscape() {
  for (const Buttons buttons : {Buttons::kOk, Buttons::kOkCancel, Buttons::kYesNo}) {
    WhenBox([] { QTest::keyClick(VisibleBox(), Qt::Key_Escape); });
    QCOMPARE(dialogs::ShowMessage({L"", L"text", Icon::kNone, buttons}), SafeButton(buttons));
  }
}

void DialogsTest::messageBoxShowsMarkupAsItStands() {
  WhenBox([] {
    QCOMPARE(VisibleBox()->textFormat(), Qt::PlainText);
    QCOMPARE(VisibleBox()->windowTitle(), u"host"_qs);
    ClickBox("ok");
  });
  dialogs::ShowNotice(L"f(1)<b>x</b>", Icon::kNone);
}

void DialogsTest::progressShowsALiveBar() {
  QList<int> values;
  Progress dialog;
  dialog.Show(L"Сортировка данных");
  dialog.SetLabel(L"Загрузка...");
  WhenBarReaches("Progress", kEarly,
                 [&] { values << Part<QProgressBar>("Progress", "bar")->value(); });
  WhenBarReaches("Progress", kLate, [&] {
    values << Part<QProgressBar>("Progress", "bar")->value();
    QCOMPARE(VisibleDialog("Progress")->windowTitle().left(17), u"Сортировка данных"_qs);
    QCOMPARE(Part<QLabel>("Progress", "Label")->text(), u"Загрузка..."_qs);
    TakePicture(VisibleDialog("Progress"), "progress");
  });
  QCOMPARE(Walk(dialog), kRecords);
  dialog.Close();
  QCOMPARE(values.size(), 2);
  QVERIFY(0 < values[0] && values[0] < values[1] && values[1] < kRecords);
}

void DialogsTest::progressIsCancelledByAClickDuringTheWork() {
  WhenBarReaches("Progress", kEarly, [] { Click("Progress", "cancel"); });
  Progress dialog;
  dialog.Show(L"x");
  const int done = Walk(dialog);
  dialog.Close();
  QVERIFY(dialog.cancelled());
  QVERIFY2(0 < done && done < kRecords, qPrintable(QString::number(done)));
}

void DialogsTest::progressShowsTheBusyPointer() {
  Progress dialog;
  QCOMPARE(QApplication::overrideCursor(), nullptr);
  dialog.Show(L"x");
  QVERIFY(QApplication::overrideCursor() != nullptr);
  QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  dialog.Close();
  QCOMPARE(QApplication::overrideCursor(), nullptr);
}

void DialogsTest::progressTakesItsCloseBoxForTheCancelButton() {
  WhenBarReaches("Progress", kEarly, [] {
    QWidget* const window = VisibleDialog("Progress");
    window->close();
    QVERIFY2(window->isVisible(), "the running loop closes the dialog, not the close box");
  });
  Progress dialog;
  dialog.Show(L"x");
  const int done = Walk(dialog);
  QVERIFY(0 < done && done < kRecords);
}

// A loop must be able to report every record of a big table.
void DialogsTest::progressCostsLittlePerRecord() {
  constexpr int kManyRecords = 1'000'000;
  Progress dialog;
  dialog.Show(L"x");
  dialog.SetRange(0, kManyRecords);
  QElapsedTimer timer;
  timer.start();
  for (int record = 1; record <= kManyRecords; record++) {
    dialog.SetValue(record);
    dialog.ServiceEvents();
  }
  const qint64 elapsed = timer.elapsed();
  dialog.Close();
  qInfo("%lld ns a record", static_cast<long long>(elapsed * 1'000'000 / kManyRecords));
  QVERIFY2(elapsed < 5000, "painting is not coalesced");
}

void DialogsTest::filterAsksBeforeItCancels() {
  int done = 0;
  // The first question is answered with No, the second, later, with Yes.
  WhenBarReaches("CrFlt", kEarly, [] {
    WhenBox([] {
      QCOMPARE(VisibleBox()->windowTitle(), u"ORV DB Server"_qs);
      ClickBox("no");
    });
    Click("CrFlt", "cancel");
  });
  WhenBarReaches("CrFlt", kLate, [] {
    WhenBox([] {
      TakePicture(VisibleBox(), "filter-question");
      ClickBox("yes");
    });
    Click("CrFlt", "cancel");
  });
  CrFlt dialog([&done](CrFlt& shown) { done = Walk(shown); });
  dialog.RunModal();
  QVERIFY(dialog.cancelled());
  QVERIFY2(kLate <= done && done < kRecords, qPrintable(QString::number(done)));
}

void DialogsTest::filterShowsItsCondition() {
  WhenBarReaches("CrFlt", kEarly, [] {
    QCOMPARE(Part<QLabel>("CrFlt", "Label")->text(), u"f(2)<>\"<b>Москва</b>\""_qs);
    TakePicture(VisibleDialog("CrFlt"), "filter");
  });
  CrFlt dialog([](CrFlt& shown) {
    shown.SetLabel(L"f(2)<>\"<b>Москва</b>\"");
    Walk(shown, kRecords);
  });
  dialog.RunModal();
  QVERIFY(dialog.closed());
}

void DialogsTest::conversionShowsStepsAndResults() {
  bool seen = false;
  CompressForm dialog([&seen](CompressForm& shown) {
    using Step = CompressForm::Step;
    shown.AppendHeading(L"Словарный");
    shown.RunStep(Step::kAnalysis);
    Walk(shown, 50);
    shown.ShowResult(Step::kAnalysis, L"99% - Эфективность метода");
    shown.FinishStep(Step::kAnalysis);
    shown.RunStep(Step::kDictionary);
    WhenBarReaches("CompressForm", kLate, [&seen] {
      const auto text = [](const char* label) {
        return Part<QLabel>("CompressForm", label)->text();
      };
      const auto bold = [](const char* label) {
        return Part<QLabel>("CompressForm", label)->font().bold();
      };
      QVERIFY(text("Label").endsWith(u"\"Словарный\""_qs));
      QCOMPARE(text("Steps(1)"), u"Анализ данных таблицы"_qs);
      QVERIFY(!bold("Steps(1)"));
      QCOMPARE(text("Steps(2)"), u"» Создание словаря..."_qs);
      QVERIFY(bold("Steps(2)"));
      QCOMPARE(text("StpRes(1)"), u"99% - Эфективность метода"_qs);
      TakePicture(VisibleDialog("CompressForm"), "conversion");
      seen = true;
    });
    Walk(shown, kRecords);
    QVERIFY(seen);
    shown.HideStep(Step::kAnalysis);
    Walk(shown, 50);
    QVERIFY(!Part<QLabel>("CompressForm", "Steps(1)")->isVisible());
    shown.Close();
  });
  dialog.RunModal();
  QVERIFY(dialog.closed());
}

void DialogsTest::conversionIsCancelledAfterAQuestion() {
  int done = 0;
  WhenBarReaches("CompressForm", kEarly, [] {
    WhenBox([] {
      QCOMPARE(VisibleBox()->windowTitle(), u"ORV DBServer"_qs);
      QCOMPARE(VisibleBox()->text(),
               u"Вы действительно хотите отменить изменение способа храниения данных?\n"
               u"Никакие данные не будут повреждены в любом случае!"_qs);
      ClickBox("yes");
    });
    Click("CompressForm", "cancel");
  });
  CompressForm dialog([&done](CompressForm& shown) {
    done = Walk(shown);
    shown.Close();
  });
  dialog.RunModal();
  QVERIFY(dialog.cancelled());
  QVERIFY(0 < done && done < kRecords);
}

void DialogsTest::conversionThatDidNothingWaitsForAPerson() {
  bool worked = false;
  bool closed = false;
  When([&worked] { return worked; },
       [&closed] {
         closed = true;
         VisibleDialog("CompressForm")->close();
       });
  CompressForm dialog([&worked](CompressForm&) { worked = true; });
  dialog.RunModal();
  QVERIFY(closed);
  QVERIFY(dialog.closed());
}

void DialogsTest::exportPassesOnItsSettings() {
  FakeExport work;
  WhenEnabled("ExportData", "forward", [] {
    QVERIFY(!Part<QRadioButton>("ExportData", "withProperties")->isEnabled());
    auto* const fields = Part<QComboBox>("ExportData", "fieldSeparator");
    auto* const records = Part<QComboBox>("ExportData", "recordSeparator");
    QCOMPARE(fields->currentText(), u"табуляция"_qs);
    QCOMPARE(records->currentText(), u"перенос строки"_qs);
    TakePicture(VisibleDialog("ExportData"), "export-settings");
    fields->clearEditText();
    QTest::keyClicks(fields, ";");
    Click("ExportData", "forward");
  });
  ExportData dialog(work, ExportData::Format::kText, true);
  dialog.RunModal();
  QCOMPARE(work.calls, QStringList{"text"});
  QCOMPARE(work.settings.fieldSeparator, std::wstring(L";"));
  QCOMPARE(work.settings.recordSeparator, std::wstring(L"перенос строки"));
}

void DialogsTest::exportOffersTheContainerChoices() {
  FakeExport work;
  WhenEnabled("ExportData", "forward", [] {
    QVERIFY(!Part<QComboBox>("ExportData", "fieldSeparator")->isEnabled());
    auto* const with = Part<QRadioButton>("ExportData", "withProperties");
    auto* const without = Part<QRadioButton>("ExportData", "valuesOnly");
    QVERIFY(with->isChecked());
    QVERIFY(without->isEnabled());
    QTest::mouseClick(without, Qt::LeftButton, {}, QPoint(8, without->height() / 2));
    QVERIFY(without->isChecked());
    Click("ExportData", "forward");
  });
  ExportData dialog(work, ExportData::Format::kContainer, true);
  dialog.RunModal();
  QCOMPARE(work.calls, QStringList{"image"});
}

void DialogsTest::exportClosesOnItsSettingsPage() {
  FakeExport work;
  WhenEnabled("ExportData", "forward", [] { Click("ExportData", "cancel"); });
  ExportData dialog(work, ExportData::Format::kText, true);
  dialog.RunModal();
  QVERIFY(work.calls.isEmpty());
  QVERIFY(dialog.closed());
}

void DialogsTest::exportAsksBeforeItOverwrites() {
  FakeExport work;
  work.exists = true;
  WhenBox([] {
    QCOMPARE(VisibleBox()->windowTitle(), u"ORV Server v1.0"_qs);
    QVERIFY2(!Part<QPushButton>("ExportData", "forward")->isEnabled(), "not before the answer");
    WhenEnabled("ExportData", "forward", [] { Click("ExportData", "forward"); });
    ClickBox("ok");
  });
  ExportData(work, ExportData::Format::kText, true).RunModal();
  QCOMPARE(work.calls, (QStringList{"delete", "text"}));
}

void DialogsTest::exportIsCancelledByAClickDuringTheWork() {
  FakeExport work;
  int done = 0;
  work.save = [&done](ExportData& shown) {
    shown.ShowSourceTitle(L"Города России");
    done = Walk(shown);
  };
  WhenEnabled("ExportData", "forward", [] { Click("ExportData", "forward"); });
  WhenBarReaches("ExportData", kEarly, [] {
    QCOMPARE(Part<QLabel>("ExportData", "LabelS1(7)")->text(), u"Города России"_qs);
    TakePicture(VisibleDialog("ExportData"), "export-running");
    WhenBox([] {
      QCOMPARE(VisibleBox()->text(), u"Вы действительно хотите прервать экспорт?"_qs);
      ClickBox("yes");
    });
    Click("ExportData", "cancel");
  });
  ExportData dialog(work, ExportData::Format::kText, true);
  dialog.RunModal();
  QCOMPARE(work.calls, (QStringList{"text", "discard"}));
  QVERIFY(dialog.cancelled());
  QVERIFY(0 < done && done < kRecords);
}

void DialogsTest::workStartsAfterTheWindowWasPainted() {
  bool visible = false;
  CrFlt dialog([&visible](CrFlt&) {
    QWidget* const window = VisibleDialog("CrFlt");
    visible = window != nullptr && window->windowHandle()->isExposed();
  });
  dialog.RunModal();
  QVERIFY(visible);
}

void DialogsTest::oneDialogStandsOnAnother() {
  FakeExport work;
  bool both = false;
  work.save = [&both](ExportData&) {
    CrFlt([&both](CrFlt& inner) {
      Walk(inner, 50);
      both = VisibleDialog("CrFlt") != nullptr && VisibleDialog("ExportData") != nullptr;
    }).RunModal();
    QVERIFY(VisibleDialog("ExportData") != nullptr);
  };
  WhenEnabled("ExportData", "forward", [] { Click("ExportData", "forward"); });
  ExportData(work, ExportData::Format::kText, true).RunModal();
  QVERIFY(both);
}

}  // namespace orv::qt

QTEST_MAIN(orv::qt::DialogsTest)
#include "dialogs_test.moc"
