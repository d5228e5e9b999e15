// Desktop dialogs for hosts that use Qt.
#pragma once

#include "orv/dialogs.h"

namespace orv::qt {

/// Installs the Qt windows as the user interface of every operation of this process: message boxes,
/// the four dialogs of long operations, the busy pointer. Call it on the thread of the one
/// QApplication, which must exist by then and outlive every operation. Returns the interface that
/// was installed before, nullptr for the silent one.
UserInterface* InstallDialogs();

}  // namespace orv::qt
