#include "cli/scripted_interface.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "cli/utf8.h"

namespace orv::cli {
namespace {

using nlohmann::json;

// In the order of the enumerations.
constexpr std::array<std::string_view, 4> kIcons = {"none", "critical", "question", "exclamation"};
constexpr std::array<std::string_view, 3> kButtonSets = {"ok", "okcancel", "yesno"};
constexpr std::array<std::string_view, 4> kButtons = {"ok", "cancel", "yes", "no"};

std::string_view Name(Icon icon) { return kIcons[static_cast<std::size_t>(icon)]; }
std::string_view Name(Buttons buttons) { return kButtonSets[static_cast<std::size_t>(buttons)]; }
std::string_view Name(Button button) { return kButtons[static_cast<std::size_t>(button)]; }

std::optional<Button> ButtonNamed(std::string_view name) {
  for (std::size_t button = 0; button < kButtons.size(); button++) {
    if (kButtons[button] == name) return static_cast<Button>(button);
  }
  return std::nullopt;
}

}  // namespace

void ScriptedInterface::Begin(ScriptedCall call) {
  call_ = std::move(call);
  answersUsed_ = 0;
  cancelAimed_ = nullptr;
  cancelPressed_ = false;
  log_ = json::array();
}

json ScriptedInterface::TakeLog() { return std::exchange(log_, json::array()); }

Button ScriptedInterface::ShowMessage(const Message& message) {
  const Button answer = NextAnswer(message.buttons);
  log_.push_back({{"kind", "message"},
                  {"caption", ToUtf8(message.caption)},
                  {"text", ToUtf8(message.text)},
                  {"icon", Name(message.icon)},
                  {"buttons", Name(message.buttons)},
                  {"answer", Name(answer)}});
  return answer;
}

Button ScriptedInterface::NextAnswer(Buttons buttons) {
  if (answersUsed_ == call_.answers.size()) return SafeButton(buttons);
  const auto button = ButtonNamed(call_.answers[answersUsed_++]);
  return button && HasButton(buttons, *button) ? *button : SafeButton(buttons);
}

void ScriptedInterface::Show(Dialog& dialog) { Open(dialog); }

void ScriptedInterface::RunModal(Dialog& dialog) {
  Open(dialog);
  ExportSettings* const settings = dialog.settings();
  if (settings != nullptr && call_.separators) {
    settings->fieldSeparator = call_.separators->first;
    settings->recordSeparator = call_.separators->second;
  }
  RunUnattended(dialog);
}

void ScriptedInterface::Open(Dialog& dialog) {
  shown_.push_back({&dialog, dialog.labels(), json::array()});
  AimCancel(dialog);
}

void ScriptedInterface::Changed(Dialog& dialog, DialogChange change, std::size_t label) {
  if (change == DialogChange::kBar) AimCancel(dialog);
  if (change == DialogChange::kLabel) LogLabel(dialog, label);
}

void ScriptedInterface::LogLabel(Dialog& dialog, std::size_t label) {
  const auto shown = std::find_if(shown_.rbegin(), shown_.rend(), [&dialog](const Shown& entry) {
    return entry.dialog == &dialog;
  });
  if (shown == shown_.rend()) return;
  const DialogLabel& now = dialog.labels()[label];
  DialogLabel& before = shown->labels[label];
  // A label that is only hidden takes no new text.
  if (now.text != before.text || now.bold != before.bold) {
    shown->texts.push_back(
        {{"label", ToUtf8(now.name)}, {"text", ToUtf8(now.text)}, {"bold", now.bold}});
  }
  before = now;
}

void ScriptedInterface::AimCancel(Dialog& dialog) {
  if (cancelPressed_ || cancelAimed_ != nullptr || !call_.pressCancelAt) return;
  if (dialog.value() >= *call_.pressCancelAt) cancelAimed_ = &dialog;
}

void ScriptedInterface::ServiceEvents() {
  if (cancelAimed_ == nullptr) return;
  cancelPressed_ = true;
  std::exchange(cancelAimed_, nullptr)->OnCancel();
}

void ScriptedInterface::Close(Dialog& dialog) {
  if (cancelAimed_ == &dialog) cancelAimed_ = nullptr;
  const auto shown = std::find_if(shown_.begin(), shown_.end(), [&dialog](const Shown& entry) {
    return entry.dialog == &dialog;
  });
  if (shown == shown_.end()) return;
  log_.push_back({{"kind", "progress"},
                  {"dialog", ToUtf8(dialog.name())},
                  {"caption", ToUtf8(dialog.caption())},
                  {"labels", std::move(shown->texts)},
                  {"minimum", dialog.minimum()},
                  {"maximum", dialog.maximum()},
                  {"value", dialog.value()},
                  {"cancelled", dialog.cancelled()}});
  shown_.erase(shown);
}

}  // namespace orv::cli
