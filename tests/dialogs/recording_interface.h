// A user interface for tests: writes down what it is shown and presses buttons as told.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "orv/dialogs.h"

namespace orv::test {

/// Installs itself for as long as it lives. Without orders it behaves like the silent interface.
class RecordingInterface : public UserInterface {
 public:
  /// A text that a label took while its dialog was open.
  struct LabelText {
    std::wstring label;
    std::wstring text;
    bool bold = false;
    friend bool operator==(const LabelText&, const LabelText&) = default;
  };
  /// One stretch of the bar, from one setting of its range to the next.
  struct Phase {
    std::int32_t minimum = 0;
    std::int32_t maximum = 0;
    std::int32_t value = 0;
    friend bool operator==(const Phase&, const Phase&) = default;
  };
  /// A dialog, complete when it has been closed.
  struct Shown {
    std::wstring name;
    std::wstring caption;
    std::vector<LabelText> texts;
    std::vector<std::wstring> hidden;
    std::vector<Phase> phases;
    bool cancelled = false;
    bool closed = false;
  };
  /// Where the cancel button is pressed: phases count from 1. The press arrives when events are
  /// next serviced after the bar has reached the value.
  struct CancelPress {
    std::size_t phase = 1;
    std::int32_t value = 0;
  };

  RecordingInterface() : former_(InstallUserInterface(this)) {}
  ~RecordingInterface() override { InstallUserInterface(former_); }

  // Orders.
  std::vector<Button> answers;  ///< pressed in turn, afterwards the safe buttons
  std::optional<CancelPress> pressCancel;
  std::function<void(Dialog&)> onRunModal;  ///< runs a modal dialog instead of `RunUnattended`
  std::function<void()> onServiceEvents;

  // What was seen.
  std::vector<Message> messages;
  std::vector<Shown> dialogs;
  std::vector<bool> pointer;  ///< busy (true) and arrow (false) in turn
  int beeps = 0;
  std::int64_t services = 0;

  const Shown& LastDialog() const { return dialogs.back(); }
  bool AllClosed() const { return open_.empty(); }

  Button ShowMessage(const Message& message) override {
    messages.push_back(message);
    return answered_ < answers.size() ? answers[answered_++] : SafeButton(message.buttons);
  }

  void Show(Dialog& dialog) override {
    open_.push_back({&dialog, dialogs.size(), dialog.labels()});
    Shown& shown = dialogs.emplace_back();
    shown.name = dialog.name();
    shown.caption = dialog.caption();
  }

  void RunModal(Dialog& dialog) override {
    Show(dialog);
    if (onRunModal) {
      onRunModal(dialog);
    } else {
      RunUnattended(dialog);
    }
  }

  void Changed(Dialog& dialog, DialogChange change, std::size_t label) override {
    Shown& shown = Record(dialog);
    if (change == DialogChange::kCaption) shown.caption = dialog.caption();
    if (change == DialogChange::kLabel) RecordLabel(shown, dialog, label);
    if (change == DialogChange::kBar) RecordBar(shown, dialog);
  }

  void ServiceEvents() override {
    services++;
    if (onServiceEvents) onServiceEvents();
    if (aimed_ == nullptr) return;
    Dialog* const dialog = aimed_;
    aimed_ = nullptr;
    dialog->OnCancel();
  }

  void Close(Dialog& dialog) override {
    Shown& shown = Record(dialog);
    shown.cancelled = dialog.cancelled();
    shown.closed = true;
    if (aimed_ == &dialog) aimed_ = nullptr;
    std::erase_if(open_, [&dialog](const Open& open) { return open.dialog == &dialog; });
  }

  void SetBusyPointer(bool busy) override { pointer.push_back(busy); }
  void Beep() override { beeps++; }

 private:
  struct Open {
    Dialog* dialog;
    std::size_t index;
    std::vector<DialogLabel> labels;
  };

  Open& Find(const Dialog& dialog) {
    for (Open& open : open_) {
      if (open.dialog == &dialog) return open;
    }
    std::abort();  // a report about a dialog that is not open
  }
  Shown& Record(const Dialog& dialog) { return dialogs[Find(dialog).index]; }

  void RecordLabel(Shown& shown, const Dialog& dialog, std::size_t label) {
    DialogLabel& before = Find(dialog).labels[label];
    const DialogLabel& now = dialog.labels()[label];
    if (before.visible && !now.visible) shown.hidden.push_back(now.name);
    if (before.text != now.text || before.bold != now.bold) {
      shown.texts.push_back({now.name, now.text, now.bold});
    }
    before = now;
  }

  void RecordBar(Shown& shown, Dialog& dialog) {
    const Phase now{dialog.minimum(), dialog.maximum(), dialog.value()};
    const bool goesOn = !shown.phases.empty() && shown.phases.back().minimum == now.minimum &&
                        shown.phases.back().maximum == now.maximum &&
                        shown.phases.back().value <= now.value;
    if (goesOn) {
      shown.phases.back() = now;
    } else {
      shown.phases.push_back(now);
    }
    if (pressCancel && shown.phases.size() == pressCancel->phase &&
        now.value >= pressCancel->value) {
      pressCancel.reset();
      aimed_ = &dialog;
    }
  }

  UserInterface* former_;
  std::vector<Open> open_;
  std::size_t answered_ = 0;
  Dialog* aimed_ = nullptr;
};

}  // namespace orv::test
