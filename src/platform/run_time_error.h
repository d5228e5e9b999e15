// Run-time failures and their numbers.
#pragma once

#include <cstdint>
#include <exception>

namespace orv::platform {

/// The numbers a run-time failure carries. Hosts see them as error codes, so they are fixed
/// forever.
enum class RunTimeError : std::int16_t {
  kInvalidCall = 5,
  kOverflow = 6,
  kOutOfMemory = 7,
  kSubscript = 9,
  kDivisionByZero = 11,
  kTypeMismatch = 13,
  kUnforeseen = 17,
  kOutOfStack = 28,
  kBadFileNumber = 52,
  kFileNotFound = 53,
  kAlreadyOpen = 55,
  kDeviceIo = 57,
  kDiskFull = 61,
  kTooManyFiles = 67,
  kPermissionDenied = 70,
  kPathNotFound = 76,
};

/// The one exception type of the engine: a failure inside a primitive, carried to the public member
/// that called it, which turns it into the error code. It never crosses the public boundary.
class RunTimeFailure : public std::exception {
 public:
  explicit RunTimeFailure(RunTimeError number) : number_(number) {}
  RunTimeError number() const noexcept { return number_; }
  const char* what() const noexcept override { return "run-time failure"; }

 private:
  RunTimeError number_;
};

[[noreturn]] inline void Raise(RunTimeError number) { throw RunTimeFailure(number); }

}  // namespace orv::platform
