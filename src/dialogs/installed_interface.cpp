#include "dialogs/installed_interface.h"

#include <utility>

#include "dialogs/silent_interface.h"

namespace orv {
namespace {

// nullptr stands for the silent interface, so that hosts need not know that one.
UserInterface* installed = nullptr;

}  // namespace

UserInterface* InstallUserInterface(UserInterface* userInterface) {
  return std::exchange(installed, userInterface);
}

namespace dialogs {

UserInterface& InstalledInterface() {
  if (installed != nullptr) return *installed;
  static SilentInterface silent;
  return silent;
}

void Beep() { InstalledInterface().Beep(); }

}  // namespace dialogs
}  // namespace orv
