// The user interface in use.
#pragma once

#include "orv/dialogs.h"

namespace orv::dialogs {

/// The interface that the host installed, or the silent one. The reference is good until the next
/// `InstallUserInterface`.
UserInterface& InstalledInterface();

/// Sounds the installed interface's beep.
void Beep();

}  // namespace orv::dialogs
