// Message boxes in Qt.
#pragma once

#include <QWidget>

#include "orv/dialogs.h"

namespace orv::qt {

/// Shows the box over `parent` (which may be nullptr) and waits for a button. Escape and the close
/// box press the safe button.
Button ShowMessageBox(const Message& message, QWidget* parent);

}  // namespace orv::qt
