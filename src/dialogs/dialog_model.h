// What the four long-operation dialogs share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "orv/dialogs.h"

#include "dialogs/cancel_request.h"

namespace orv::dialogs {

/// The model of one dialog, written by the operation that owns it.
///
/// A model is shown once. Between `Show` or `RunModal` and `Close` every change is reported to the
/// user interface that was installed when the model was made; before and after that the model can
/// be written as well, but nobody is told. A model that is destroyed while it is shown closes
/// itself.
///
/// The loop of an operation does, once per record: `SetValue`, `ServiceEvents`, then test
/// `CancelRequested`. The first two cost one virtual call each and allocate nothing.
class DialogModel : public Dialog {
 public:
  ~DialogModel() override;

  const std::wstring& name() const override { return name_; }
  const std::wstring& caption() const override { return caption_; }
  const std::vector<DialogLabel>& labels() const override { return labels_; }
  std::int32_t minimum() const override { return minimum_; }
  std::int32_t maximum() const override { return maximum_; }
  std::int32_t value() const override { return value_; }
  bool closed() const override { return state_ == State::kClosed; }
  bool cancelled() const override { return cancelled_; }
  void OnClose() override;

  void SetCaption(std::wstring caption);
  /// Sets the ends of the bar, counted in records or entries, and puts its value at the lower one.
  void SetRange(std::int32_t minimum, std::int32_t maximum);
  void SetValue(std::int32_t value) {
    value_ = value;
    Report(DialogChange::kBar);
  }
  /// Lets pending events run; a handler of this dialog may be called from inside.
  void ServiceEvents() { userInterface_.ServiceEvents(); }
  /// Whether a cancel request stands, made here or left by an earlier operation.
  static bool CancelRequested() { return CancelRequest::IsMade(); }
  void SetBusyPointer(bool busy);
  /// Takes the dialog off the screen and restores the pointer; does nothing when it is not shown.
  void Close();

 protected:
  DialogModel(std::wstring name, std::wstring caption, std::vector<DialogLabel> labels);

  /// Shows the dialog and returns at once.
  void ShowModeless();
  /// Shows the dialog until it is closed; then throws again what the work threw.
  void ShowModal();
  /// Runs the work for a handler. Handlers throw nothing: a failure closes the dialog and waits
  /// for `ShowModal` to throw it.
  void Run(const std::function<void()>& work);
  /// Keeps the exception being handled for `ShowModal` to throw; an earlier one stays.
  void KeepFailure();

  void RequestCancel();
  /// What a confirmed cancel button does: makes the request for the running loop to find, or
  /// closes the dialog where no loop runs.
  void ConfirmCancel(std::wstring question, std::wstring questionCaption);

  void SetLabel(std::size_t label, std::wstring text, bool bold = false);
  void HideLabel(std::size_t label);
  void Report(DialogChange change, std::size_t label = 0) {
    if (state_ == State::kShown) userInterface_.Changed(*this, change, label);
  }

 private:
  enum class State { kLoaded, kShown, kClosed };

  UserInterface& userInterface_;
  const std::wstring name_;
  std::wstring caption_;
  std::vector<DialogLabel> labels_;
  std::int32_t minimum_ = 0;
  std::int32_t maximum_ = 0;
  std::int32_t value_ = 0;
  State state_ = State::kLoaded;
  bool busy_ = false;
  bool running_ = false;
  bool cancelled_ = false;
  std::exception_ptr failure_;
};

}  // namespace orv::dialogs
