// Matrix paths: their text taken apart and put together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "storage/error_code.h"
#include "storage/ports.h"

namespace orv::storage {

/// One step of a path.
struct PathStep {
  enum class Kind { kCell, kProperties, kFilter };
  Kind kind = Kind::kCell;
  std::wstring condition;   ///< of a filter, exactly as written
  std::int32_t record = 0;  ///< of a cell step
  std::int16_t field = 0;   ///< of a cell step
};

struct MatrixPath {
  static constexpr std::size_t kGreatestSteps = 32;

  std::wstring fileName;  ///< without its quotes
  std::vector<PathStep> steps;
};

/// Takes a path apart. Subscripts that are not plain decimal numbers are evaluated through
/// `subscripts`, from left to right, in the context of the path before their step. A fault of the
/// syntax, no file part or more than 32 steps leave error code 10; a record subscript below 1
/// leaves 20, a field subscript below 1 leaves 21; a number outside its type raises 6. After an
/// error the result is incomplete.
MatrixPath SplitPath(const std::wstring& path, SubscriptPort* subscripts, ErrorCode& error);

/// The file part of a canonical path: the name in double quotes.
std::wstring QuotedFile(const std::wstring& fileName);
/// The path of the matrix nested in cell (record, field) of the matrix at `path`.
std::wstring NestedPath(const std::wstring& path, std::int32_t record, std::int16_t field);
/// The path of the property matrix of the matrix at `path`.
std::wstring PropertyPath(const std::wstring& path);
/// The file and the first `count` steps, written in the one way that all spellings of them share.
std::wstring CanonicalPath(const MatrixPath& parts, std::size_t count);
/// Whether the path ends in its step to a property matrix.
bool EndsInProperties(const std::wstring& path);

}  // namespace orv::storage
