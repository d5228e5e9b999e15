#include "command/compiled_expression.h"

#include "command/expression_compiler.h"

namespace orv::command {

std::unique_ptr<CompiledExpression> CompiledExpression::Compile(std::string_view expression,
                                                                const std::wstring& path,
                                                                Evaluator& evaluator) {
  std::unique_ptr<CompiledExpression> compiled(new CompiledExpression());
  compiled->text_ = expression;
  compiled->root_ = ExpressionCompiler(path, evaluator).Compile(compiled->text_);
  if (compiled->root_ == nullptr) return nullptr;
  return compiled;
}

void CompiledExpression::Evaluate(const Context& context, Value& value) {
  FastValue result;
  root_->Evaluate(context, result);
  value.type = result.type;
  value.text.clear();
  AppendText(value.text, result);
}

bool CompiledExpression::IsTrueFor(const Context& context) {
  FastValue result;
  root_->Evaluate(context, result);
  return IsTrue(result);
}

}  // namespace orv::command
