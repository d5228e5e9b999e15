// The cancel request that all long operations share.
#pragma once

#include "orv/value.h"

namespace orv::dialogs {

/// One boolean of the whole process: made by the cancel button of a dialog, tested by the running
/// loop once per record, cleared when an operation starts. Stored as all bits set or 0.
class CancelRequest {
 public:
  static void Make() { request_ = Boolean::kTrue; }
  static void Clear() { request_ = Boolean::kFalse; }
  static bool IsMade() { return IsTrue(request_); }

  /// An operation that runs inside another: a request made before it is found by the outer loop
  /// after it, and one made in its own dialog ends nothing but itself.
  class Inner {
   public:
    Inner() = default;
    ~Inner() { request_ = outer_; }
    Inner(const Inner&) = delete;
    Inner& operator=(const Inner&) = delete;

   private:
    Boolean outer_ = request_;
  };

 private:
  static inline Boolean request_ = Boolean::kFalse;
};

}  // namespace orv::dialogs
