#include "storage/fixed_cells.h"

#include <cstring>

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

std::string Int32Bytes(std::string_view text, ErrorCode& error) {
  const auto number = RoundToInt32(TextToNumber(text));
  if (!number) {
    error.Set(code::kOverflow);
    return {};
  }
  std::string bytes;
  AppendInteger(bytes, *number);
  return bytes;
}

}  // namespace

bool FixedFormat::IsNumeric() const {
  return intProperty || dataType == type::kInteger || dataType == type::kNumber;
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
  if (format.dataType == type::kInteger && format.cellSize == kInt32Bytes)
    return Int32Bytes(text, error);
  if (format.dataType != type::kInteger && format.dataType != type::kNumber) {
    return PaddedText(text, static_cast<std::size_t>(format.cellSize));
  }
  std::string bytes = EncodeFixed(text, format.dataType, format.cellSize, format.decimals, error);
  if (bytes.empty() && !error.IsSet()) error.Set(code::kOverflow);
  return bytes;
}

}  // namespace orv::storage
