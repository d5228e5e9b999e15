#include "com/dialog_window.h"

#include <algorithm>
#include <string>

#include "com/module.h"
#include "com/windows_headers.h"

namespace orv::com {
namespace {

constexpr const wchar_t* kWindowClass = L"OrvDialog";
constexpr UINT_PTR kStartTimer = 1;
constexpr UINT kForward = 101;

constexpr int kWidth = 460;
constexpr int kMargin = 14;
constexpr int kRow = 24;
constexpr int kLabelHeight = 20;
constexpr int kBarHeight = 20;
constexpr int kButtonWidth = 96;
constexpr int kButtonHeight = 28;
constexpr int kGap = 12;
constexpr int kResultLeft = 260;
/// A heading or a filter condition may need a second line.
constexpr int kWideLabelRows = 2;
/// The system's progress bar counts in 32 bits, but not over its whole range at once.
constexpr std::int32_t kBarSteps = 10000;

bool busyPointer = false;

enum class Place { kWide, kStep, kResult };

// Steps stand on the left, the result of step n beside step n, every other label over the whole
// width.
Place PlaceOf(const DialogLabel& label) {
  if (label.name.starts_with(L"Steps(")) return Place::kStep;
  return label.name.starts_with(L"StpRes(") ? Place::kResult : Place::kWide;
}

HFONT MakeFont(bool bold) {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  if (bold) metrics.lfMessageFont.lfWeight = FW_BOLD;
  return CreateFontIndirectW(&metrics.lfMessageFont);
}

void Center(HWND window, HWND owner) {
  RECT own = {};
  RECT around = {};
  GetWindowRect(window, &own);
  if (owner == nullptr || !GetWindowRect(owner, &around)) {
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &around, 0);
  }
  const int x = (around.left + around.right - (own.right - own.left)) / 2;
  const int y = (around.top + around.bottom - (own.bottom - own.top)) / 2;
  SetWindowPos(window, nullptr, std::max(x, 0), std::max(y, 0), 0, 0, SWP_NOSIZE | SWP_NOZORDER);
}

}  // namespace

void DialogWindow::RegisterClasses() {
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_PROGRESS_CLASS};
  InitCommonControlsEx(&controls);
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = Procedure;
  windowClass.hInstance = Module::Instance();
  windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  windowClass.lpszClassName = kWindowClass;
  RegisterClassExW(&windowClass);
}

void DialogWindow::UnregisterClasses() { UnregisterClassW(kWindowClass, Module::Instance()); }

void DialogWindow::SetBusy(bool busy) { busyPointer = busy; }

DialogWindow::DialogWindow(Dialog& dialog, HWND owner) : dialog_(dialog), owner_(owner) {
  constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
  window_ = CreateWindowExW(WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT, kWindowClass,
                            dialog.caption().c_str(), kStyle, 0, 0, kWidth, kWidth, owner, nullptr,
                            Module::Instance(), this);
  if (window_ == nullptr) return;
  font_ = MakeFont(false);
  boldFont_ = MakeFont(true);
  MakeControls();
  Center(window_, owner_);
  if (owner_ != nullptr) ownerWasEnabled_ = !EnableWindow(owner_, FALSE);
}

DialogWindow::~DialogWindow() {
  if (window_ == nullptr) return;
  // First the owner, then the window: otherwise the system makes another program's window active.
  if (owner_ != nullptr && ownerWasEnabled_) EnableWindow(owner_, TRUE);
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
  DeleteObject(font_);
  DeleteObject(boldFont_);
}

HWND DialogWindow::MakeControl(const wchar_t* windowClass, const wchar_t* text, DWORD style,
                               UINT number, RECT place) {
  HWND control = CreateWindowExW(0, windowClass, text, WS_CHILD | WS_VISIBLE | style, place.left,
                                 place.top, place.right - place.left, place.bottom - place.top,
                                 window_, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(number)),
                                 Module::Instance(), nullptr);
  SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
  return control;
}

int DialogWindow::LabelRows() const {
  int rows = 0;
  for (const DialogLabel& label : dialog_.labels()) {
    if (PlaceOf(label) == Place::kWide) rows += kWideLabelRows;
    if (PlaceOf(label) == Place::kStep) ++rows;
  }
  return rows;
}

void DialogWindow::MakeLabels() {
  int wideTop = kMargin;
  for (const DialogLabel& label : dialog_.labels()) {
    if (PlaceOf(label) == Place::kWide) wideTop += kWideLabelRows * kRow;
  }
  int stepTop = wideTop;
  int resultTop = wideTop;
  wideTop = kMargin;
  const auto take = [](int& top, int left, int right, int rows) {
    const RECT place = {left, top, right, top + (rows - 1) * kRow + kLabelHeight};
    top += rows * kRow;
    return place;
  };
  for (const DialogLabel& label : dialog_.labels()) {
    RECT place = {};
    switch (PlaceOf(label)) {
      case Place::kWide:
        place = take(wideTop, kMargin, kWidth - kMargin, kWideLabelRows);
        break;
      case Place::kStep:
        place = take(stepTop, kMargin, kResultLeft, 1);
        break;
      case Place::kResult:
        place = take(resultTop, kResultLeft, kWidth - kMargin, 1);
        break;
    }
    labels_.push_back(MakeControl(L"STATIC", L"", SS_LEFT | SS_NOPREFIX, 0, place));
    ShowLabel(labels_.size() - 1);
  }
}

