// What the command asks of the terminal it runs in.
#pragma once

#include <cstddef>

namespace orv::cli {

/// Whether questions can be asked: both standard input and standard error are a terminal.
bool TerminalAnswers();
/// Whether standard error is a terminal, so that a line can be painted over.
bool TerminalPaints();
/// The columns of the terminal behind standard error; 80 when unknown.
std::size_t TerminalColumns();

/// While one lives, an interrupt (Ctrl-C) does not end the program: it is kept for `Taken`, and a
/// read from standard input returns. The destructor restores what was before. They may nest.
class InterruptGuard {
 public:
  InterruptGuard();
  ~InterruptGuard();
  InterruptGuard(const InterruptGuard&) = delete;
  InterruptGuard& operator=(const InterruptGuard&) = delete;

  /// Whether an interrupt has come since the last call.
  static bool Taken();
};

}  // namespace orv::cli
