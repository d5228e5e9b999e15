// The window of one long-operation dialog.
#pragma once

#include <cstddef>
#include <vector>

#include "orv/dialogs.h"

#include "com/export_page.h"
#include "com/windows_headers.h"

namespace orv::com {

/// A window with the dialog's labels, its bar and its cancel button, and for the export its
/// settings page and the forward button. Reads everything from the model; the model's handlers are
/// called from the window's messages.
class DialogWindow {
 public:
  /// Makes the window, still hidden, above `owner`, which takes no input until the window is gone.
  /// `handle()` is nullptr where no window can be made.
  DialogWindow(Dialog& dialog, HWND owner);
  ~DialogWindow();
  DialogWindow(const DialogWindow&) = delete;
  DialogWindow& operator=(const DialogWindow&) = delete;

  static void RegisterClasses();
  static void UnregisterClasses();
  /// Whether the pointer over the windows is the hourglass.
  static void SetBusy(bool busy);

  Dialog& dialog() const { return dialog_; }
  HWND handle() const { return window_; }

  /// Shows the window and paints it at once.
  void Present();
  /// Starts the one-shot timer. A cancel that comes before the timer waits until the work runs.
  void StartTimer();
  /// Shows a change of the model. The bar waits for `PaintBar`.
  void Update(DialogChange change, std::size_t label);
  void PaintBar();

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM word, LPARAM extra);
  LRESULT OnMessage(UINT message, WPARAM word, LPARAM extra);
  void OnTimer();
  void OnCommand(UINT control);

  void MakeControls();
  HWND MakeControl(const wchar_t* windowClass, const wchar_t* text, DWORD style, UINT number,
                   RECT place);
  void MakeLabels();
  int LabelRows() const;
  void ShowLabel(std::size_t label);
  void ShowPage();

  Dialog& dialog_;
  HWND owner_;
  bool ownerWasEnabled_ = false;
  HWND window_ = nullptr;
  HFONT font_ = nullptr;
  HFONT boldFont_ = nullptr;
  std::vector<HWND> labels_;
  HWND bar_ = nullptr;
  HWND forward_ = nullptr;
  ExportPage page_;
  bool barChanged_ = true;
  bool waitsForTimer_ = false;
  bool cancelEarly_ = false;
};

}  // namespace orv::com
