#include "cli/request.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "cli/utf8.h"

namespace orv::cli {
namespace {

using engine::Argument;
using engine::Member;
using engine::Parameter;
using engine::ParameterType;

// Repeating a value walks it recursively, so depth is bounded before it is parsed.
constexpr int kGreatestDepth = 256;
// Texts that an array may hold: enough for a million records by eight fields.
constexpr std::uint64_t kGreatestArray = 10'000'000;

bool NestsTooDeeply(std::string_view line) {
  int depth = 0;
  bool inText = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char letter = line[i];
    if (inText) {
      if (letter == '\\') ++i;
      if (letter == '"') inText = false;
    } else if (letter == '"') {
      inText = true;
    } else if (letter == '[' || letter == '{') {
      if (++depth > kGreatestDepth) return true;
    } else if (letter == ']' || letter == '}') {
      --depth;
    }
  }
  return false;
}

std::string Named(const Parameter& parameter) { return "\"" + std::string(parameter.name) + "\""; }

std::wstring WideText(const std::string& text) {
  std::optional<std::wstring> wide = FromUtf8(text);
  if (!wide) throw Fault("a text is not valid UTF-8");
  return *std::move(wide);
}

// A JSON integer of any sign within the range of Integer, or nothing.
template <typename Integer>
std::optional<Integer> IntegerIn(const Json& value) {
  if (value.is_number_unsigned()) {
    const auto number = value.get<std::uint64_t>();
    const auto greatest = static_cast<std::uint64_t>(std::numeric_limits<Integer>::max());
    if (number > greatest) return std::nullopt;
    return static_cast<Integer>(number);
  }
  if (!value.is_number_integer()) return std::nullopt;
  const auto number = value.get<std::int64_t>();
  if (number < std::numeric_limits<Integer>::min() ||
      number > std::numeric_limits<Integer>::max()) {
    return std::nullopt;
  }
  return static_cast<Integer>(number);
}

template <typename Integer>
Argument ReadInteger(const Json& value, const Parameter& parameter) {
  if (!value.is_number()) throw Fault(Named(parameter) + " must be an integer");
  const std::optional<Integer> number = IntegerIn<Integer>(value);
  if (!number) {
    throw Fault(Named(parameter) + " must be an integer of " + std::to_string(8 * sizeof(Integer)) +
                " bits");
  }
  return *number;
}

Bounds ReadBounds(const Json& array, const char* key, const Parameter& parameter) {
  const auto found = array.find(key);
  const bool pair = found != array.end() && found->is_array() && found->size() == 2;
  const auto low = pair ? IntegerIn<std::int32_t>((*found)[0]) : std::nullopt;
  const auto high = pair ? IntegerIn<std::int32_t>((*found)[1]) : std::nullopt;
  if (!low || !high) {
    throw Fault(Named(parameter) + " needs \"" + key + "\", a pair of integers of 32 bits");
  }
  return {*low, *high};
}

Argument ReadMatrix(const Json& value, const Parameter& parameter) {
  if (!value.is_object()) {
    throw Fault(Named(parameter) + R"( must be an object with "fields" and "records")");
  }
  const Bounds fields = ReadBounds(value, "fields", parameter);
  const Bounds records = ReadBounds(value, "records", parameter);
  // Either count fits 33 bits, so the product is compared by division.
  if (fields.Count() != 0 && records.Count() > kGreatestArray / fields.Count()) {
    throw Fault(Named(parameter) + " is too large: an array may hold " +
                std::to_string(kGreatestArray) + " texts");
  }
  if (records.Count() == 0 && fields.Count() > kGreatestArray) {
    throw Fault(Named(parameter) + " is too large");
  }
  return TextMatrix(fields, records);
}

Argument ReadArgument(const Json& value, const Parameter& parameter) {
  switch (parameter.type) {
    case ParameterType::kText:
      if (!value.is_string()) throw Fault(Named(parameter) + " must be a text");
      return WideText(value.get_ref<const std::string&>());
    case ParameterType::kInt16:
      return ReadInteger<std::int16_t>(value, parameter);
    case ParameterType::kInt32:
      return ReadInteger<std::int32_t>(value, parameter);
    case ParameterType::kBoolean:
      if (!value.is_boolean()) throw Fault(Named(parameter) + " must be true or false");
      return ToBoolean(value.get<bool>());
    case ParameterType::kTextMatrix:
      return ReadMatrix(value, parameter);
  }
  throw Fault(Named(parameter) + " has an unknown type");
}

const Member& ReadMember(const Json& object) {
  const auto found = object.find("member");
  if (found == object.end() || !found->is_string()) {
    throw Fault("the request needs \"member\", the name of a member");
  }
  const auto& name = found->get_ref<const std::string&>();
  const Member* const member = engine::FindMember(std::string_view(name));
  if (member == nullptr) throw Fault("there is no member \"" + name + "\"");
  return *member;
}

std::vector<Argument> ReadArguments(const Json& object, const Member& member) {
  static const Json kNone = Json::array();
  const auto found = object.find("args");
  const Json& given = found == object.end() ? kNone : *found;
  if (!given.is_array()) throw Fault("\"args\" must be a list");
  const auto parameters = member.parameters();
  if (given.size() != parameters.size()) {
    throw Fault(std::string(member.name()) + " takes " + std::to_string(parameters.size()) +
                (parameters.size() == 1 ? " argument" : " arguments") + ", not " +
                std::to_string(given.size()));
  }
  std::vector<Argument> arguments;
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    arguments.push_back(ReadArgument(given[i], parameters[i]));
  }
  return arguments;
}

