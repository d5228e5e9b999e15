#include "window/person.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace orv::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

constexpr seconds kPatience{20};

/// Asks every millisecond until the answer is true; false when patience ends.
bool WaitUntil(const std::function<bool()>& question) {
  const auto deadline = Clock::now() + kPatience;
  while (!question()) {
    if (Clock::now() > deadline) return false;
    std::this_thread::sleep_for(milliseconds(1));
  }
  return true;
}

HWND WaitForWindow(const wchar_t* windowClass, const wchar_t* caption) {
  HWND found = nullptr;
  WaitUntil([&] {
    found = FindWindowW(windowClass, caption);
    return found != nullptr && IsWindowVisible(found);
  });
  return found;
}

}  // namespace

Person::Person(std::function<bool(Person&)> script)
    : thread_([this, script = std::move(script)] { succeeded_ = script(*this); }) {}

Person::~Person() { Finish(); }

bool Person::Finish() {
  if (thread_.joinable()) thread_.join();
  return succeeded_;
}

HWND Person::WaitForDialog() { return WaitForWindow(L"OrvDialog", nullptr); }

HWND Person::WaitForMessage(const std::wstring& caption) {
  return WaitForWindow(L"#32770", caption.c_str());
}

bool Person::Press(HWND window, int button) {
  HWND control = GetDlgItem(window, button);
  if (control == nullptr || !IsWindowEnabled(control)) return false;
  return PostMessageW(control, BM_CLICK, 0, 0) != 0;
}

bool Person::WaitUntilEnabled(HWND window, int control) {
  return WaitUntil([&] {
    HWND found = GetDlgItem(window, control);
    return found != nullptr && IsWindowEnabled(found);
  });
}

bool Person::WaitUntilBarMoves(HWND dialog) {
  HWND bar = FindWindowExW(dialog, nullptr, PROGRESS_CLASSW, nullptr);
  const auto end = SendMessageW(bar, PBM_GETRANGE, FALSE, 0);
  LRESULT position = 0;
  // Each question is answered when the work services its events.
  return bar != nullptr && WaitUntil([&] {
           position = SendMessageW(bar, PBM_GETPOS, 0, 0);
           return position > 0;
         }) &&
         position < end;
}

bool Person::Type(HWND window, int control, const std::wstring& text) {
  HWND box = GetDlgItem(window, control);
  return box != nullptr &&
         SendMessageW(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str())) != 0;
}

// The runner takes the picture when the request appears, and removes the request.
void Person::TakePicture(const std::string& name) {
  const char* folder = std::getenv("ORV_PICTURES");
  if (folder == nullptr) return;
  // What was asked to be painted must have reached the screen.
  std::this_thread::sleep_for(milliseconds(300));
  const std::filesystem::path request = std::filesystem::path(folder) / (name + ".request");
  std::ofstream(request) << name;
  WaitUntil([&] { return !std::filesystem::exists(request); });
}

}  // namespace orv::test
