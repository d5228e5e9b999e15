#include "convert/style_request.h"

#include <limits>
#include <optional>

#include "platform/run_time_error.h"
#include "storage/number_text.h"

namespace orv::convert {

using platform::Raise;
using platform::RunTimeError;

namespace {

constexpr std::size_t kLength = 9;
constexpr std::size_t kCellSize = 1;
constexpr std::size_t kCellSizeDigits = 5;
constexpr std::size_t kFixedType = 6;
constexpr std::size_t kUnique = 7;
constexpr std::size_t kDataType = 8;
constexpr char kYes = '+';

/// Codes are stored one higher, so that no character of the text is the zero byte.
std::int16_t CodeOf(char character) {
  return static_cast<std::int16_t>(static_cast<unsigned char>(character) - 1);
}

std::int16_t SizeOf(std::string_view text) {
  using Limits = std::numeric_limits<std::int16_t>;
  const std::optional<std::int32_t> size = storage::RoundToInt32(storage::LeadingNumber(text));
  if (!size || *size < Limits::min() || *size > Limits::max()) Raise(RunTimeError::kOverflow);
  return static_cast<std::int16_t>(*size);
}

}  // namespace

StyleRequest ParseStyleRequest(std::string_view newType) {
  if (newType.size() != kLength) Raise(RunTimeError::kInvalidCall);
  return {CodeOf(newType.front()), SizeOf(newType.substr(kCellSize, kCellSizeDigits)),
          newType[kFixedType] == kYes, newType[kUnique] == kYes, CodeOf(newType[kDataType])};
}

}  // namespace orv::convert
