#include "command/subscript.h"

#include "command/operators.h"
#include "platform/code_page.h"

namespace orv::command {

double ReadSubscript(const std::wstring& expression, const std::wstring& pathSoFar,
                     Evaluator& evaluator) {
  const std::string text = platform::ToBytes(expression);
  return NumberOf(evaluator.Evaluate(text, Context(pathSoFar, 0, 0)).text);
}

}  // namespace orv::command