// An optional key that is null counts as left out.
const Json* FindOptional(const Json& object, const char* key) {
  const auto found = object.find(key);
  return found == object.end() || found->is_null() ? nullptr : &*found;
}

bool IsListOfTexts(const Json& value) {
  return value.is_array() &&
         std::ranges::all_of(value, [](const Json& entry) { return entry.is_string(); });
}

ScriptedCall ReadScript(const Json& object) {
  ScriptedCall script;
  if (const Json* const answers = FindOptional(object, "answers")) {
    if (!IsListOfTexts(*answers)) throw Fault("\"answers\" must be a list of texts");
    script.answers = answers->get<std::vector<std::string>>();
  }
  if (const Json* const place = FindOptional(object, "press_cancel_at")) {
    script.pressCancelAt = IntegerIn<std::int64_t>(*place);
    if (!script.pressCancelAt) throw Fault("\"press_cancel_at\" must be an integer");
  }
  if (const Json* const separators = FindOptional(object, "separators")) {
    if (!IsListOfTexts(*separators) || separators->size() != 2) {
      throw Fault("\"separators\" must be a pair of texts");
    }
    script.separators.emplace(WideText((*separators)[0].get_ref<const std::string&>()),
                              WideText((*separators)[1].get_ref<const std::string&>()));
  }
  return script;
}

Json MatrixJson(const TextMatrix& matrix) {
  const Bounds& fields = matrix.fields();
  const Bounds& records = matrix.records();
  Json values = Json::array();
  for (std::int64_t field = fields.low; field <= fields.high; ++field) {
    Json texts = Json::array();
    for (std::int64_t record = records.low; record <= records.high; ++record) {
      texts.push_back(
          ToUtf8(matrix.At(static_cast<std::int32_t>(field), static_cast<std::int32_t>(record))));
    }
    values.push_back(std::move(texts));
  }
  return {{"fields", Json::array({fields.low, fields.high})},
          {"records", Json::array({records.low, records.high})},
          {"values", std::move(values)}};
}

struct ToJson {
  Json operator()(std::monostate) const { return nullptr; }
  Json operator()(const std::wstring& text) const { return ToUtf8(text); }
  Json operator()(std::int16_t number) const { return number; }
  Json operator()(std::int32_t number) const { return number; }
  Json operator()(Boolean boolean) const { return IsTrue(boolean); }
  Json operator()(const TextMatrix& matrix) const { return MatrixJson(matrix); }
  Json operator()(const Value& value) const {
    if (value.Text() != nullptr) return ToUtf8(*value.Text());
    if (value.Int16() != nullptr) return *value.Int16();
    if (value.Int32() != nullptr) return *value.Int32();
    return nullptr;
  }
};

}  // namespace

Json ParseLine(std::string_view line) {
  if (NestsTooDeeply(line)) throw Fault("the line nests values too deeply");
  Json object = Json::parse(line, nullptr, /*allow_exceptions=*/false);
  if (object.is_discarded()) throw Fault("the line is not valid JSON");
  if (!object.is_object()) throw Fault("the line is no JSON object");
  return object;
}

Request ReadRequest(const Json& object) {
  const Member& member = ReadMember(object);
  return {&member, ReadArguments(object, member), ReadScript(object)};
}

Json ResultJson(const engine::Result& result) { return std::visit(ToJson(), result); }

Json ArgumentJson(const Argument& argument) { return std::visit(ToJson(), argument); }

}  // namespace orv::cli
