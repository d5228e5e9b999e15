#include "cli/console_interface.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>
#include <string_view>

#include "cli/utf8.h"

namespace orv::cli {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// A dialog is not worth showing before that.
constexpr milliseconds kPatience{500};
constexpr milliseconds kBetweenPaints{60};
// Plain lines stay in a log, so there are few: one for a new label, one now and then.
constexpr seconds kBetweenLabelLines{1};
constexpr seconds kBetweenLines{5};

constexpr std::string_view kEraseToEnd = "\x1b[K";

// A button as it is typed: its first letter or the whole word.
struct Choice {
  Button button;
  std::string_view word;
};
constexpr std::array<Choice, 4> kChoices = {
    {{Button::kOk, "ok"}, {Button::kCancel, "cancel"}, {Button::kYes, "yes"}, {Button::kNo, "no"}}};

Button AffirmativeButton(Buttons buttons) {
  return buttons == Buttons::kYesNo ? Button::kYes : Button::kOk;
}

// "[ok/Cancel]": the safe button, which an empty answer presses, begins with a capital.
std::string Prompt(Buttons buttons) {
  std::string prompt;
  for (const Choice& choice : kChoices) {
    if (!HasButton(buttons, choice.button)) continue;
    std::string word(choice.word);
    if (choice.button == SafeButton(buttons)) word[0] = static_cast<char>(word[0] - 'a' + 'A');
    prompt += (prompt.empty() ? "[" : "/") + word;
  }
  return prompt + "] ";
}

std::string Lowered(std::string text) {
  for (char& letter : text) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return text;
}

std::optional<Button> ButtonTyped(Buttons buttons, const std::string& line) {
  const std::string word = Lowered(line);
  if (word.empty()) return SafeButton(buttons);
  for (const Choice& choice : kChoices) {
    if (!HasButton(buttons, choice.button)) continue;
    if (word == choice.word || word == choice.word.substr(0, 1)) return choice.button;
  }
  return std::nullopt;
}

bool IsResult(const DialogLabel& label) { return label.name.starts_with(L"StpRes"); }

}  // namespace

Console Console::OfThisProcess() {
  return {&std::cin, &std::cerr, TerminalAnswers(), TerminalPaints(), TerminalColumns, Clock::now};
}

ConsoleInterface::Shown::Shown(Dialog& shown, Console::Clock::time_point now)
    : dialog(&shown),
      minimum(shown.minimum()),
      maximum(shown.maximum()),
      value(shown.value()),
      opened(now),
      phaseStarted(now),
      lastOutput(now) {}

ConsoleInterface::ConsoleInterface(ConsoleChoices choices, Console console)
    : choices_(std::move(choices)), console_(std::move(console)) {}

Button ConsoleInterface::ShowMessage(const Message& message) {
  EraseLine();
  WriteText(message);
  if (message.buttons == Buttons::kOk) {
    refused_ = true;
    *console_.out << std::endl;
    return Button::kOk;
  }
  *console_.out << ' ';
  const Button button = choices_.assumeYes ? AffirmativeButton(message.buttons)
                        : console_.answers ? Ask(message.buttons)
                                           : SafeButton(message.buttons);
  if (choices_.assumeYes || !console_.answers) {
    *console_.out << Prompt(message.buttons) << kChoices[static_cast<std::size_t>(button)].word
                  << std::endl;
  }
  return button;
}

void ConsoleInterface::WriteText(const Message& message) {
  std::wstring text = message.text;
  std::replace(text.begin(), text.end(), L'\r', L'\n');
  if (!message.caption.empty()) *console_.out << ToUtf8(message.caption) << ": ";
  *console_.out << ToUtf8(text);
}

// Asks until an answer is understood; without one (end of input, an interrupt) the safe button.
Button ConsoleInterface::Ask(Buttons buttons) {
  const InterruptGuard interrupts;
  std::string line;
  do {
    *console_.out << Prompt(buttons) << std::flush;
    if (!std::getline(*console_.in, line)) {
      if (InterruptGuard::Taken()) {
        // The interrupt answered this question only; the next one can be read.
        std::clearerr(stdin);
        console_.in->clear();
      }
      *console_.out << std::endl;
      return SafeButton(buttons);
    }
  } while (!ButtonTyped(buttons, line));
  return *ButtonTyped(buttons, line);
}