void DialogWindow::MakeControls() {
  MakeLabels();
  int top = kMargin + LabelRows() * kRow;
  if (dialog_.settings() != nullptr) {
    page_.Make([this](auto... all) { return MakeControl(all...); }, top, kWidth);
    top += ExportPage::kHeight;
  }
  bar_ =
      MakeControl(PROGRESS_CLASSW, L"", 0, 0, {kMargin, top, kWidth - kMargin, top + kBarHeight});
  SendMessageW(bar_, PBM_SETRANGE32, 0, kBarSteps);
  top += kBarHeight + kGap;
  const int right = kWidth - kMargin;
  if (dialog_.settings() != nullptr) {
    const int forwardRight = right - kButtonWidth - kGap;
    forward_ = MakeControl(L"BUTTON", L"Далее", BS_DEFPUSHBUTTON | WS_TABSTOP, kForward,
                           {forwardRight - kButtonWidth, top, forwardRight, top + kButtonHeight});
  }
  MakeControl(L"BUTTON", L"Отмена", BS_PUSHBUTTON | WS_TABSTOP, IDCANCEL,
              {right - kButtonWidth, top, right, top + kButtonHeight});
  RECT frame = {0, 0, kWidth, top + kButtonHeight + kMargin};
  AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_STYLE)), FALSE,
                     static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_EXSTYLE)));
  SetWindowPos(window_, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
               SWP_NOMOVE | SWP_NOZORDER);
  ShowPage();
  PaintBar();
}

void DialogWindow::ShowLabel(std::size_t label) {
  const DialogLabel& model = dialog_.labels()[label];
  HWND control = labels_[label];
  SetWindowTextW(control, model.text.c_str());
  SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(model.bold ? boldFont_ : font_), TRUE);
  ShowWindow(control, model.visible ? SW_SHOWNA : SW_HIDE);
}

void DialogWindow::ShowPage() {
  const ExportSettings* settings = dialog_.settings();
  if (settings == nullptr) return;
  page_.Show(*settings, dialog_.AwaitsForward());
  EnableWindow(forward_, dialog_.AwaitsForward());
}

void DialogWindow::Present() {
  ShowWindow(window_, SW_SHOW);
  SetForegroundWindow(window_);
  RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void DialogWindow::StartTimer() {
  waitsForTimer_ = true;
  SetTimer(window_, kStartTimer, USER_TIMER_MINIMUM, nullptr);
}

void DialogWindow::Update(DialogChange change, std::size_t label) {
  if (change == DialogChange::kBar) {
    barChanged_ = true;
    return;
  }
  if (change == DialogChange::kCaption) SetWindowTextW(window_, dialog_.caption().c_str());
  if (change == DialogChange::kLabel) ShowLabel(label);
  if (change == DialogChange::kPage) ShowPage();
  PaintBar();
  RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void DialogWindow::PaintBar() {
  if (!barChanged_) return;
  barChanged_ = false;
  const std::int64_t range = std::int64_t{dialog_.maximum()} - dialog_.minimum();
  const std::int64_t done = std::int64_t{dialog_.value()} - dialog_.minimum();
  const std::int64_t steps =
      range <= 0 ? 0 : std::clamp<std::int64_t>(done, 0, range) * kBarSteps / range;
  SendMessageW(bar_, PBM_SETPOS, static_cast<WPARAM>(steps), 0);
}

LRESULT CALLBACK DialogWindow::Procedure(HWND window, UINT message, WPARAM word, LPARAM extra) {
  if (message == WM_NCCREATE) {
    const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(extra);
    auto* self = static_cast<DialogWindow*>(creation->lpCreateParams);
    self->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* self = reinterpret_cast<DialogWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self == nullptr) return DefWindowProcW(window, message, word, extra);
  return self->OnMessage(message, word, extra);
}

LRESULT DialogWindow::OnMessage(UINT message, WPARAM word, LPARAM extra) {
  switch (message) {
    case WM_TIMER:
      if (word != kStartTimer) break;
      OnTimer();
      return 0;
    case WM_COMMAND:
      OnCommand(LOWORD(word));
      return 0;
    case WM_CLOSE:
      if (waitsForTimer_) {
        cancelEarly_ = true;
      } else {
        dialog_.OnClose();
      }
      return 0;
    case WM_SETCURSOR:
      if (!busyPointer || LOWORD(extra) != HTCLIENT) break;
      SetCursor(LoadCursorW(nullptr, IDC_WAIT));
      return TRUE;
    default:
      break;
  }
  return DefWindowProcW(window_, message, word, extra);
}

// A question asked before the timer would let it start the work from inside the question's own
// message loop; and the work, when it ends, takes the question off the screen.
//
// A handler may close the dialog, and with it this window: nothing of it is touched afterwards.
void DialogWindow::OnTimer() {
  KillTimer(window_, kStartTimer);
  waitsForTimer_ = false;
  if (cancelEarly_) PostMessageW(window_, WM_COMMAND, IDCANCEL, 0);
  dialog_.OnTimer();
}

void DialogWindow::OnCommand(UINT control) {
  if (control == IDCANCEL && waitsForTimer_) {
    cancelEarly_ = true;
  } else if (control == IDCANCEL) {
    dialog_.OnCancel();
  } else if ((control == kForward || control == IDOK) && dialog_.AwaitsForward()) {
    page_.Read(*dialog_.settings());
    dialog_.OnForward();
  }
}

}  // namespace orv::com
