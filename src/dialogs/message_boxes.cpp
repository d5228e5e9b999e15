#include "dialogs/message_boxes.h"

#include <utility>

#include "dialogs/installed_interface.h"

namespace orv {

Button SafeButton(Buttons buttons) {
  switch (buttons) {
    case Buttons::kOkCancel:
      return Button::kCancel;
    case Buttons::kYesNo:
      return Button::kNo;
    case Buttons::kOk:
      break;
  }
  return Button::kOk;
}

bool HasButton(Buttons buttons, Button button) {
  switch (buttons) {
    case Buttons::kOkCancel:
      return button == Button::kOk || button == Button::kCancel;
    case Buttons::kYesNo:
      return button == Button::kYes || button == Button::kNo;
    case Buttons::kOk:
      break;
  }
  return button == Button::kOk;
}

namespace dialogs {

Button ShowMessage(const Message& message) {
  const Button pressed = InstalledInterface().ShowMessage(message);
  return HasButton(message.buttons, pressed) ? pressed : SafeButton(message.buttons);
}

void ShowNotice(std::wstring text, Icon icon, std::wstring caption) {
  ShowMessage({std::move(caption), std::move(text), icon, Buttons::kOk});
}

bool Confirm(std::wstring text, std::wstring caption) {
  return ShowMessage({std::move(caption), std::move(text), Icon::kQuestion, Buttons::kYesNo}) ==
         Button::kYes;
}

bool ConfirmOverwrite() {
  return ShowMessage({L"ORV Server v1.0", L"Файл уже существует!\rЗаписать вместо него?",
                      Icon::kNone, Buttons::kOkCancel}) == Button::kOk;
}

}  // namespace dialogs
}  // namespace orv
