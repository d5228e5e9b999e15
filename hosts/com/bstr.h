// Texts and values in the forms that automation passes them in.
#pragma once

#include <new>
#include <string>
#include <string_view>

#include "com/windows_headers.h"

namespace orv::com {

/// The text of a BSTR; a null pointer is the empty text. Zero characters belong to the text.
inline std::wstring_view TextOf(BSTR text) {
  return text == nullptr ? std::wstring_view() : std::wstring_view(text, SysStringLen(text));
}

/// A new BSTR, which the caller owns.
inline BSTR NewBstr(std::wstring_view text) {
  BSTR copy = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (copy == nullptr) throw std::bad_alloc();
  return copy;
}

/// Owns a VARIANT.
class Variant {
 public:
  Variant() { VariantInit(&variant_); }
  ~Variant() { VariantClear(&variant_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;

  VARIANT* get() { return &variant_; }
  VARIANT* operator->() { return &variant_; }
  VARIANT& operator*() { return variant_; }

 private:
  VARIANT variant_;
};

}  // namespace orv::com
