#include "cli/host.h"

#include <exception>
#include <istream>
#include <ostream>

#include "cli/request.h"
#include "engine/members.h"

namespace orv::cli {
namespace {

// Texts that are no UTF-8 cannot come up here; if one did, it would be mended and not end the host.
std::string Dumped(const Json& reply) {
  return reply.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string FaultReply(const Json& id, const char* sentence) {
  return Dumped({{"id", id}, {"fault", sentence}});
}

}  // namespace

Host::Host() : former_(InstallUserInterface(&interface_)) {}

Host::~Host() { InstallUserInterface(former_); }

std::string Host::Answer(std::string_view line) {
  Json id;
  try {
    const Json object = ParseLine(line);
    const auto given = object.find("id");
    if (given != object.end()) id = *given;
    Request request = ReadRequest(object);

    interface_.Begin(std::move(request.script));
    const engine::Result result = request.member->Invoke(engine_, request.arguments);

    Json reply = Json::object();
    if (given != object.end()) reply["id"] = id;
    reply["result"] = ResultJson(result);
    Json& arguments = reply["args"] = Json::array();
    for (const engine::Argument& argument : request.arguments) {
      arguments.push_back(ArgumentJson(argument));
    }
    reply["error"] = ResultJson(engine_.ErrorCode());
    reply["dialogs"] = interface_.TakeLog();
    return Dumped(reply);
  } catch (const std::bad_alloc&) {
    return FaultReply(id, "the request needs more memory than there is");
  } catch (const std::exception& problem) {
    return FaultReply(id, problem.what());
  }
}

void RunHost(std::istream& in, std::ostream& out) {
  Host host;
  std::string line;
  while (std::getline(in, line)) out << host.Answer(line) << '\n' << std::flush;
}

}  // namespace orv::cli
