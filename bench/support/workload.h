// What is measured: workloads, and for each the entrants that run it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orv::bench {

/// What one pass over a workload did.
struct Pass {
  std::int64_t operations = 0;
  /// Made of the texts or records met: all entrants of a workload must come to the same.
  std::uint64_t check = 0;
  /// For a pass that times itself, because only a part of it counts.
  std::optional<double> nanoseconds = std::nullopt;
};

/// Gathers a pass's check from the texts it met.
class Check {
 public:
  template <typename Char>
  void Add(std::basic_string_view<Char> text) {
    sum_ += text.size() * kLengthWeight;
    if (!text.empty()) sum_ += static_cast<std::uint64_t>(text.back());
  }
  void Add(std::uint64_t number) { sum_ += number; }
  std::uint64_t sum() const { return sum_; }

 private:
  static constexpr std::uint64_t kLengthWeight = 257;
  std::uint64_t sum_ = 0;
};

/// One store's way of doing a workload.
struct Entrant {
  std::string name;
  std::function<Pass()> run;
  /// How many times faster than this entrant the engine must be; 0 when the row only shows it.
  double mustReach = 0;
  std::function<void()> prepare = {};  ///< before each pass, not timed
};

/// The first entrant is the engine.
struct Workload {
  std::string name;
  std::string unit;  ///< what one operation is
  std::vector<Entrant> entrants;
};

/// Raised by an entrant that cannot do its work; the row says so instead of showing a figure.
class NotMeasured : public std::exception {
 public:
  explicit NotMeasured(std::string reason) : reason_(std::move(reason)) {}
  const char* what() const noexcept override { return reason_.c_str(); }

 private:
  std::string reason_;
};

}  // namespace orv::bench
