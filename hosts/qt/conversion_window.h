// The window of `CompressForm`.
#pragma once

#include "qt/dialog_window.h"

namespace orv::qt {

/// The heading, then the steps each with its result beside it, bar and cancel button.
class ConversionWindow final : public DialogWindow {
 public:
  ConversionWindow(Dialog& dialog, QWidget* parent);
};

}  // namespace orv::qt
