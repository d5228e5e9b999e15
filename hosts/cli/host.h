// The scripting host: the automation object driven by JSON lines.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "orv/engine.h"

#include "cli/scripted_interface.h"

namespace orv::cli {

/// Answers requests one by one. Installs its scripted user interface as long as it lives.
class Host {
 public:
  Host();
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  /// The reply to one line, without its line end. Whatever the line holds, this does not throw, and
  /// a line that is no proper request never reaches the engine.
  std::string Answer(std::string_view line);

 private:
  Engine engine_;
  ScriptedInterface interface_;
  UserInterface* former_;
};

/// Answers every line of `in` on `out`, flushed per line, until `in` ends.
void RunHost(std::istream& in, std::ostream& out);

}  // namespace orv::cli
