#include "qt/qt_interface.h"

#include <QApplication>
#include <QEventLoop>
#include <algorithm>

#include "orv/qt/dialogs.h"

#include "qt/message_box.h"

namespace orv::qt {
namespace {

constexpr qint64 kBetweenPumpsMs = 16;

}  // namespace

UserInterface* InstallDialogs() {
  static QtInterface windows;
  return InstallUserInterface(&windows);
}

Button QtInterface::ShowMessage(const Message& message) {
  for (DialogWindow* const window : open_) window->Refresh();
  return ShowMessageBox(message, TopWindow());
}

void QtInterface::Show(Dialog& dialog) {
  modeless_.push_back(MakeDialogWindow(dialog, TopWindow()));
  open_.push_back(modeless_.back().get());
  open_.back()->show();
  sincePump_.invalidate();
  ServiceEvents();
}

void QtInterface::RunModal(Dialog& dialog) {
  // The window must outlive the handlers that run inside the loop: one of them closes the dialog.
  const std::unique_ptr<DialogWindow> window = MakeDialogWindow(dialog, TopWindow());
  open_.push_back(window.get());
  sincePump_.invalidate();
  QEventLoop loop;
  window->ShowAndStart(loop);
  loop.exec();
}

DialogWindow* QtInterface::Find(const Dialog& dialog) const {
  const auto found =
      std::find_if(open_.rbegin(), open_.rend(),
                   [&dialog](const DialogWindow* window) { return &window->dialog() == &dialog; });
  return found == open_.rend() ? nullptr : *found;
}

QWidget* QtInterface::TopWindow() const {
  return open_.empty() ? QApplication::activeWindow() : open_.back();
}

void QtInterface::Changed(Dialog& dialog, DialogChange, std::size_t) {
  if (DialogWindow* const window = Find(dialog); window != nullptr) window->MarkChanged();
}

void QtInterface::ServiceEvents() {
  if (sincePump_.isValid() && sincePump_.elapsed() < kBetweenPumpsMs) return;
  for (DialogWindow* const window : open_) window->Refresh();
  QCoreApplication::processEvents();
  sincePump_.start();
}

void QtInterface::Close(Dialog& dialog) {
  DialogWindow* const window = Find(dialog);
  if (window == nullptr) return;
  std::erase(open_, window);
  window->Leave();
  std::erase_if(modeless_, [window](const auto& held) { return held.get() == window; });
}

void QtInterface::SetBusyPointer(bool busy) {
  if (busy) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

void QtInterface::Beep() { QApplication::beep(); }

}  // namespace orv::qt
