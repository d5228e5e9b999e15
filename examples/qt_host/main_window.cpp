#include "qt_host/main_window.h"

#include <QAction>
#include <QFileDialog>
#include <QInputDialog>
#include <QStatusBar>
#include <QToolBar>
#include <utility>

namespace qt_host {
namespace {

// The styles as `SetFldStyle` numbers them.
constexpr std::int16_t kFree = 0;
constexpr std::int16_t kFixed = 1;
constexpr std::int16_t kDictionary = 11;
constexpr std::int16_t kStringType = 10;
constexpr std::int16_t kFixedWidth = 40;

constexpr std::int16_t kContainerFile = 1;
constexpr std::int16_t kTextFile = 2;

}  // namespace

MainWindow::MainWindow()
    : model_(new TableModel(engine_, this)),
      table_(new QTableView(this)),
      tools_(addToolBar("Operations")) {
  table_->setModel(model_);
  setCentralWidget(table_);
  resize(900, 500);
  AddAction("open", "Open…", [this] { AskForTable(); });
  AddAction("sort", "Sort", [this] {
    Run([this](std::wstring& path, std::int16_t& field) { engine_.SortData(path, field); });
  });
  AddAction("filter", "Filter…", [this] { AskForCondition(); });
  AddAction("free", "Free style", [this] { Convert(kFree, 0); });
  AddAction("fixed", "Fixed style", [this] { Convert(kFixed, kFixedWidth); });
  AddAction("dictionary", "Dictionary style", [this] { Convert(kDictionary, 0); });
  AddAction("exportText", "Export text…", [this] { AskForTarget(false); });
  AddAction("exportContainer", "Export container…", [this] { AskForTarget(true); });
}

void MainWindow::AddAction(const char* name, const QString& text, std::function<void()> work) {
  QAction* const action = tools_->addAction(text);
  action->setObjectName(QString::fromLatin1(name));
  connect(action, &QAction::triggered, this, std::move(work));
}

void MainWindow::OpenTable(const QString& fileName) {
  file_ = L"\"" + fileName.toStdWString() + L"\"";
  path_ = file_;
  setWindowTitle(fileName);
  model_->ShowMatrix(path_);
  ShowState();
}

void MainWindow::ShowFiltered(const QString& condition) {
  Run([&](std::wstring&, std::int16_t&) {
    path_ = condition.isEmpty() ? file_ : file_ + L"/" + condition.toStdWString();
    // The view is made when it is first asked for anything.
    engine_.Records(path_);
  });
}

void MainWindow::ExportTo(const QString& fileName, bool container) {
  Run([&](std::wstring& path, std::int16_t&) {
    std::wstring target = fileName.toStdWString();
    orv::Boolean withProperties = orv::Boolean::kTrue;
    std::int16_t fileType = container ? kContainerFile : kTextFile;
    engine_.SaveMtxAs(path, target, withProperties, fileType);
  });
}

void MainWindow::Convert(std::int16_t style, std::int16_t width) {
  Run([&](std::wstring& path, std::int16_t& field) {
    std::int16_t freeSize = style;
    std::int16_t cellSize = width;
    orv::Boolean fixedType = orv::Boolean::kFalse;
    orv::Boolean unique = orv::Boolean::kFalse;
    std::int16_t dataType = kStringType;
    engine_.SetFldStyle(path, field, freeSize, cellSize, fixedType, unique, dataType);
  });
}

// While a dialog is open this window is painted, too; its model must not call the engine then.
void MainWindow::Run(const std::function<void(std::wstring&, std::int16_t&)>& operation) {
  std::wstring path = path_;
  const int column = table_->currentIndex().column();
  auto field = static_cast<std::int16_t>(column < 0 ? 1 : column + 1);
  model_->SetOperationRuns(true);
  operation(path, field);
  model_->SetOperationRuns(false);
  const orv::Value code = engine_.ErrorCode();
  lastError_ = code.Int16() == nullptr ? 0 : *code.Int16();
  model_->ShowMatrix(path_);
  ShowState();
}

void MainWindow::ShowState() {
  statusBar()->showMessage(QString("%1 records, %2 fields, error code %3")
                               .arg(model_->rowCount())
                               .arg(model_->columnCount())
                               .arg(lastError_));
}

void MainWindow::AskForTable() {
  const QString fileName =
      QFileDialog::getOpenFileName(this, "Open a table", {}, "Tables (*.orv *.dbf);;All files (*)");
  if (!fileName.isEmpty()) OpenTable(fileName);
}

void MainWindow::AskForCondition() {
  bool accepted = false;
  const QString condition = QInputDialog::getText(
      this, "Filter",
      "Condition, such as cell(rec,1)=\"x\" (empty: all records):", QLineEdit::Normal, {},
      &accepted);
  if (accepted) ShowFiltered(condition);
}

void MainWindow::AskForTarget(bool container) {
  // The export asks itself before it overwrites.
  const QString fileName = QFileDialog::getSaveFileName(
      this, "Export to", {}, container ? "Containers (*.orv)" : "Texts (*.txt)", nullptr,
      QFileDialog::DontConfirmOverwrite);
  if (!fileName.isEmpty()) ExportTo(fileName, container);
}

}  // namespace qt_host
