// Takes expressions apart for CompiledExpression.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "command/compiled_expression.h"

namespace orv::command {

class ExpressionCompiler {
 public:
  ExpressionCompiler(const std::wstring& path, Evaluator& evaluator)
      : path_(path), evaluator_(evaluator) {}

  /// The nodes refer to the text. Nothing when the shape is not covered.
  std::unique_ptr<Node> Compile(std::string_view expression);

 private:
  class Reader;

  std::unique_ptr<Node> CompileCall(std::string_view token, std::string_view argumentText);
  std::unique_ptr<Node> CompileCell(const Arguments& arguments);
  template <typename CallNode>
  std::unique_ptr<Node> CompileArguments(const Arguments& arguments);

  const std::wstring& path_;
  Evaluator& evaluator_;
  std::size_t depth_ = 0;
};

}  // namespace orv::command
