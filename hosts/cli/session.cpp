#include "cli/session.h"

#include <string>

#include "cli/failure.h"

namespace orv::cli {

void ConsoleSession::Check(const char* operation) const {
  if (interface_.cancelled()) throw Failure(std::string(operation) + " was cancelled");
  if (interface_.refused()) throw Failure(std::string(operation) + " was refused");
}

}  // namespace orv::cli
