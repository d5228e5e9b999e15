#include "cli/words.h"

#include <algorithm>
#include <charconv>

#include "cli/failure.h"

namespace orv::cli {

Words::Words(CLI::App& command, std::vector<WordHelp> further)
    : further_(std::move(further)),
      words_(std::make_unique<std::vector<std::string>>(further_.size() + 2)) {
  const auto add = [&](std::size_t index, const char* name, const char* description) {
    return command.add_option(name, (*words_)[index], description);
  };
  options_.push_back(
      add(0, "FILE", "the file, or a full matrix path whose file name is in double quotes")
          ->required());
  options_.push_back(add(1, "STEPS", "steps to a matrix inside the file, such as \"/[3,2]\"")
                         ->type_name(kOptionalWord));
  for (std::size_t i = 0; i < further_.size(); ++i) {
    options_.push_back(add(i + 2, further_[i].name, further_[i].description));
  }
}

// CLI11 fills the words in order, so the last one is there only when STEPS were given.
bool Words::HasSteps() const { return options_.back()->count() > 0; }

void Words::CheckCount() const {
  const auto given = static_cast<std::size_t>(
      std::ranges::count_if(options_, [](const CLI::Option* word) { return word->count() > 0; }));
  if (given < further_.size() + 1) {
    throw BadUsage(std::string("the word ") + further_[given - 1].name + " is missing");
  }
}

Target Words::TargetOf() const {
  CheckCount();
  return Target((*words_)[0], HasSteps() ? (*words_)[1] : std::string());
}

const std::string& Words::Word(std::size_t index) const {
  CheckCount();
  return (*words_)[HasSteps() ? index + 2 : index + 1];
}

std::int32_t Int32Word(const std::string& word, const std::string& what) {
  std::int32_t number = 0;
  const char* const end = word.data() + word.size();
  const auto [rest, problem] = std::from_chars(word.data(), end, number);
  if (problem != std::errc() || rest != end) {
    throw BadUsage(what + " must be a whole number, not \"" + word + "\"");
  }
  return number;
}

RecordRange ParseRecordRange(const std::string& text, std::int32_t last) {
  RecordRange range{1, last};
  if (text.empty()) return range;
  const std::string what = "a record range";
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) {
    range.first = range.last = Int32Word(text, what);
  } else {
    if (colon > 0) range.first = Int32Word(text.substr(0, colon), what);
    if (colon + 1 < text.size()) range.last = Int32Word(text.substr(colon + 1), what);
  }
  if (range.first < 1 || range.last < 0) throw BadUsage("records count from 1: \"" + text + "\"");
  range.last = std::min(range.last, last);
  return range;
}

}  // namespace orv::cli
