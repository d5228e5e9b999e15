#include <csignal>

#include <sys/ioctl.h>
#include <unistd.h>

#include "cli/terminal.h"

namespace orv::cli {
namespace {

constexpr std::size_t kUsualColumns = 80;

volatile std::sig_atomic_t interrupted = 0;
int guards = 0;
struct sigaction former;

void Note(int) { interrupted = 1; }

}  // namespace

bool TerminalAnswers() { return isatty(STDIN_FILENO) == 1 && TerminalPaints(); }

bool TerminalPaints() { return isatty(STDERR_FILENO) == 1; }

std::size_t TerminalColumns() {
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsualColumns;
  return size.ws_col;
}

InterruptGuard::InterruptGuard() {
  if (guards++ > 0) return;
  interrupted = 0;
  // Without SA_RESTART: an interrupt must end the read of an answer.
  struct sigaction action {};
  action.sa_handler = Note;
  sigaction(SIGINT, &action, &former);
}

InterruptGuard::~InterruptGuard() {
  if (--guards == 0) sigaction(SIGINT, &former, nullptr);
}

bool InterruptGuard::Taken() {
  if (interrupted == 0) return false;
  interrupted = 0;
  return true;
}

}  // namespace orv::cli
