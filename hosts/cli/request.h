// The requests and replies of the scripting host as JSON.
#pragma once

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/scripted_interface.h"
#include "engine/members.h"

namespace orv::cli {

/// JSON whose objects keep the order of their keys, so that an `id` comes back as it was sent.
using Json = nlohmann::ordered_json;

/// What is wrong with a request, as a sentence.
class Fault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A request that the engine can be called with.
struct Request {
  const engine::Member* member = nullptr;
  std::vector<engine::Argument> arguments;
  ScriptedCall script;
};

/// The JSON object of a line. Throws `Fault` for anything else, such as text that is not UTF-8 or
/// values nested so deeply that handling them would exhaust the stack.
Json ParseLine(std::string_view line);

/// The request that the object describes. Throws `Fault`.
Request ReadRequest(const Json& object);

/// A result of a member: a text, a number or null.
Json ResultJson(const engine::Result& result);
/// An argument in the form in which a request gives it; an array carries its texts besides.
Json ArgumentJson(const engine::Argument& argument);

}  // namespace orv::cli
