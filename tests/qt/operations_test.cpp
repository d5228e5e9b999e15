// The engine's own operations behind the Qt dialogs, driven through the example host.
#include <QApplication>
#include <QFileInfo>
#include <QLabel>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <string>

#include "orv/engine.h"
#include "orv/qt/dialogs.h"

#include "qt/window_driver.h"
#include "qt_host/main_window.h"

namespace orv::qt {
namespace {

// So many that each operation is still running when its window is on the screen.
constexpr std::int32_t kRecords = 400'000;

constexpr int kFreeStyle = 0;
constexpr int kDictionaryStyle = 11;

std::wstring Quoted(const QString& fileName) { return L"\"" + fileName.toStdWString() + L"\""; }

// A container with two fields: the record's number in seven digits, and one of five towns.
void MakeTable(const QString& fileName) {
  constexpr const wchar_t* kTowns[] = {L"Москва", L"Тверь", L"Орёл", L"Пермь", L"Омск"};
  Engine engine;
  std::wstring path = Quoted(fileName);
  std::wstring title = L"Города";
  engine.CmdNewOrvDB(path, title);
  std::int16_t fields = 2;
  std::int16_t first = 1;
  engine.CmdAddFld(path, fields, first);
  std::int32_t records = kRecords;
  std::int32_t firstRecord = 1;
  engine.CmdAddRecord(path, records, firstRecord);
  for (std::int32_t record = 1; record <= kRecords; record++) {
    std::wstring number = std::to_wstring(10'000'000 - record).substr(0, 7);
    std::wstring town = kTowns[record % 5];
    std::int16_t numberField = 1;
    std::int16_t townField = 2;
    engine.SetCellValue(number, path, record, numberField);
    engine.SetCellValue(town, path, record, townField);
  }
}

}  // namespace

class OperationsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void cleanup();

  void tableIsShown();
  void sortRuns();
  void sortIsCancelledByAClick();
  void sortRefusesInAMessageBox();
  void filterShowsTheMatchingRecords();
  void filterIsCancelledByAClick();
  void conversionIsCancelledByAClick();
  void conversionRuns();
  void conversionRefusesInAMessageBox();
  void exportRuns();
  void exportIsCancelledByAClick();
  void exportAsksBeforeItOverwrites();

 private:
  void GoToField(int field);
  int StyleOf(int field);
  void Trigger(const char* action) { window_->findChild<QAction*>(action)->trigger(); }
  int ShownRecords() const { return window_->findChild<QTableView*>()->model()->rowCount(); }

  QTemporaryDir folder_;
  QString table_;
  std::unique_ptr<qt_host::MainWindow> window_;
};

void OperationsTest::initTestCase() {
  InstallDialogs();
  table_ = folder_.filePath("towns.orv");
  MakeTable(table_);
  window_ = std::make_unique<qt_host::MainWindow>();
  window_->show();
  window_->OpenTable(table_);
}

// No test leaves a dialog or a pointer behind, and all start from the unfiltered table.
void OperationsTest::cleanup() {
  QCOMPARE(QApplication::activeModalWidget(), nullptr);
  QCOMPARE(QApplication::overrideCursor(), nullptr);
  window_->ShowFiltered({});
  QCOMPARE(ShownRecords(), kRecords);
}

void OperationsTest::tableIsShown() {
  QCOMPARE(ShownRecords(), kRecords);
  QCOMPARE(window_->lastError(), 0);
  QCoreApplication::processEvents();
  TakePicture(window_.get(), "host");
}

void OperationsTest::sortRuns() {
  QStringList texts;
  for (const QString& text : {u"Загрузка..."_qs, u"Сортировка..."_qs}) {
    When(
        [text] {
          const auto* const label = Part<QLabel>("Progress", "Label");
          return label != nullptr && label->text() == text;
        },
        [text, &texts] { texts << text; });
  }
  Trigger("sort");
  QCOMPARE(texts, (QStringList{u"Загрузка..."_qs, u"Сортировка..."_qs}));
  QCOMPARE(window_->lastError(), 0);
}

void OperationsTest::sortIsCancelledByAClick() {
  int reached = 0;
  int maximum = 0;
  WhenBarReaches("Progress", 2, [&] {
    const auto* const bar = Part<QProgressBar>("Progress", "bar");
    reached = bar->value();
    maximum = bar->maximum();
    Click("Progress", "cancel");
  });
  Trigger("sort");
  QVERIFY2(0 < reached && reached < kRecords, qPrintable(QString::number(reached)));
  QCOMPARE(maximum, kRecords);
  QCOMPARE(window_->lastError(), 0);
}

void OperationsTest::sortRefusesInAMessageBox() {
  window_->ShowFiltered("cell(rec,2)=\"нет\"");
  bool seen = false;
  WhenBox([&seen] {
    QCOMPARE(
        VisibleBox()->text(),
        u"Невозможно сортироварь данные под фильтром!\nОчистите фильтр и повторите попытку."_qs);
    QCOMPARE(VisibleBox()->icon(), QMessageBox::Critical);
    seen = true;
    ClickBox("ok");
  });
  Trigger("sort");
  QVERIFY(seen);
}

void OperationsTest::filterShowsTheMatchingRecords() {
  window_->ShowFiltered("cell(rec,2)=\"Орёл\"");
  QCOMPARE(window_->lastError(), 0);
  QCOMPARE(ShownRecords(), kRecords / 5);
}