void ConsoleInterface::Show(Dialog& dialog) {
  shown_.push_back(std::make_unique<Shown>(dialog, console_.now()));
}

void ConsoleInterface::RunModal(Dialog& dialog) {
  Show(dialog);
  if (ExportSettings* const settings = dialog.settings(); settings != nullptr) {
    if (choices_.fieldSeparator) settings->fieldSeparator = *choices_.fieldSeparator;
    if (choices_.recordSeparator) settings->recordSeparator = *choices_.recordSeparator;
  }
  RunUnattended(dialog);
}

ConsoleInterface::Shown* ConsoleInterface::Find(const Dialog& dialog) {
  for (const auto& shown : shown_) {
    if (shown->dialog == &dialog) return shown.get();
  }
  return nullptr;
}

void ConsoleInterface::Changed(Dialog& dialog, DialogChange change, std::size_t label) {
  Shown* const shown = Find(dialog);
  if (shown == nullptr) return;
  if (change == DialogChange::kBar) TakeBar(*shown);
  if (change == DialogChange::kLabel) TakeLabel(*shown, dialog.labels()[label]);
}

void ConsoleInterface::TakeLabel(Shown& shown, const DialogLabel& label) {
  if (!label.visible || label.text.empty()) return;
  if (IsResult(label)) {
    EraseLine();
    *console_.out << ToUtf8(label.text) << std::endl;
    return;
  }
  shown.label = label.text;
  shown.labelIsNew = true;
}

// A bar that turns back or gets other ends counts something new, at a rate of its own.
void ConsoleInterface::TakeBar(Shown& shown) {
  const Dialog& dialog = *shown.dialog;
  const std::int32_t value = dialog.value();
  if (value < shown.value || dialog.minimum() != shown.minimum ||
      dialog.maximum() != shown.maximum) {
    shown.minimum = dialog.minimum();
    shown.maximum = dialog.maximum();
    shown.phaseStarted = console_.now();
  }
  shown.value = value;
}

void ConsoleInterface::ServiceEvents() {
  if (shown_.empty()) return;
  if (InterruptGuard::Taken()) shown_.back()->dialog->OnCancel();
  if (!shown_.empty()) Output(*shown_.back(), console_.now());
}

void ConsoleInterface::Output(Shown& shown, Console::Clock::time_point now) {
  if (now - shown.opened < kPatience) return;
  const auto pause = now - shown.lastOutput;
  if (console_.paints) {
    if (shown.announced && pause < kBetweenPaints) return;
    Announce(shown);
    const std::size_t columns = console_.columns();
    // The last column stays free: writing into it would wrap the line on some terminals.
    *console_.out << '\r' << ProgressLine(State(shown, now), columns - 1) << kEraseToEnd
                  << std::flush;
    linePainted_ = true;
  } else {
    const bool due = pause >= kBetweenLines || (shown.labelIsNew && pause >= kBetweenLabelLines);
    if (shown.announced && !due) return;
    Announce(shown);
    if (!shown.label.empty()) *console_.out << ToUtf8(shown.label) << ' ';
    *console_.out << ProgressFigures(State(shown, now)) << std::endl;
  }
  shown.labelIsNew = false;
  shown.lastOutput = now;
}

void ConsoleInterface::Announce(Shown& shown) {
  if (shown.announced) return;
  shown.announced = true;
  EraseLine();
  *console_.out << ToUtf8(shown.dialog->caption());
  if (console_.paints) *console_.out << " (Ctrl-C cancels)";
  *console_.out << std::endl;
}

ProgressState ConsoleInterface::State(const Shown& shown, Console::Clock::time_point now) const {
  // A bar from 1 counts records, so all of them are done at its maximum; from 0 it is the same.
  const Dialog& dialog = *shown.dialog;
  return {shown.label, dialog.value(), dialog.maximum(), now - shown.phaseStarted};
}

void ConsoleInterface::Close(Dialog& dialog) {
  cancelled_ = cancelled_ || dialog.cancelled();
  EraseLine();
  std::erase_if(shown_, [&dialog](const auto& shown) { return shown->dialog == &dialog; });
}

void ConsoleInterface::EraseLine() {
  if (!linePainted_) return;
  *console_.out << '\r' << kEraseToEnd << std::flush;
  linePainted_ = false;
}

void ConsoleInterface::Beep() {
  if (console_.paints) *console_.out << '\a' << std::flush;
}

}  // namespace orv::cli
