#include "cli/progress_line.h"

#include <algorithm>
#include <cmath>

#include "cli/utf8.h"

namespace orv::cli {
namespace {

constexpr std::size_t kBarColumns = 24;
constexpr std::size_t kLeastBarColumns = 6;
// Before that much time a rate says nothing.
constexpr std::chrono::duration<double> kShortestMeasure{0.2};

double Share(const ProgressState& state) {
  if (state.total <= 0) return 1;
  return std::clamp(static_cast<double>(state.done) / static_cast<double>(state.total), 0.0, 1.0);
}

std::string Bar(double share, std::size_t columns) {
  const auto filled = static_cast<std::size_t>(share * static_cast<double>(columns));
  return "[" + std::string(filled, '#') + std::string(columns - filled, '-') + "]";
}

std::string Percent(double share) {
  const std::string number = std::to_string(static_cast<int>(share * 100));
  return std::string(3 - number.size(), ' ') + number + " %";
}

std::string RateAndRest(const ProgressState& state) {
  if (state.elapsed < kShortestMeasure || state.done <= 0) return {};
  const double rate = static_cast<double>(state.done) / state.elapsed.count();
  std::string text = "  " + std::to_string(std::llround(rate)) + "/s";
  if (state.done < state.total) {
    const double rest = static_cast<double>(state.total - state.done) / rate;
    text += "  " + DurationText(std::chrono::duration<double>(rest)) + " left";
  }
  return text;
}

std::wstring Shortened(std::wstring_view label, std::size_t columns) {
  if (label.size() <= columns) return std::wstring(label);
  if (columns < 2) return {};
  return std::wstring(label.substr(0, columns - 1)) + L"…";
}

}  // namespace

std::string DurationText(std::chrono::duration<double> duration) {
  const auto seconds = static_cast<std::int64_t>(std::ceil(duration.count()));
  const auto minutes = seconds / 60;
  if (minutes == 0) return std::to_string(seconds) + " s";
  const auto hours = minutes / 60;
  if (hours == 0) return std::to_string(minutes) + " min " + std::to_string(seconds % 60) + " s";
  return std::to_string(hours) + " h " + std::to_string(minutes % 60) + " min";
}

std::string ProgressFigures(const ProgressState& state) {
  return Percent(Share(state)) + "  " + std::to_string(state.done) + "/" +
         std::to_string(state.total) + RateAndRest(state);
}

std::string ProgressLine(const ProgressState& state, std::size_t columns) {
  const std::string figures = ProgressFigures(state);
  if (figures.size() >= columns) return figures.substr(0, columns);
  std::size_t room = columns - figures.size();
  std::string bar;
  // Two brackets and a blank stand beside the bar itself.
  if (room >= kLeastBarColumns + 3) {
    const std::size_t wanted = std::min(kBarColumns, room - 3);
    bar = Bar(Share(state), wanted) + " ";
    room -= wanted + 3;
  }
  const std::wstring label = room < 2 ? std::wstring() : Shortened(state.label, room - 1);
  return (label.empty() ? "" : ToUtf8(label) + " ") + bar + figures;
}

}  // namespace orv::cli
