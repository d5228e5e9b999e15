#include "com/native_interface.h"

#include <algorithm>
#include <string>

#include "com/module.h"

namespace orv::com {
namespace {

/// Some 60 times a second: what a person can see, and cheap beside the work on the records.
constexpr ULONGLONG kMillisecondsBetweenServices = 16;

UINT StyleOf(const Message& message) {
  UINT style = MB_SETFOREGROUND;
  switch (message.icon) {
    case Icon::kNone:
      break;
    case Icon::kCritical:
      style |= MB_ICONERROR;
      break;
    case Icon::kQuestion:
      style |= MB_ICONQUESTION;
      break;
    case Icon::kExclamation:
      style |= MB_ICONEXCLAMATION;
      break;
  }
  switch (message.buttons) {
    case Buttons::kOk:
      return style | MB_OK;
    case Buttons::kOkCancel:
      return style | MB_OKCANCEL;
    case Buttons::kYesNo:
      return style | MB_YESNO;
  }
  return style;
}

Button ButtonOf(int pressed, Buttons buttons) {
  switch (pressed) {
    case IDOK:
      return Button::kOk;
    case IDCANCEL:
      return Button::kCancel;
    case IDYES:
      return Button::kYes;
    case IDNO:
      return Button::kNo;
    default:
      return SafeButton(buttons);
  }
}

/// The host's name for itself: its program's file name without folder and extension.
std::wstring HostName() {
  std::wstring name(MAX_PATH, L'\0');
  name.resize(GetModuleFileNameW(nullptr, name.data(), MAX_PATH));
  name = name.substr(name.find_last_of(L"\\/") + 1);
  return name.substr(0, name.find_last_of(L'.'));
}

}  // namespace

void NativeInterface::Install() {
  static NativeInterface instance;
  InstallUserInterface(&instance);
}

NativeInterface::NativeInterface() { DialogWindow::RegisterClasses(); }

// A DLL that is loaded again must not find the class of its former address.
NativeInterface::~NativeInterface() { DialogWindow::UnregisterClasses(); }

Button NativeInterface::ShowMessage(const Message& message) {
  std::wstring text = message.text;
  std::replace(text.begin(), text.end(), L'\r', L'\n');
  const std::wstring caption = message.caption.empty() ? HostName() : message.caption;
  const int pressed = MessageBoxW(TopWindow(), text.c_str(), caption.c_str(), StyleOf(message));
  const Button button = ButtonOf(pressed, message.buttons);
  return HasButton(message.buttons, button) ? button : SafeButton(message.buttons);
}

HWND NativeInterface::TopWindow() const {
  return windows_.empty() ? GetActiveWindow() : windows_.back()->handle();
}

DialogWindow* NativeInterface::Find(const Dialog& dialog) {
  const auto found = std::ranges::find_if(
      windows_, [&dialog](const auto& window) { return &window->dialog() == &dialog; });
  return found == windows_.end() ? nullptr : found->get();
}

DialogWindow* NativeInterface::Open(Dialog& dialog) {
  auto window = std::make_unique<DialogWindow>(dialog, TopWindow());
  if (window->handle() == nullptr) return nullptr;
  windows_.push_back(std::move(window));
  lastService_ = 0;
  return windows_.back().get();
}

void NativeInterface::Show(Dialog& dialog) {
  if (DialogWindow* window = Open(dialog)) window->Present();
}

void NativeInterface::RunModal(Dialog& dialog) {
  DialogWindow* window = Open(dialog);
  if (window == nullptr) {
    RunUnattended(dialog);
    return;
  }
  window->Present();
  window->StartTimer();
  RunLoop(dialog);
}

void NativeInterface::RunLoop(const Dialog& dialog) {
  MSG message = {};
  while (!dialog.closed()) {
    if (GetMessageW(&message, nullptr, 0, 0) < 0) return;
    Dispatch(message);
    // A host that is about to end closes what waits for a person.
    DialogWindow* window = quitAsked_ ? Find(dialog) : nullptr;
    if (window != nullptr) window->dialog().OnClose();
  }
}

void NativeInterface::Dispatch(MSG& message) {
  if (message.message == WM_QUIT) {
    quitAsked_ = true;
    quitCode_ = static_cast<int>(message.wParam);
    return;
  }
  if (!windows_.empty() && IsDialogMessageW(windows_.back()->handle(), &message)) return;
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

void NativeInterface::Changed(Dialog& dialog, DialogChange change, std::size_t label) {
  if (DialogWindow* window = Find(dialog)) window->Update(change, label);
}

void NativeInterface::ServiceEvents() {
  const ULONGLONG now = GetTickCount64();
  if (now - lastService_ < kMillisecondsBetweenServices) return;
  lastService_ = now;
  for (const auto& window : windows_) window->PaintBar();
  MSG message = {};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) Dispatch(message);
}

void NativeInterface::Close(Dialog& dialog) {
  std::erase_if(windows_, [&dialog](const auto& window) { return &window->dialog() == &dialog; });
  if (windows_.empty()) PassQuitOn();
}

// The host's own loop has to see its request to quit once the last dialog is gone.
void NativeInterface::PassQuitOn() {
  if (!quitAsked_) return;
  quitAsked_ = false;
  PostQuitMessage(quitCode_);
}

void NativeInterface::SetBusyPointer(bool busy) {
  DialogWindow::SetBusy(busy);
  SetCursor(LoadCursorW(nullptr, busy ? IDC_WAIT : IDC_ARROW));
}

void NativeInterface::Beep() { MessageBeep(MB_OK); }

}  // namespace orv::com
