// The general progress dialog.
#pragma once

#include <string>

#include "dialogs/dialog_model.h"

namespace orv::dialogs {

/// `Progress`: one label and the bar over an operation that runs on its caller's stack. Its cancel
/// button makes the request without asking.
///
/// After `Close` the operation may go on writing to it; nothing is shown and, above all, a standing
/// cancel request stays: only `Show` clears it.
class Progress final : public DialogModel {
 public:
  Progress();

  /// Clears the cancel request, shows the dialog without blocking, and the busy pointer until it is
  /// closed.
  void Show(std::wstring caption);
  void SetLabel(std::wstring text);

  /// The operation runs already; there is nothing to start.
  void OnTimer() override {}
  void OnCancel() override;
};

}  // namespace orv::dialogs
