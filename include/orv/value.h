// The tagged value and the boolean of the automation interface.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>

namespace orv {

/// A 16-bit boolean: -1 is true, 0 is false; any other number that a host passes counts as true.
enum class Boolean : std::int16_t { kFalse = 0, kTrue = -1 };

constexpr Boolean ToBoolean(bool value) { return value ? Boolean::kTrue : Boolean::kFalse; }
constexpr bool IsTrue(Boolean value) { return value != Boolean::kFalse; }

/// A tagged value: empty, a 16-bit integer, a 32-bit integer or a text. Members whose result has no
/// fixed type return one. It owns its text.
class Value {
 public:
  Value() = default;
  explicit Value(std::int16_t number) : content_(number) {}
  explicit Value(std::int32_t number) : content_(number) {}
  explicit Value(std::wstring text) : content_(std::move(text)) {}

  bool IsEmpty() const { return std::holds_alternative<std::monostate>(content_); }
  /// The content as the asked type, or nullptr when the value holds another one.
  const std::int16_t* Int16() const { return std::get_if<std::int16_t>(&content_); }
  const std::int32_t* Int32() const { return std::get_if<std::int32_t>(&content_); }
  const std::wstring* Text() const { return std::get_if<std::wstring>(&content_); }

  friend bool operator==(const Value&, const Value&) = default;

 private:
  std::variant<std::monostate, std::int16_t, std::int32_t, std::wstring> content_;
};

}  // namespace orv
