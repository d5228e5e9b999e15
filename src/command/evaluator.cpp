#include "command/evaluator.h"

#include "command/nesting.h"

namespace orv::command {

void Evaluator::Evaluate(std::string_view expression, const Context& context, Value& value) {
  const std::size_t level = depth_;
  const NestingLevel nesting(depth_);
  if (level == rooms_.size()) rooms_.emplace_back();
  Rewriting(*this, context, rooms_[level]).Run(expression, value);
}

Value Evaluator::Evaluate(std::string_view expression, const Context& context) {
  Value value;
  Evaluate(expression, context, value);
  return value;
}

}  // namespace orv::command
