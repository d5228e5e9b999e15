// The expression evaluator.
#pragma once

#include <cstddef>
#include <deque>
#include <string_view>

#include "command/context.h"
#include "command/ports.h"
#include "command/rewriting.h"
#include "command/value.h"

namespace orv::command {

/// Evaluates expressions. One object serves a component; it may be entered again while it runs (by
/// its own recursion, and by formulas that the storage evaluates). It keeps nothing between calls
/// but the room it works in.
class Evaluator {
 public:
  explicit Evaluator(Services& services) : services_(services) {}
  Evaluator(const Evaluator&) = delete;
  Evaluator& operator=(const Evaluator&) = delete;

  /// The value of an expression replaces `value`. Failures of the language are values of type
  /// error; failures of the storage, and 28 for an expression nested too deep, are raised. Neither
  /// the expression nor the context may lie in `value`.
  void Evaluate(std::string_view expression, const Context& context, Value& value);
  Value Evaluate(std::string_view expression, const Context& context);

  Services& services() { return services_; }

 private:
  Services& services_;
  std::size_t depth_ = 0;
  std::deque<RewritingRoom>
      rooms_;  // one a level of nesting; grows, its elements stay where they are
};

}  // namespace orv::command
