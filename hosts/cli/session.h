// The user interface that is in place while a command runs.
#pragma once

#include <utility>

#include "orv/dialogs.h"

#include "cli/console_interface.h"

namespace orv::cli {

/// Installs a console interface; the destructor installs the former one again.
class ConsoleSession {
 public:
  explicit ConsoleSession(ConsoleChoices choices = {})
      : interface_(std::move(choices)), former_(InstallUserInterface(&interface_)) {}
  ~ConsoleSession() { InstallUserInterface(former_); }
  ConsoleSession(const ConsoleSession&) = delete;
  ConsoleSession& operator=(const ConsoleSession&) = delete;

  /// Throws `Failure` when a dialog was cancelled or an operation refused with a message of its
  /// own, which has been shown by then.
  void Check(const char* operation) const;

 private:
  ConsoleInterface interface_;
  UserInterface* former_;
};

}  // namespace orv::cli
