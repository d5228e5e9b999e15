// A second evaluator, for comparison only: recursive descent over the stated results, sharing no
// code with the engine's evaluator.
#pragma once

#include <functional>
#include <string>

namespace orv::command::test {

struct ModelValue {
  std::string text;
  int type = 0;
};

struct ModelContext {
  int record = 1;
  int field = 1;
  int records = 0;
  int fields = 0;
  std::string path;
  std::function<ModelValue(int record, int field)> cell;
  std::function<int(int field, const std::string& value)> find;
};

/// Expressions without stray brackets and commas outside calls.
ModelValue ModelEvaluate(const std::string& expression, const ModelContext& context);

}  // namespace orv::command::test
