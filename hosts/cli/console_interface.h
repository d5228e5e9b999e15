// The user interface of the command: progress and questions on the terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orv/dialogs.h"

#include "cli/progress_line.h"
#include "cli/terminal.h"

namespace orv::cli {

/// What the command line has settled beforehand.
struct ConsoleChoices {
  std::optional<std::wstring> fieldSeparator;
  std::optional<std::wstring> recordSeparator;
  /// Questions are answered with OK or Yes instead of being asked.
  bool assumeYes = false;
};

/// Where the interface reads and writes; `OfThisProcess` is standard input and standard error.
struct Console {
  using Clock = std::chrono::steady_clock;

  std::istream* in;
  std::ostream* out;
  bool answers;  ///< whether questions are asked; if not, the safe button is pressed
  bool paints;   ///< whether a line can be painted over; if not, plain lines are written
  std::function<std::size_t()> columns;
  std::function<Clock::time_point()> now;

  static Console OfThisProcess();
};

/// Shows a running dialog as one line with bar, rate and remaining time, or as plain lines where
/// output is no terminal; a dialog that lasts less than half a second leaves no trace. Result
/// labels are written on lines of their own. While a dialog is open, Ctrl-C presses its cancel
/// button.
class ConsoleInterface final : public UserInterface {
 public:
  explicit ConsoleInterface(ConsoleChoices choices = {},
                            Console console = Console::OfThisProcess());

  /// Whether a dialog was cancelled since this interface was made.
  bool cancelled() const { return cancelled_; }
  /// Whether an operation refused or failed with a message of its own since then.
  bool refused() const { return refused_; }

  Button ShowMessage(const Message& message) override;
  void Show(Dialog& dialog) override;
  void RunModal(Dialog& dialog) override;
  void Changed(Dialog& dialog, DialogChange change, std::size_t label) override;
  void ServiceEvents() override;
  void Close(Dialog& dialog) override;
  void SetBusyPointer(bool) override {}
  void Beep() override;

 private:
  // A dialog that is open; one can stand on another.
  struct Shown {
    Dialog* dialog;
    InterruptGuard interrupts;
    std::wstring label;
    std::int32_t minimum;
    std::int32_t maximum;
    std::int32_t value;
    Console::Clock::time_point opened;
    Console::Clock::time_point phaseStarted;
    Console::Clock::time_point lastOutput;
    bool announced = false;
    bool labelIsNew = false;

    Shown(Dialog& shown, Console::Clock::time_point now);
  };

  Shown* Find(const Dialog& dialog);
  void TakeLabel(Shown& shown, const DialogLabel& label);
  void TakeBar(Shown& shown);
  void Output(Shown& shown, Console::Clock::time_point now);
  void Announce(Shown& shown);
  ProgressState State(const Shown& shown, Console::Clock::time_point now) const;
  void EraseLine();
  void WriteText(const Message& message);
  Button Ask(Buttons buttons);

  ConsoleChoices choices_;
  Console console_;
  std::vector<std::unique_ptr<Shown>> shown_;
  bool linePainted_ = false;
  bool cancelled_ = false;
  bool refused_ = false;
};

}  // namespace orv::cli
