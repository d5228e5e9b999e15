#include "cli/progress_bar.h"

#include <iostream>

#include "cli/progress_line.h"
#include "cli/terminal.h"

namespace orv::cli {
namespace {

constexpr std::chrono::milliseconds kPause{100};
constexpr const char* kEraseToEnd = "\x1b[K";

}  // namespace

ProgressBar::ProgressBar(std::wstring label, std::int64_t total)
    : label_(std::move(label)), total_(total), shown_(TerminalPaints()) {}

ProgressBar::~ProgressBar() {
  if (painted_) std::cerr << '\r' << kEraseToEnd << std::flush;
}

void ProgressBar::Update(std::int64_t done) {
  if (!shown_) return;
  const Clock::time_point now = Clock::now();
  if (now - last_ < kPause) return;
  last_ = now;
  painted_ = true;
  // The last column stays free: writing into it would wrap the line on some terminals.
  std::cerr << '\r' << ProgressLine({label_, done, total_, now - start_}, TerminalColumns() - 1)
            << kEraseToEnd << std::flush;
}

}  // namespace orv::cli
