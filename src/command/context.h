// Where an expression is evaluated.
#pragma once

#include <cstdint>
#include <string>

namespace orv::command {

/// The record and field that a cell reference (`cell(r, f).`) names.
struct CellReference {
  std::int32_t record = 0;
  std::int16_t field = 0;
};

/// The context is passed unchanged to every nested evaluation. It refers to the path of its maker,
/// who keeps it while the evaluation runs.
struct Context {
  Context(const std::wstring& contextPath, std::int32_t contextRecord, std::int16_t contextField)
      : path(contextPath), record(contextRecord), field(contextField), outerPath(contextPath) {}
  Context(std::wstring&&, std::int32_t, std::int16_t) = delete;

  const std::wstring& path;
  std::int32_t record;
  std::int16_t field;
  /// What the dot prefix of `cell` reads from: the context path itself.
  const std::wstring& outerPath;
  /// Filled by a cell reference when the caller wants to know what was referred to.
  CellReference* reference = nullptr;
};

}  // namespace orv::command
