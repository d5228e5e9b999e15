#include "storage/value_types.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/code_page.h"

namespace orv::storage {
namespace {

struct NamedType {
  std::string_view name;
  std::int16_t typeCode;
};

constexpr std::array<NamedType, 11> kTypes = {{{"variant", type::kVariant},
                                               {"integer", type::kInteger},
                                               {"number", type::kNumber},
                                               {"real", type::kReal},
                                               {"currency", type::kCurrency},
                                               {"date&time", type::kDateTime},
                                               {"logic", type::kLogic},
                                               {"path", type::kPath},
                                               {"image", type::kImage},
                                               {"string", type::kString},
                                               {"file", type::kFile}}};
constexpr std::string_view kShortIntegerName = "int";

constexpr std::int32_t kMaxDecimals = 15;
constexpr std::int32_t kMaxPackedBytes = 3;
constexpr unsigned kBitsPerByte = 8;

struct Range {
  std::int32_t low;
  std::int32_t high;
};

// By the number of bytes. One byte is lopsided on purpose: 0x80 is 128, not -128.
constexpr std::array<Range, kMaxPackedBytes + 1> kRanges = {
    {{0, 0}, {-127, 128}, {-32767, 32767}, {-8388607, 8388607}}};

bool IsPackedWidth(std::size_t n) {
  return n >= 1 && n <= static_cast<std::size_t>(kMaxPackedBytes);
}

std::string Padded(std::string_view text, std::size_t n) {
  std::string cell(text.substr(0, n));
  cell.resize(n, platform::kBlank);
  return cell;
}

// value / 10^decimals as an exact decimal text.
std::string ScaledText(std::int32_t value, std::int32_t decimals) {
  if (value == 0) return "0";
  if (decimals <= 0) return NumberText(value * std::pow(10.0, -decimals));
  const auto places = static_cast<std::size_t>(decimals);
  std::string digits = NumberText(std::abs(value));
  if (digits.size() <= places) digits.insert(0, places + 1 - digits.size(), '0');
  digits.insert(digits.size() - places, 1, '.');
  digits.erase(digits.find_last_not_of('0') + 1);
  if (digits.back() == '.') digits.pop_back();
  return value < 0 ? "-" + digits : digits;
}

}  // namespace

std::int16_t TypeCode(std::string_view name) noexcept {
  if (name.empty()) return type::kVariant;
  if (name == kShortIntegerName) return type::kInteger;
  const auto* const found = std::find_if(kTypes.begin(), kTypes.end(),
                                         [&](const NamedType& t) { return t.name == name; });
  return found == kTypes.end() ? type::kVariant : found->typeCode;
}

std::string_view TypeName(std::int16_t typeCode) noexcept {
  const auto* const found = std::find_if(
      kTypes.begin(), kTypes.end(), [&](const NamedType& t) { return t.typeCode == typeCode; });
  return found == kTypes.end() ? std::string_view() : found->name;
}

std::string EncodeInteger(double value, std::int32_t n, ErrorCode& errorCode) {
  if (n < 1 || n > kMaxPackedBytes) return {};
  const auto whole = RoundToInt32(value);
  const Range& range = kRanges[static_cast<std::size_t>(n)];
  if (!whole || *whole < range.low || *whole > range.high) {
    errorCode.Set(code::kOverflow);
    return {};
  }
  // The low bytes of the two's complement are the bytes of value + 256^n.
  auto bits = static_cast<std::uint32_t>(*whole);
  std::string bytes;
  for (std::int32_t i = 0; i < n; ++i, bits >>= kBitsPerByte) {
    bytes += static_cast<char>(bits & 0xFFU);
  }
  return bytes;
}

std::int32_t DecodeInteger(std::string_view bytes) noexcept {
  if (!IsPackedWidth(bytes.size())) return 0;
  std::int32_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) {
    value = value * 256 + static_cast<unsigned char>(bytes[i]);
  }
  const auto bits = kBitsPerByte * static_cast<unsigned>(bytes.size());
  return value > kRanges[bytes.size()].high ? value - (1 << bits) : value;
}

std::string EncodeFixed(std::string_view text, std::int16_t typeCode, std::int32_t n,
                        std::int32_t decimals, ErrorCode& errorCode) {
  if (n < 1) {
    errorCode.Set(code::kInvalidCall);
    return {};
  }
  switch (typeCode) {
    case type::kVariant:
    case type::kString:
      return Padded(text, static_cast<std::size_t>(n));
    case type::kInteger:
      return EncodeInteger(TextToNumber(text), n, errorCode);
    case type::kNumber: {
      const double scale = std::pow(10.0, std::min(decimals, kMaxDecimals));
      return EncodeInteger(std::trunc(TextToNumber(text) * scale), n, errorCode);
    }
    case type::kImage:
      errorCode.Set(code::kTypeMismatch);
      return {};
    default:
      return {};
  }
}

std::string DecodeFixed(std::string_view bytes, std::int16_t typeCode, std::int32_t decimals) {
  switch (typeCode) {
    case type::kVariant:
    case type::kString:
      return std::string(platform::TrimRight(bytes));
    case type::kInteger:
      return IsPackedWidth(bytes.size()) ? NumberText(DecodeInteger(bytes)) : std::string();
    case type::kNumber:
      if (!IsPackedWidth(bytes.size())) return {};
      return ScaledText(DecodeInteger(bytes), std::min(decimals, kMaxDecimals));
    default:
      return {};
  }
}

std::string Int16ToBytes(std::int16_t value) {
  const auto bits = static_cast<std::uint16_t>(value);
  return {static_cast<char>(bits & 0xFFU), static_cast<char>(bits >> kBitsPerByte)};
}

}  // namespace orv::storage
