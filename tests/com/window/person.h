// A person in front of the dialogs: a second thread that waits for windows and presses buttons.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <thread>

#include "com/windows_headers.h"

namespace orv::test {

/// Runs a script of actions beside the test. An action that waits in vain for its window makes the
/// script fail, which `Finish` tells.
class Person {
 public:
  explicit Person(std::function<bool(Person&)> script);
  ~Person();
  Person(const Person&) = delete;
  Person& operator=(const Person&) = delete;

  /// Waits for the script's end; whether every action succeeded.
  bool Finish();

  /// Waits for one of our dialogs, or a message box with that caption, to be visible.
  HWND WaitForDialog();
  HWND WaitForMessage(const std::wstring& caption);
  /// Presses a button; false where there is none that can be pressed.
  bool Press(HWND window, int button);
  /// Waits until the control can be used.
  bool WaitUntilEnabled(HWND window, int control);
  /// Waits until the dialog's bar has left its start; false when it reaches its end first.
  bool WaitUntilBarMoves(HWND dialog);
  bool Type(HWND window, int control, const std::wstring& text);
  /// Has a picture of the screen taken by whoever runs the tests; nothing without such a runner.
  void TakePicture(const std::string& name);

 private:
  std::atomic<bool> succeeded_ = false;
  std::thread thread_;
};

/// The numbers of the export dialog's controls.
inline constexpr int kForwardButton = 101;
inline constexpr int kFieldSeparatorBox = 203;

}  // namespace orv::test
