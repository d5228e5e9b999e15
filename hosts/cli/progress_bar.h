// Progress of the command's own long loops.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace orv::cli {

/// A bar on standard error while it lives, painted a few times a second; nothing where standard
/// error is no terminal.
class ProgressBar {
 public:
  ProgressBar(std::wstring label, std::int64_t total);
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void Update(std::int64_t done);

 private:
  using Clock = std::chrono::steady_clock;

  std::wstring label_;
  std::int64_t total_;
  bool shown_;
  bool painted_ = false;
  Clock::time_point start_ = Clock::now();
  Clock::time_point last_ = start_;
};

}  // namespace orv::cli
