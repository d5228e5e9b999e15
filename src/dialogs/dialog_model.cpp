#include "dialogs/dialog_model.h"

#include <utility>

#include "dialogs/installed_interface.h"
#include "dialogs/message_boxes.h"

namespace orv::dialogs {

DialogModel::DialogModel(std::wstring name, std::wstring caption, std::vector<DialogLabel> labels)
    : userInterface_(InstalledInterface()),
      name_(std::move(name)),
      caption_(std::move(caption)),
      labels_(std::move(labels)) {}

DialogModel::~DialogModel() { Close(); }

void DialogModel::OnClose() {
  if (running_) {
    OnCancel();
  } else {
    Close();
  }
}

void DialogModel::SetCaption(std::wstring caption) {
  caption_ = std::move(caption);
  Report(DialogChange::kCaption);
}

void DialogModel::SetRange(std::int32_t minimum, std::int32_t maximum) {
  minimum_ = minimum;
  maximum_ = maximum;
  SetValue(minimum);
}

void DialogModel::SetBusyPointer(bool busy) {
  if (busy_ == busy) return;
  busy_ = busy;
  userInterface_.SetBusyPointer(busy);
}

void DialogModel::Close() {
  if (state_ != State::kShown) return;
  state_ = State::kClosed;
  userInterface_.Close(*this);
  SetBusyPointer(false);
}

void DialogModel::ShowModeless() {
  state_ = State::kShown;
  running_ = true;
  userInterface_.Show(*this);
}

void DialogModel::ShowModal() {
  state_ = State::kShown;
  userInterface_.RunModal(*this);
  Close();
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void DialogModel::Run(const std::function<void()>& work) {
  running_ = true;
  try {
    work();
  } catch (...) {
    KeepFailure();
    Close();
  }
  running_ = false;
}

void DialogModel::KeepFailure() {
  if (!failure_) failure_ = std::current_exception();
}

void DialogModel::RequestCancel() {
  CancelRequest::Make();
  cancelled_ = true;
}

void DialogModel::ConfirmCancel(std::wstring question, std::wstring questionCaption) {
  if (!Confirm(std::move(question), std::move(questionCaption))) return;
  RequestCancel();
  if (!running_) Close();
}

void DialogModel::SetLabel(std::size_t label, std::wstring text, bool bold) {
  labels_[label].text = std::move(text);
  labels_[label].bold = bold;
  Report(DialogChange::kLabel, label);
}

void DialogModel::HideLabel(std::size_t label) {
  labels_[label].visible = false;
  Report(DialogChange::kLabel, label);
}

}  // namespace orv::dialogs