void OperationsTest::filterIsCancelledByAClick() {
  // Every record matches, so the view has as many records as were looked at.
  WhenBarReaches("CrFlt", 1, [] {
    QCOMPARE(Part<QLabel>("CrFlt", "Label")->text(), u"val(cell(rec,1))>9000000"_qs);
    TakePicture(VisibleDialog("CrFlt"), "filter-real");
    WhenBox([] { ClickBox("yes"); });
    Click("CrFlt", "cancel");
  });
  window_->ShowFiltered("val(cell(rec,1))>9000000");
  QCOMPARE(window_->lastError(), 0);
  QVERIFY2(0 < ShownRecords() && ShownRecords() < kRecords,
           qPrintable(QString::number(ShownRecords())));
}

void OperationsTest::GoToField(int field) {
  auto* const table = window_->findChild<QTableView*>();
  table->setCurrentIndex(table->model()->index(0, field - 1));
}

// The style as `GetFldStyle` numbers it.
int OperationsTest::StyleOf(int field) {
  Engine engine;
  std::wstring path = Quoted(table_);
  auto enginesField = static_cast<std::int16_t>(field);
  std::int16_t style = -1;
  std::int16_t width = 0;
  Boolean fixedType{};
  Boolean unique{};
  std::int16_t dataType = 0;
  engine.GetFldStyle(path, enginesField, style, width, fixedType, unique, dataType);
  return style;
}

void OperationsTest::conversionIsCancelledByAClick() {
  GoToField(1);
  WhenBarReaches("CompressForm", 1, [] {
    QCOMPARE(Part<QLabel>("CompressForm", "Steps(3)")->text(), u"» Обновление данных..."_qs);
    QVERIFY(!Part<QLabel>("CompressForm", "Steps(1)")->isVisible());
    TakePicture(VisibleDialog("CompressForm"), "conversion-real");
    WhenBox([] { ClickBox("yes"); });
    Click("CompressForm", "cancel");
  });
  Trigger("fixed");
  QCOMPARE(window_->lastError(), 0);
  QCOMPARE(StyleOf(1), kFreeStyle);
}

void OperationsTest::conversionRuns() {
  GoToField(2);
  bool seen = false;
  WhenBarReaches("CompressForm", 1, [&seen] {
    QVERIFY(Part<QLabel>("CompressForm", "Label")->text().endsWith(u"\"Словарный\""_qs));
    QCOMPARE(Part<QLabel>("CompressForm", "Steps(1)")->text(), u"» Анализ данных таблицы..."_qs);
    QVERIFY(Part<QLabel>("CompressForm", "Steps(1)")->font().bold());
    seen = true;
  });
  Trigger("dictionary");
  QVERIFY(seen);
  QCOMPARE(window_->lastError(), 0);
  QCOMPARE(StyleOf(2), kDictionaryStyle);
  const auto* const model = window_->findChild<QTableView*>()->model();
  QCOMPARE(model->index(0, 1).data().toString(), u"Тверь"_qs);
  QCOMPARE(model->index(kRecords - 1, 1).data().toString(), u"Москва"_qs);
}

// The field has been converted by the test before.
void OperationsTest::conversionRefusesInAMessageBox() {
  GoToField(2);
  bool seen = false;
  WhenBox([&seen] {
    QCOMPARE(VisibleBox()->text(), u"Стиль поля уже установлен как \"Сжатый\"."_qs);
    QCOMPARE(VisibleBox()->icon(), QMessageBox::Warning);
    seen = true;
    ClickBox("ok");
  });
  Trigger("dictionary");
  QVERIFY(seen);
}

void OperationsTest::exportRuns() {
  const QString target = folder_.filePath("towns.txt");
  WhenEnabled("ExportData", "forward", [] { Click("ExportData", "forward"); });
  bool seen = false;
  WhenBarReaches("ExportData", 1, [&seen] {
    QCOMPARE(Part<QLabel>("ExportData", "LabelS1(7)")->text(), u"Города"_qs);
    TakePicture(VisibleDialog("ExportData"), "export-real");
    seen = true;
  });
  window_->ExportTo(target, false);
  QVERIFY(seen);
  QCOMPARE(window_->lastError(), 0);
  QFile file(target);
  QVERIFY(file.open(QIODevice::ReadOnly));
  QCOMPARE(file.readAll().count('\n'), kRecords);
}

void OperationsTest::exportIsCancelledByAClick() {
  for (const bool container : {false, true}) {
    const QString target = folder_.filePath("cancelled");
    WhenEnabled("ExportData", "forward", [] { Click("ExportData", "forward"); });
    bool thereWhenClicked = false;
    WhenBarReaches("ExportData", 1, [&] {
      thereWhenClicked = QFileInfo::exists(target);
      WhenBox([] { ClickBox("yes"); });
      Click("ExportData", "cancel");
    });
    window_->ExportTo(target, container);
    QVERIFY(thereWhenClicked);
    QVERIFY(!QFileInfo::exists(target));
  }
}

void OperationsTest::exportAsksBeforeItOverwrites() {
  const QString target = folder_.filePath("kept");
  QFile file(target);
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.write("kept");
  file.close();
  WhenBox([] { ClickBox("cancel"); });
  window_->ExportTo(target, true);
  QCOMPARE(QFileInfo(target).size(), 4);
}

}  // namespace orv::qt

QTEST_MAIN(orv::qt::OperationsTest)
#include "operations_test.moc"
