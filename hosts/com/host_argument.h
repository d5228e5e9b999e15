// One argument of a late-bound call: the place that the host passed, read and written back.
#pragma once

#include "com/windows_headers.h"
#include "engine/members.h"

namespace orv::com {

/// Reads what a script variable happens to hold and stores the call's result in the same variable.
///
/// The place may be a value (nothing goes back), a reference to a variable of a fixed type (results
/// are converted to that type), a reference to a VARIANT (it takes the result's own type) or a
/// script object with a property `value`, where null stands for nothing yet. A variable whose
/// content the call did not change stays untouched, so a text that was read as a number is a text
/// afterwards.
class HostArgument {
 public:
  HostArgument() = default;
  /// The place lives as long as the call.
  explicit HostArgument(VARIANT* place);

  /// Without a place the argument takes the type's own default: the empty text, 0, false.
  HRESULT Read(engine::ParameterType type);
  const engine::Argument& content() const { return content_; }
  /// Stores what the call left of the argument.
  void WriteBack(const engine::Argument& after) const;

 private:
  HRESULT ReadTexts();
  HRESULT ReadPlain(engine::ParameterType type);
  void WriteTexts(const TextMatrix& after) const;
  /// The array or object that the place holds or refers to, or nullptr.
  SAFEARRAY* Array() const;
  IDispatch* Object() const;

  VARIANT* place_ = nullptr;
  bool isVariable_ = false;
  /// Whether the place held nothing yet: it gets its type even from a result that is the default.
  bool wasEmpty_ = false;
  engine::Argument content_;
};

}  // namespace orv::com
