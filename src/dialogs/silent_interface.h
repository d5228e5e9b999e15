// The user interface of a host that installs none.
#pragma once

#include "orv/dialogs.h"

namespace orv::dialogs {

/// Shows nothing, presses the safe button of every message box and runs dialogs unattended.
class SilentInterface final : public UserInterface {
 public:
  Button ShowMessage(const Message& message) override;
  void Show(Dialog&) override {}
  void RunModal(Dialog& dialog) override;
  void Changed(Dialog&, DialogChange, std::size_t) override {}
  void ServiceEvents() override {}
  void Close(Dialog&) override {}
  void SetBusyPointer(bool) override {}
  void Beep() override {}
};

}  // namespace orv::dialogs
