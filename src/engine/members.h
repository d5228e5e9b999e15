// The member table: the 34 members of `Engine`, described once.
//
// Every binding (the scripting host, the automation server, tests) finds a member here by name or
// dispatch number and calls it through `Member::Invoke`. Types are deduced from the member
// functions themselves, so the table cannot disagree with `Engine`.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "orv/engine.h"

namespace orv::engine {

/// The type of a parameter. The numbers are the alternatives of `Argument`.
enum class ParameterType { kText, kInt16, kInt32, kBoolean, kTextMatrix };
/// The type of a result. The numbers are the alternatives of `Result`.
enum class ResultType { kNone, kText, kInt16, kInt32, kValue };

/// A parameter. Every parameter is passed by reference, in and out.
struct Parameter {
  std::string_view name;
  ParameterType type = ParameterType::kText;
};

using Argument = std::variant<std::wstring, std::int16_t, std::int32_t, Boolean, TextMatrix>;
using Result = std::variant<std::monostate, std::wstring, std::int16_t, std::int32_t, Value>;

constexpr ParameterType TypeOf(const Argument& argument) {
  return static_cast<ParameterType>(argument.index());
}

inline constexpr std::size_t kMaxParameters = 8;

/// One member. Members live in the table for the life of the process.
class Member {
 public:
  using Caller = Result (*)(Engine&, std::span<Argument>);

  constexpr Member(std::string_view name, ResultType result, Caller caller)
      : name_(name), result_(result), caller_(caller) {}
  constexpr void AddParameter(const Parameter& parameter) {
    parameters_[parameterCount_++] = parameter;
  }
  constexpr void SetNumber(std::int32_t number) { number_ = number; }

  constexpr std::string_view name() const { return name_; }
  /// The dispatch number: 1 to 34, in interface order, fixed forever.
  constexpr std::int32_t number() const { return number_; }
  constexpr std::span<const Parameter> parameters() const {
    return std::span(parameters_).first(parameterCount_);
  }
  constexpr ResultType result() const { return result_; }

  /// Whether the arguments have the number and the types that `Invoke` needs.
  bool Accepts(std::span<const Argument> arguments) const;
  /// Calls the member. The arguments must be accepted; they come back as the call left them. Never
  /// throws for a failure of the operation: `Engine::ErrorCode` tells it.
  Result Invoke(Engine& engine, std::span<Argument> arguments) const {
    return caller_(engine, arguments);
  }

 private:
  std::string_view name_;
  std::int32_t number_ = 0;
  std::array<Parameter, kMaxParameters> parameters_{};
  std::size_t parameterCount_ = 0;
  ResultType result_;
  Caller caller_;
};

/// All members in interface order: the member with dispatch number n is element n - 1.
std::span<const Member> Members();

/// The member of that name, letter case ignored, or nullptr.
const Member* FindMember(std::string_view name);
const Member* FindMember(std::wstring_view name);
/// The member with that dispatch number, or nullptr.
const Member* FindMember(std::int32_t number);

}  // namespace orv::engine
