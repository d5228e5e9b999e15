// The dialog of filter creation.
#pragma once

#include <functional>
#include <string>

#include "dialogs/dialog_model.h"

namespace orv::dialogs {

/// `CrFlt`: shows the condition and a bar while the filter builder runs, and closes itself when the
/// builder returns, whatever made it return.
class CrFlt final : public DialogModel {
 public:
  using Work = std::function<void(CrFlt&)>;

  explicit CrFlt(Work work);

  /// Runs the work behind the dialog. What the work throws is thrown again after the dialog has
  /// closed. The cancel request is cleared before the work starts.
  void RunModal();
  void SetLabel(std::wstring text);

  void OnTimer() override;
  void OnCancel() override;

 private:
  Work work_;
};

}  // namespace orv::dialogs
