// The words after a command's name: FILE [STEPS] and what the command needs besides.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/target.h"

namespace orv::cli {

/// The type name of a word that may be left out; the help shows it in brackets.
inline constexpr const char* kOptionalWord = "OPTIONAL";

/// A word of a command line, as its help names and describes it.
struct WordHelp {
  const char* name;
  const char* description;
};

/// Declares FILE, the optional STEPS and further words on a command and reads them after parsing.
/// Whether STEPS were given follows from the number of words.
class Words {
 public:
  explicit Words(CLI::App& command, std::vector<WordHelp> further = {});

  /// The matrix to work on. Throws `BadUsage` when words are missing or STEPS are no steps.
  Target TargetOf() const;
  /// Word number `index` after FILE and STEPS, from 0.
  const std::string& Word(std::size_t index) const;

 private:
  bool HasSteps() const;
  void CheckCount() const;

  std::vector<WordHelp> further_;
  // FILE, then the words as they came. CLI11 writes here, so the strings may not move.
  std::unique_ptr<std::vector<std::string>> words_;
  std::vector<const CLI::Option*> options_;
};

/// A word that must be a whole number. Throws `BadUsage` naming `what`.
std::int32_t Int32Word(const std::string& word, const std::string& what);

/// A range of records: "5", "2:9", "2:" or ":9", within 1 to `last`. Throws `BadUsage`.
struct RecordRange {
  std::int32_t first = 1;
  std::int32_t last = 0;
};
RecordRange ParseRecordRange(const std::string& text, std::int32_t last);

}  // namespace orv::cli
