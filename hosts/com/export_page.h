// The settings page of the export dialog.
#pragma once

#include <functional>

#include "orv/dialogs.h"

#include "com/windows_headers.h"

namespace orv::com {

/// Two choices for a container, two boxes for the separators of a text.
class ExportPage {
 public:
  /// Makes a control: class, text, style, number, place.
  using Maker = std::function<HWND(const wchar_t*, const wchar_t*, DWORD, UINT number, RECT place)>;

  static constexpr int kHeight = 108;

  /// Makes the controls with their upper edge at `top`.
  void Make(const Maker& make, int top, int width);
  /// Shows the settings; the page can be used only while the dialog waits for its forward button.
  void Show(const ExportSettings& settings, bool usable);
  /// Takes over what was chosen and typed.
  void Read(ExportSettings& settings) const;

 private:
  HWND withProperties_ = nullptr;
  HWND valuesOnly_ = nullptr;
  HWND fieldSeparator_ = nullptr;
  HWND recordSeparator_ = nullptr;
  bool filled_ = false;
};

}  // namespace orv::com
