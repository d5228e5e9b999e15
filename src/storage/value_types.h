// The types of values: their codes and names, and the packing of values into fixed-width cells.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "storage/error_code.h"
#include "storage/number_text.h"

namespace orv::storage {

/// Value type codes. They are stored in files: the numbering, gap at 5 included, is fixed forever.
namespace type {
inline constexpr std::int16_t kVariant = 0;
inline constexpr std::int16_t kInteger = 1;
inline constexpr std::int16_t kNumber = 2;
inline constexpr std::int16_t kReal = 3;
inline constexpr std::int16_t kCurrency = 4;
inline constexpr std::int16_t kDateTime = 6;
inline constexpr std::int16_t kLogic = 7;
inline constexpr std::int16_t kPath = 8;
inline constexpr std::int16_t kImage = 9;
inline constexpr std::int16_t kString = 10;
inline constexpr std::int16_t kFile = 11;
}  // namespace type

/// The code of a type name, letter case counting. "int" is another name of "integer"; the empty
/// text and every unknown name are "variant".
std::int16_t TypeCode(std::string_view name) noexcept;
/// The name of a type code; empty for a number that is no code (5 included).
std::string_view TypeName(std::int16_t typeCode) noexcept;

/// `value`, rounded to a whole number (halves to even), in n bytes, low byte first. Accepted are
/// -127 to 128 for one byte, -32767 to 32767 for two, -8388607 to 8388607 for three: exactly these
/// ranges. A value outside: error code 6 and the empty text. Any other n: the empty text without an
/// error.
std::string EncodeInteger(double value, std::int32_t n, ErrorCode& errorCode);
/// The inverse of EncodeInteger for a text of one to three bytes; 0 for any other length.
std::int32_t DecodeInteger(std::string_view bytes) noexcept;

/// The content of a fixed-width cell of n bytes:
/// - variant and string: the first n characters, padded with blanks;
/// - integer: EncodeInteger of the text's number;
/// - number: the text's number times 10 to the power of `decimals` (at most 15), cut towards zero,
///   then EncodeInteger. The product is exact for the single-precision number, not for the decimal
///   text: 0.7 with one decimal is 6.
/// Empty without an error for every other type code; error code 13 for an image, 5 for n below 1, 6
/// for a number outside the width's range.
std::string EncodeFixed(std::string_view text, std::int16_t typeCode, std::int32_t n,
                        std::int32_t decimals, ErrorCode& errorCode);
/// The text of a fixed-width cell's bytes, the inverse of EncodeFixed: strings lose the padding, a
/// number gets its decimal point back digit by digit. Empty where EncodeFixed packs nothing.
std::string DecodeFixed(std::string_view bytes, std::int16_t typeCode, std::int32_t decimals);

/// The two bytes of a 16-bit number, low byte first.
std::string Int16ToBytes(std::int16_t value);

}  // namespace orv::storage
