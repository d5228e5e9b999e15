// The window of `ExportData`.
#pragma once

#include <QComboBox>
#include <QFormLayout>
#include <QRadioButton>
#include <QStackedWidget>

#include "qt/dialog_window.h"

namespace orv::qt {

/// A wizard of two pages: the settings, and the running export. What is set on the first page goes
/// into the model when the forward button is pressed.
class ExportWindow final : public DialogWindow {
 public:
  ExportWindow(Dialog& dialog, QWidget* parent);

 protected:
  void Update() override;

 private:
  QWidget* MakeSettingsPage();
  QWidget* MakeRunningPage();
  QComboBox* MakeSeparatorBox(const char* name, const QStringList& choices,
                              const std::wstring& text);
  void GoForward();

  QStackedWidget* pages_;
  QPushButton* forward_;
  QFormLayout* form_ = nullptr;
  QRadioButton* withProperties_ = nullptr;
  QRadioButton* valuesOnly_ = nullptr;
  QComboBox* fieldSeparator_ = nullptr;
  QComboBox* recordSeparator_ = nullptr;
  bool wentForward_ = false;
};

}  // namespace orv::qt
