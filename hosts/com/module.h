// The DLL as a whole: its handle, and what keeps it loaded.
#pragma once

#include <string>

#include "com/windows_headers.h"

namespace orv::com {

/// Counts what keeps the DLL in its host: living objects and locks on the class.
class Module {
 public:
  static void AddUse() { InterlockedIncrement(&uses_); }
  static void DropUse() { InterlockedDecrement(&uses_); }
  static bool IsUsed() { return InterlockedCompareExchange(&uses_, 0, 0) != 0; }

  /// The DLL or program that this code was linked into.
  static HINSTANCE Instance();
  /// Its full file name, of any length; empty when the system does not tell.
  static std::wstring FileName();

 private:
  static inline volatile LONG uses_ = 0;
};

}  // namespace orv::com
