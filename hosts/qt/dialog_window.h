// The window of a long-operation dialog.
#pragma once

#include <QDialog>
#include <QEventLoop>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <cstddef>
#include <memory>
#include <vector>

#include "orv/dialogs.h"

namespace orv::qt {

/// Shows a dialog model: caption, labels, bar and cancel button. The widgets carry object names: a
/// label the label's own name, and "bar", "cancel", "forward".
class DialogWindow : public QDialog {
 public:
  DialogWindow(Dialog& dialog, QWidget* parent);

  Dialog& dialog() const { return dialog_; }

  /// Shows the window and starts the dialog's work as soon as it has been painted. `loop` is left
  /// when the dialog closes.
  void ShowAndStart(QEventLoop& loop);
  /// Takes the window off the screen.
  void Leave();

  void MarkChanged() { changed_ = true; }
  /// Shows what has changed in the model since the last call.
  void Refresh();

  /// Escape: the cancel button.
  void reject() override;

 protected:
  /// Brings the widgets up to date with the model.
  virtual void Update();

  /// Makes the widget of a label of the model.
  QLabel* MakeLabel(std::size_t label);
  QProgressBar* MakeBar();
  QPushButton* MakeCancelButton();

  void closeEvent(QCloseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void StartOnce();

  Dialog& dialog_;
  std::vector<QLabel*> labels_;
  QProgressBar* bar_ = nullptr;
  QEventLoop* loop_ = nullptr;
  bool changed_ = true;
  bool awaitsStart_ = false;
  bool left_ = false;
};

/// The window for a dialog, made by its name; an unknown name gets labels, bar and cancel button.
std::unique_ptr<DialogWindow> MakeDialogWindow(Dialog& dialog, QWidget* parent);

}  // namespace orv::qt
