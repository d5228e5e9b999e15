// The engine-wide error code.
#pragma once

#include <cstdint>

#include "platform/run_time_error.h"

namespace orv::storage {

/// The codes that operations set themselves; run-time errors appear under their own numbers.
/// Hosts compare against these numbers: they are fixed forever.
namespace code {
inline constexpr std::int16_t kNone = 0;
inline constexpr std::int16_t kNothingToRead = 4;
inline constexpr std::int16_t kInvalidCall = 5;
inline constexpr std::int16_t kOverflow = 6;
inline constexpr std::int16_t kSubscript = 9;
inline constexpr std::int16_t kPathSyntax = 10;
inline constexpr std::int16_t kTypeMismatch = 13;
inline constexpr std::int16_t kNotAMatrix = 19;
inline constexpr std::int16_t kRecordNumber = 20;
inline constexpr std::int16_t kFieldNumber = 21;
inline constexpr std::int16_t kKindOfCell = 26;
inline constexpr std::int16_t kOverwriteRefused = 51;
inline constexpr std::int16_t kFileMissing = 53;
inline constexpr std::int16_t kPropertyRefused = 54;
inline constexpr std::int16_t kNoMatrixInField = 58;
inline constexpr std::int16_t kNotOnDbase = 70;
inline constexpr std::int16_t kFileLocked = 75;
inline constexpr std::int16_t kBadArgument = 255;
}  // namespace code

/// The one error code of a component: 0 after success, otherwise why the last operation failed.
/// Operations clear it at their start and leave their code in it; nothing else is ever reported.
class ErrorCode {
 public:
  std::int16_t value() const { return value_; }
  bool IsSet() const { return value_ != code::kNone; }
  void Set(std::int16_t value) { value_ = value; }
  void Set(platform::RunTimeError number) { value_ = static_cast<std::int16_t>(number); }
  void Clear() { value_ = code::kNone; }

 private:
  std::int16_t value_ = code::kNone;
};

}  // namespace orv::storage
