// The user interface of hosts on Windows: message boxes and dialogs in the system's own windows.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "orv/dialogs.h"

#include "com/dialog_window.h"
#include "com/windows_headers.h"

namespace orv::com {

/// Shows each dialog in a window of its own, on the host's message loop. While one is open the
/// window below it (the host's active window, or an outer dialog) takes no input.
///
/// Where no window can be made (a service, a session without a display) message boxes press the
/// safe button and dialogs run unattended.
class NativeInterface final : public UserInterface {
 public:
  /// Makes the one instance of the process the installed interface.
  static void Install();

  NativeInterface();
  ~NativeInterface() override;

  Button ShowMessage(const Message& message) override;
  void Show(Dialog& dialog) override;
  void RunModal(Dialog& dialog) override;
  void Changed(Dialog& dialog, DialogChange change, std::size_t label) override;
  void ServiceEvents() override;
  void Close(Dialog& dialog) override;
  void SetBusyPointer(bool busy) override;
  void Beep() override;

 private:
  DialogWindow* Find(const Dialog& dialog);
  HWND TopWindow() const;
  /// Opens a window for the dialog; nullptr where none can be made.
  DialogWindow* Open(Dialog& dialog);
  void RunLoop(const Dialog& dialog);
  /// Hands one message to its window; keeps the host's request to quit for later.
  void Dispatch(MSG& message);
  void PassQuitOn();

  std::vector<std::unique_ptr<DialogWindow>> windows_;
  ULONGLONG lastService_ = 0;
  bool quitAsked_ = false;
  int quitCode_ = 0;
};

}  // namespace orv::com
