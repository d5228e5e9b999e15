// Subscripts of paths that are expressions.
#pragma once

#include <string>

#include "command/evaluator.h"

namespace orv::command {

/// The number that a subscript yields in the context of the path read so far, with record 0 and
/// field 0; 0 when it yields no number.
double ReadSubscript(const std::wstring& expression, const std::wstring& pathSoFar,
                     Evaluator& evaluator);

}  // namespace orv::command
