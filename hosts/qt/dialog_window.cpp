#include "qt/dialog_window.h"

#include <QCloseEvent>
#include <QPaintEvent>
#include <QTimer>
#include <algorithm>

#include "qt/conversion_window.h"
#include "qt/export_window.h"
#include "qt/progress_window.h"

namespace orv::qt {
namespace {

// A window that nobody can see (minimized, on another desktop) is never painted; its work starts
// all the same.
constexpr int kLatestStartMs = 500;

}  // namespace

DialogWindow::DialogWindow(Dialog& dialog, QWidget* parent)
    : QDialog(parent), dialog_(dialog), labels_(dialog.labels().size(), nullptr) {
  setObjectName(QString::fromStdWString(dialog.name()));
  setWindowModality(Qt::ApplicationModal);
}

void DialogWindow::ShowAndStart(QEventLoop& loop) {
  loop_ = &loop;
  awaitsStart_ = true;
  Refresh();
  show();
  QTimer::singleShot(kLatestStartMs, this, [this] { StartOnce(); });
}

void DialogWindow::paintEvent(QPaintEvent* event) {
  QDialog::paintEvent(event);
  if (awaitsStart_) QTimer::singleShot(0, this, [this] { StartOnce(); });
}

void DialogWindow::StartOnce() {
  if (!awaitsStart_ || left_) return;
  awaitsStart_ = false;
  dialog_.OnTimer();
  if (!left_) Refresh();
}

void DialogWindow::Leave() {
  left_ = true;
  hide();
  if (loop_ != nullptr) loop_->quit();
}

void DialogWindow::Refresh() {
  if (!changed_) return;
  changed_ = false;
  Update();
}

void DialogWindow::Update() {
  setWindowTitle(QString::fromStdWString(dialog_.caption()));
  for (std::size_t label = 0; label < labels_.size(); label++) {
    if (labels_[label] == nullptr) continue;
    const DialogLabel& model = dialog_.labels()[label];
    QFont font = labels_[label]->font();
    font.setBold(model.bold);
    labels_[label]->setFont(font);
    labels_[label]->setText(QString::fromStdWString(model.text));
    labels_[label]->setVisible(model.visible);
  }
  if (bar_ == nullptr) return;
  // Qt shows a bar of no length as one that does not know how far it is; here it has not begun.
  bar_->setRange(dialog_.minimum(), std::max(dialog_.maximum(), dialog_.minimum() + 1));
  bar_->setValue(std::min(dialog_.value(), dialog_.maximum()));
}

QLabel* DialogWindow::MakeLabel(std::size_t label) {
  auto* const widget = new QLabel(this);
  widget->setObjectName(QString::fromStdWString(dialog_.labels()[label].name));
  // A label may show a condition or a title, whatever characters these hold.
  widget->setTextFormat(Qt::PlainText);
  widget->setWordWrap(true);
  labels_[label] = widget;
  return widget;
}

QProgressBar* DialogWindow::MakeBar() {
  bar_ = new QProgressBar(this);
  bar_->setObjectName("bar");
  bar_->setMinimumWidth(360);
  return bar_;
}

QPushButton* DialogWindow::MakeCancelButton() {
  auto* const button = new QPushButton(u"Отмена"_qs, this);
  button->setObjectName("cancel");
  // Enter must not cancel by accident.
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, [this] { dialog_.OnCancel(); });
  return button;
}

void DialogWindow::reject() { dialog_.OnCancel(); }

// The model decides whether the window goes; it calls `Leave` then.
void DialogWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  dialog_.OnClose();
}

std::unique_ptr<DialogWindow> MakeDialogWindow(Dialog& dialog, QWidget* parent) {
  if (dialog.name() == L"CompressForm") return std::make_unique<ConversionWindow>(dialog, parent);
  if (dialog.name() == L"ExportData") return std::make_unique<ExportWindow>(dialog, parent);
  return std::make_unique<ProgressWindow>(dialog, parent);
}

}  // namespace orv::qt
