// What goes wrong in the command, and how it is told.
#pragma once

#include <cstdint>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>

namespace orv::cli {

/// Exit statuses of the command.
enum ExitStatus : int { kSuccess = 0, kFailed = 1, kBadUsage = 2, kDamaged = 3 };

/// An operation failed: one sentence for standard error, exit status 1.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The command was called wrongly: one sentence for standard error, exit status 2.
class BadUsage : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The command did its work and has told on standard output what is damaged or lost: no sentence,
/// exit status 3.
class DamageFound : public std::exception {};

/// What an error code of the engine means, as the end of a sentence.
std::string_view MeaningOf(std::int16_t code);

/// "PATH: error 53: the file does not exist or is empty", as UTF-8.
std::string ErrorSentence(std::wstring_view path, std::int16_t code);

}  // namespace orv::cli
