#include "storage/fixed_cells.h"

#include <cstring>
#include <limits>

#include "platform/code_page.h"
#include "storage/bytes.h"
#include "storage/cell_primitives.h"
#include "storage/value_types.h"

namespace orv::storage {
namespace {

/// The widths that number packing knows.
constexpr std::int32_t kGreatestPackedBytes = 3;
constexpr std::int32_t kInt32Bytes = 4;

template <typename Integer>
std::string IntegerText(std::string_view bytes) {
  Integer value = 0;
  std::memcpy(&value, bytes.data(), sizeof value);
  return std::to_string(value);
}

/// The number of a text as `TextToNumber` reads it, but with all its digits.
double ExactNumber(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return LeadingNumber(text);
  std::string pointed(text);
  pointed[comma] = '.';
  return LeadingNumber(pointed);
}

/// The number's low `size` bytes when it lies within the limits; otherwise 6 and the empty text.
std::string NumberBytes(std::string_view text, std::int32_t low, std::int32_t high,
                        std::size_t size, ErrorCode& error) {
  const auto number = RoundToInt32(ExactNumber(text));
  if (!number || *number < low || *number > high) {
    error.Set(code::kOverflow);
    return {};
  }
  std::string bytes;
  AppendInteger(bytes, *number);
  bytes.resize(size);
  return bytes;
}

template <typename Integer>
std::string NumberBytes(std::string_view text, ErrorCode& error) {
  using Limits = std::numeric_limits<Integer>;
  return NumberBytes(text, Limits::min(), Limits::max(), sizeof(Integer), error);
}

/// The inverse of `IntCellText`; sizes that it does not read as numbers are texts.
std::string IntPropertyImage(std::string_view text, std::int16_t cellSize, ErrorCode& error) {
  if (cellSize == sizeof(std::uint8_t)) return NumberBytes<std::uint8_t>(text, error);
  if (cellSize == sizeof(std::int16_t)) return NumberBytes<std::int16_t>(text, error);
  if (cellSize == sizeof(std::int32_t)) return NumberBytes<std::int32_t>(text, error);
  return PaddedText(text, static_cast<std::size_t>(cellSize));
}

}  // namespace

bool FixedFormat::IsNumeric() const {
  if (intProperty) {
    return cellSize == sizeof(std::uint8_t) || cellSize == sizeof(std::int16_t) ||
           cellSize == sizeof(std::int32_t);
  }
  return dataType == type::kInteger || dataType == type::kNumber;
}

std::optional<std::string> IntCellText(std::string_view bytes) {
  if (bytes.size() == sizeof(std::uint8_t)) return IntegerText<std::uint8_t>(bytes);
  if (bytes.size() == sizeof(std::int16_t)) return IntegerText<std::int16_t>(bytes);
  if (bytes.size() == sizeof(std::int32_t)) return IntegerText<std::int32_t>(bytes);
  return std::nullopt;
}

std::string FixedCellText(std::string_view bytes, const FixedFormat& format) {
  const auto size = static_cast<std::int32_t>(bytes.size());
  if (format.intProperty) {
    if (auto number = IntCellText(bytes)) return *number;
  } else if (format.dataType == type::kInteger && size == kInt32Bytes) {
    return IntegerText<std::int32_t>(bytes);
  } else if (format.IsNumeric() && size <= kGreatestPackedBytes) {
    return DecodeFixed(bytes, format.dataType, format.decimals);
  }
  return std::string(platform::Trim(bytes));
}

std::string FixedCellBytes(std::string_view text, const FixedFormat& format, ErrorCode& error) {
  if (format.dataType == type::kInteger || format.dataType == type::kNumber) {
    return FixedImage(text, format, error);
  }
  return PaddedText(text, static_cast<std::size_t>(format.cellSize));
}

std::string FixedImage(std::string_view text, const FixedFormat& format, ErrorCode& error) {
  if (format.cellSize < 1) {
    error.Set(code::kInvalidCall);
    return {};
  }
  if (format.intProperty) return IntPropertyImage(text, format.cellSize, error);
  if (format.dataType == type::kInteger && format.cellSize == kInt32Bytes) {
    return NumberBytes<std::int32_t>(text, error);
  }
  std::string bytes = EncodeFixed(text, format.dataType, format.cellSize, format.decimals, error);
  if (bytes.empty() && !error.IsSet()) error.Set(code::kOverflow);
  return bytes;
}

}  // namespace orv::storage
