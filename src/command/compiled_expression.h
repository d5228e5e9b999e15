// Expressions that are taken apart once and evaluated many times.
//
// Rewriting defines what an expression means; a compiled expression gives the same values, error
// codes and failures, in the same order, without going through the text. Why it can:
//
// - Finished values are never torn by a new scan, whatever is in them. So what a cell holds cannot
//   change how the expression is taken apart; that depends on the expression's own text alone.
// - Operations of one level are reduced from left to right, tighter ones first. The one trace that
// the
//   order of rewriting leaves is that a scan begins anew after the reduction of a deferred
//   operation: from then on the operands to the left of it, and its result, have the types that
//   their texts have. Compiled expressions do exactly that at exactly those places (ReadAgain).
// - Numbers pass from operation to operation through texts of 15 or 7 digits. A number is passed on
//   directly only where its text would give it back unchanged; otherwise the text is made and read.
//
// An expression whose shape is not covered by this (stray brackets, commas and quotes, missing
// operands or parentheses, values continued as text, cell references, extreme nesting) is not
// compiled.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "command/context.h"
#include "command/evaluator.h"
#include "command/fast_value.h"

namespace orv::command {

/// One step of a compiled expression. What a value refers to stays until the node's next
/// evaluation.
class Node {
 public:
  virtual ~Node() = default;
  virtual void Evaluate(const Context& context, FastValue& value) = 0;
};

class CompiledExpression {
 public:
  /// Nothing when the expression is not of a covered shape. Cells are read through columns of the
  /// matrix at `path` where the services have them; every later context must have this path. The
  /// evaluator must outlive the result.
  static std::unique_ptr<CompiledExpression> Compile(std::string_view expression,
                                                     const std::wstring& path,
                                                     Evaluator& evaluator);

  /// What Evaluator::Evaluate gives.
  void Evaluate(const Context& context, Value& value);
  /// Whether the text of that value is "true".
  bool IsTrueFor(const Context& context);

 private:
  CompiledExpression() = default;

  std::string text_;  // the nodes refer to it
  std::unique_ptr<Node> root_;
};

}  // namespace orv::command
