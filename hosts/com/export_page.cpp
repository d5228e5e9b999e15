#include "com/export_page.h"

#include <string>

namespace orv::com {
namespace {

enum Control : UINT { kWithProperties = 201, kValuesOnly, kFieldSeparator, kRecordSeparator };

constexpr int kRow = 26;
constexpr int kControlHeight = 22;
constexpr int kMargin = 14;
constexpr int kCaptionWidth = 150;

std::wstring TextOfWindow(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(
      static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

}  // namespace

void ExportPage::Make(const Maker& make, int top, int width) {
  const auto row = [&](int number, int left, int right) {
    return RECT{left, top + number * kRow, right, top + number * kRow + kControlHeight};
  };
  const int right = width - kMargin;
  const int box = kMargin + kCaptionWidth;
  withProperties_ =
      make(L"BUTTON", L"Копия со свойствами", BS_AUTORADIOBUTTON | WS_GROUP | WS_TABSTOP,
           kWithProperties, row(0, kMargin, right));
  valuesOnly_ =
      make(L"BUTTON", L"Только значения", BS_AUTORADIOBUTTON, kValuesOnly, row(1, kMargin, right));
  make(L"STATIC", L"Разделитель полей:", SS_LEFT, 0, row(2, kMargin, box));
  fieldSeparator_ = make(L"EDIT", L"", WS_BORDER | WS_TABSTOP | WS_GROUP | ES_AUTOHSCROLL,
                         kFieldSeparator, row(2, box, right));
  make(L"STATIC", L"Разделитель записей:", SS_LEFT, 0, row(3, kMargin, box));
  recordSeparator_ = make(L"EDIT", L"", WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL, kRecordSeparator,
                          row(3, box, right));
}

void ExportPage::Show(const ExportSettings& settings, bool usable) {
  if (!filled_) {
    SendMessageW(settings.withProperties ? withProperties_ : valuesOnly_, BM_SETCHECK, BST_CHECKED,
                 0);
    SetWindowTextW(fieldSeparator_, settings.fieldSeparator.c_str());
    SetWindowTextW(recordSeparator_, settings.recordSeparator.c_str());
    filled_ = true;
  }
  for (HWND choice : {withProperties_, valuesOnly_}) {
    EnableWindow(choice, usable && settings.choicesAvailable);
  }
  for (HWND box : {fieldSeparator_, recordSeparator_}) {
    EnableWindow(box, usable && settings.separatorsAvailable);
  }
}

void ExportPage::Read(ExportSettings& settings) const {
  if (settings.choicesAvailable) {
    settings.withProperties = SendMessageW(withProperties_, BM_GETCHECK, 0, 0) == BST_CHECKED;
  }
  if (settings.separatorsAvailable) {
    settings.fieldSeparator = TextOfWindow(fieldSeparator_);
    settings.recordSeparator = TextOfWindow(recordSeparator_);
  }
}

}  // namespace orv::com
