// The user interface in Qt windows.
#pragma once

#include <QElapsedTimer>
#include <cstddef>
#include <memory>
#include <vector>

#include "orv/dialogs.h"

#include "qt/dialog_window.h"

namespace orv::qt {

/// Shows each dialog in an application-modal window. Reports of changes only mark the window;
/// painting and the pumping of events are coalesced to some 60 times a second, so that both cost
/// the running loop next to nothing.
class QtInterface final : public UserInterface {
 public:
  Button ShowMessage(const Message& message) override;
  void Show(Dialog& dialog) override;
  void RunModal(Dialog& dialog) override;
  void Changed(Dialog& dialog, DialogChange change, std::size_t label) override;
  void ServiceEvents() override;
  void Close(Dialog& dialog) override;
  void SetBusyPointer(bool busy) override;
  void Beep() override;

 private:
  DialogWindow* Find(const Dialog& dialog) const;
  QWidget* TopWindow() const;

  // From the lowest to the topmost: one dialog can stand on another.
  std::vector<DialogWindow*> open_;
  // The windows that no `RunModal` holds.
  std::vector<std::unique_ptr<DialogWindow>> modeless_;
  QElapsedTimer sincePump_;
};

}  // namespace orv::qt
