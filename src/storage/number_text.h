// Numbers as texts, and the numbers that texts begin with. The process locale is never asked.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orv::storage {

/// The number that a text begins with, "." being the decimal point: blanks, a sign, digits with at
/// most one point, an exponent. What follows is ignored; 0 when the text begins with no number.
/// A number beyond the type's range is an infinity.
double LeadingNumber(std::string_view text) noexcept;
/// The same, read straight into single precision.
float LeadingSingle(std::string_view text) noexcept;

/// The number of a cell's text. A text with a comma is read with the first comma as the decimal
/// point, any other as LeadingSingle does. Always single precision: whole numbers above 16777216
/// lose their last digits, and stored bytes depend on it.
float TextToNumber(std::string_view text);

/// A number as text: at most 15 significant digits for a double, 7 for a single; the point as
/// decimal sign; no trailing zeros; an exponent as in 1E+15 or 1E-05 when the value has more digits
/// before the point than that or is below 0.0001; minus zero is 0. The value must be finite.
std::string NumberText(double value);
std::string NumberText(float value);
std::string NumberText(std::int32_t value);
/// The same, added to the end of a text.
void AppendNumber(std::string& text, double value);
void AppendNumber(std::string& text, float value);
void AppendNumber(std::string& text, std::int32_t value);

/// The nearest whole number, halves to even; nothing when it does not fit 32 bits.
std::optional<std::int32_t> RoundToInt32(double value) noexcept;

}  // namespace orv::storage
