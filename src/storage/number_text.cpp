#include "storage/number_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "platform/code_page.h"

namespace orv::storage {
namespace {

constexpr int kDoubleDigits = 15;
constexpr int kSingleDigits = 7;
// Below this magnitude a whole number prints as it is, in either precision.
constexpr double kWholeDoubleLimit = 1e15;
constexpr float kWholeSingleLimit = 1e7F;
constexpr std::size_t kNumberRoom = 40;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

const char* SkipDigits(const char* at, const char* end) {
  while (at != end && IsDigit(*at)) ++at;
  return at;
}

// The end of the exponent that starts at `at`, or `at` when there is none.
const char* SkipExponent(const char* at, const char* end) {
  if (at == end || (*at != 'E' && *at != 'e')) return at;
  const char* digits = at + 1;
  if (digits != end && (*digits == '+' || *digits == '-')) ++digits;
  const char* const after = SkipDigits(digits, end);
  return after == digits ? at : after;
}

// A number as it stands in a text: the digits [first, end) without the sign.
struct Literal {
  const char* first = nullptr;
  const char* end = nullptr;
  bool negative = false;
};

Literal FindLiteral(std::string_view text) {
  const std::string_view rest = platform::TrimLeft(text);
  const char* at = rest.data();
  const char* const end = at + rest.size();
  Literal literal;
  if (at != end && (*at == '+' || *at == '-')) literal.negative = *at++ == '-';
  literal.first = at;
  const char* const whole = SkipDigits(at, end);
  const bool hasPoint = whole != end && *whole == '.';
  const char* const fraction = hasPoint ? SkipDigits(whole + 1, end) : whole;
  const bool hasDigits = whole != at || (hasPoint && fraction != whole + 1);
  literal.end = hasDigits ? SkipExponent(fraction, end) : at;
  return literal;
}

// Whether a number out of range is too great rather than too small: the place of its first
// significant digit, exponent counted in, decides.
bool IsTooGreat(const Literal& literal) {
  std::int64_t place = 0;
  bool seen = false;
  bool afterPoint = false;
  const char* at = literal.first;
  for (; at != literal.end && *at != 'E' && *at != 'e'; ++at) {
    if (*at == '.') {
      afterPoint = true;
      continue;
    }
    seen = seen || *at != '0';
    if (seen && !afterPoint) ++place;
    if (!seen && afterPoint) --place;
  }
  if (at == literal.end) return place > 0;
  ++at;
  if (at != literal.end && *at == '+') ++at;
  std::int64_t exponent = 0;
  const auto result = std::from_chars(at, literal.end, exponent);
  if (result.ec == std::errc::result_out_of_range) return *at != '-';
  return place + exponent > 0;
}

// Up to this many digits fit a 64-bit number, whose conversion rounds once, as reading the text
// does.
constexpr std::ptrdiff_t kMostWholeDigits = 18;

std::optional<std::int64_t> ShortWhole(const Literal& literal) {
  if (literal.end - literal.first > kMostWholeDigits) return std::nullopt;
  std::int64_t whole = 0;
  for (const char* at = literal.first; at != literal.end; ++at) {
    if (!IsDigit(*at)) return std::nullopt;
    whole = whole * 10 + (*at - '0');
  }
  return literal.negative ? -whole : whole;
}

template <typename Number>
Number ReadLeading(std::string_view text) {
  const Literal literal = FindLiteral(text);
  if (literal.first == literal.end) return 0;
  if (const auto whole = ShortWhole(literal)) return static_cast<Number>(*whole);
  Number value = 0;
  const auto result = std::from_chars(literal.first, literal.end, value);
  if (result.ec == std::errc::result_out_of_range) {
    value = IsTooGreat(literal) ? std::numeric_limits<Number>::infinity() : Number{0};
  }
  return literal.negative ? -value : value;
}

template <typename Whole>
void AppendWhole(std::string& text, Whole value) {
  std::array<char, kNumberRoom> room{};
  const auto result = std::to_chars(room.data(), room.data() + room.size(), value);
  text.append(room.data(), result.ptr);
}

template <typename Number>
void AppendReal(std::string& text, Number value, Number wholeLimit, int digits) {
  if (std::abs(value) < wholeLimit && value == std::trunc(value)) {
    AppendWhole(text, static_cast<std::int64_t>(value));
    return;
  }
  std::array<char, kNumberRoom> room{};
  const auto result = std::to_chars(room.data(), room.data() + room.size(), value,
                                    std::chars_format::general, digits);
  for (char* c = room.data(); c != result.ptr; ++c) {
    if (*c == 'e') *c = 'E';
  }
  text.append(room.data(), result.ptr);
}

template <typename Number>
std::string TextOf(Number value) {
  std::string text;
  AppendNumber(text, value);
  return text;
}

}  // namespace

double LeadingNumber(std::string_view text) noexcept { return ReadLeading<double>(text); }

float LeadingSingle(std::string_view text) noexcept { return ReadLeading<float>(text); }

float TextToNumber(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return LeadingSingle(text);
  std::string pointed(text);
  pointed[comma] = '.';
  return LeadingSingle(pointed);
}

void AppendNumber(std::string& text, double value) {
  AppendReal(text, value, kWholeDoubleLimit, kDoubleDigits);
}

void AppendNumber(std::string& text, float value) {
  AppendReal(text, value, kWholeSingleLimit, kSingleDigits);
}

void AppendNumber(std::string& text, std::int32_t value) { AppendWhole(text, value); }

std::string NumberText(double value) { return TextOf(value); }

std::string NumberText(float value) { return TextOf(value); }

std::string NumberText(std::int32_t value) { return TextOf(value); }

std::optional<std::int32_t> RoundToInt32(double value) noexcept {
  const double whole = std::nearbyint(value);
  if (!(whole >= std::numeric_limits<std::int32_t>::min() &&
        whole <= std::numeric_limits<std::int32_t>::max())) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(whole);
}

}  // namespace orv::storage
