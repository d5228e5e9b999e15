// The user interface of the scripting host: answers come with each request, what was shown is
// logged.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "orv/dialogs.h"

namespace orv::cli {

/// What a request says about the dialogs of its call.
struct ScriptedCall {
  /// "ok", "cancel", "yes" or "no", one for each message box in turn. Where the list is used up or
  /// its entry is no button of the box, the safe button is pressed.
  std::vector<std::string> answers;
  /// Where the bar of a dialog stands when its cancel button is pressed, once in the call.
  std::optional<std::int64_t> pressCancelAt;
  /// What is typed into the field and the record separator box of the export dialog.
  std::optional<std::pair<std::wstring, std::wstring>> separators;
};

class ScriptedInterface final : public UserInterface {
 public:
  /// Starts a call with an empty log. Buttons left over from the former call are forgotten.
  void Begin(ScriptedCall call);
  /// The log since `Begin`, a list of entries in the form of the protocol; it is empty afterwards.
  nlohmann::json TakeLog();

  Button ShowMessage(const Message& message) override;
  void Show(Dialog& dialog) override;
  void RunModal(Dialog& dialog) override;
  void Changed(Dialog& dialog, DialogChange change, std::size_t label) override;
  void ServiceEvents() override;
  void Close(Dialog& dialog) override;
  void SetBusyPointer(bool) override {}
  void Beep() override {}

 private:
  // A dialog on the imagined screen. One can stand on another: reading a filtered path inside a
  // long operation may build the filter.
  struct Shown {
    Dialog* dialog;
    std::vector<DialogLabel> labels;
    nlohmann::json texts;
  };

  Button NextAnswer(Buttons buttons);
  void Open(Dialog& dialog);
  void LogLabel(Dialog& dialog, std::size_t label);
  void AimCancel(Dialog& dialog);

  ScriptedCall call_;
  std::size_t answersUsed_ = 0;
  // The dialog whose bar has reached the place of the press; it is pressed when events are next
  // serviced, as a real press would arrive.
  Dialog* cancelAimed_ = nullptr;
  bool cancelPressed_ = false;
  std::vector<Shown> shown_;
  nlohmann::json log_ = nlohmann::json::array();
};

}  // namespace orv::cli
