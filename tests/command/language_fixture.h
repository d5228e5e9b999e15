// A small table and the ways to run commands and expressions over it.
#pragma once

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "command/evaluator.h"
#include "command/statements.h"
#include "fake_services.h"

namespace orv::command::test {

class LanguageTest : public testing::Test {
 protected:
  LanguageTest() {
    services_.tables[path_] = {{"string", "integer", "", "real", "currency", "logic", "date&time"},
                               {{"alpha", "5", "x", "2.5", "10", "true", "01.02.2024"},
                                {"be\"ta", "-7", "3", "3,25", "20.5", "True", "02.02.2024"},
                                {"", "12", "a,b", "0", "0", "false", ""},
                                {"alpha", "abc", "", "1E+15", "1", "", "x"}}};
    services_.tables[L"\"other.orv\"/[1,2]"] = {{"string", "int"}, {{"one", "1"}, {"two", "22"}}};
  }

  /// The value of an expression at record 2, field 3; an error code from before is cleared.
  Value Evaluate(const std::string& expression) {
    services_.error.Clear();
    return evaluator_.Evaluate(expression, context_);
  }
  std::string Text(const std::string& expression) { return Evaluate(expression).text; }
  int Type(const std::string& expression) { return Evaluate(expression).type; }

  /// The result of a command as a host gets it: the error code is cleared first.
  std::optional<std::string> Run(const std::string& command, std::int16_t mode = kCommandMode) {
    services_.error.Clear();
    return RunCommand(command, mode, context_, evaluator_);
  }

  int ErrorCode() const { return services_.error.value(); }

  FakeServices services_;
  Evaluator evaluator_{services_};
  const std::wstring path_ = L"\"table.orv\"";
  Context context_{path_, 2, 3};
};

}  // namespace orv::command::test
