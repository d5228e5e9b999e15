// The window of `Progress` and `CrFlt`.
#pragma once

#include "qt/dialog_window.h"

namespace orv::qt {

/// All labels one below the other, then bar and cancel button.
class ProgressWindow final : public DialogWindow {
 public:
  ProgressWindow(Dialog& dialog, QWidget* parent);
};

}  // namespace orv::qt
