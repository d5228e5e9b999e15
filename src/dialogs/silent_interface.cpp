#include "dialogs/silent_interface.h"

namespace orv {

void RunUnattended(Dialog& dialog) {
  dialog.OnTimer();
  if (!dialog.closed() && dialog.AwaitsForward()) dialog.OnForward();
  if (!dialog.closed()) dialog.OnClose();
}

namespace dialogs {

Button SilentInterface::ShowMessage(const Message& message) { return SafeButton(message.buttons); }

void SilentInterface::RunModal(Dialog& dialog) { RunUnattended(dialog); }

}  // namespace dialogs
}  // namespace orv
