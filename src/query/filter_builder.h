// The filter builder: turns a view's path and its condition into a filled slot.
#pragma once

#include <string>

#include "command/evaluator.h"
#include "query/filter_class.h"
#include "storage/storage.h"

namespace orv::query {

/// Builds views, behind the dialog `CrFlt`. It may be entered again while it runs: a condition can
/// read through other views.
class FilterBuilder {
 public:
  FilterBuilder(storage::Storage& storage, command::Evaluator& evaluator, FilterClass& filters)
      : storage_(storage), evaluator_(evaluator), filters_(filters) {}

  /// Builds the view `pth` with the condition `flt`, with which the path ends behind a separator. A
  /// condition that cannot be used leaves an error code and no view; so does a run-time failure,
  /// after a message. A cancel keeps what was found so far. Error codes that the condition leaves
  /// for single records are dropped: such a record does not match.
  void Build(const std::wstring& pth, const std::wstring& flt);

 private:
  storage::Storage& storage_;
  command::Evaluator& evaluator_;
  FilterClass& filters_;
};

}  // namespace orv::query
