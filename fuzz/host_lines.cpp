// Any lines on the standard input of the scripting host. Every line must be answered by one JSON
// object.
#include <cstdlib>
#include <iostream>
#include <sstream>

#include <nlohmann/json.hpp>

#include "cli/host.h"
#include "fuzz/support/entry.h"
#include "fuzz/support/sample_file.h"

namespace orv::fuzz {
namespace {

constexpr std::size_t kGreatestLines = 32;

/// The first lines of the input, so that one input cannot take for ever.
std::string FirstLines(const std::string& text) {
  std::size_t end = 0;
  for (std::size_t lines = 0; lines < kGreatestLines && end != std::string::npos; ++lines) {
    end = text.find('\n', end == 0 ? 0 : end + 1);
  }
  return text.substr(0, end);
}

void CheckReplies(const std::string& in, const std::string& out) {
  std::istringstream asked(in);
  std::istringstream answered(out);
  std::string line;
  std::string reply;
  while (std::getline(asked, line)) {
    const bool isAnswered = static_cast<bool>(std::getline(answered, reply));
    const auto object = nlohmann::json::parse(reply, nullptr, /*allow_exceptions=*/false);
    if (isAnswered && object.is_object() && object.contains("fault") != object.contains("error")) {
      continue;
    }
    std::cerr << "no proper reply to: " << line << '\n' << reply << '\n';
    std::abort();
  }
}

}  // namespace
}  // namespace orv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto& sample = orv::fuzz::SampleFile::Instance();
  const std::string lines = orv::fuzz::FirstLines({reinterpret_cast<const char*>(data), size});
  std::istringstream in(lines);
  std::ostringstream out;
  orv::cli::RunHost(in, out);
  orv::fuzz::CheckReplies(lines, out.str());
  sample.Finish();
  return 0;
}
