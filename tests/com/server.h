// The registered server, as a host reaches it.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include "com/bstr.h"
#include "com/orv_engine_idl.h"
#include "com/windows_headers.h"
#include "support/temp_folder.h"

namespace orv::test {

/// The single-threaded apartment that a host's interface thread is.
class Apartment {
 public:
  Apartment() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ~Apartment() { CoUninitialize(); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
};

/// Owns one reference to an interface.
template <typename Interface>
class Reference {
 public:
  Reference() = default;
  explicit Reference(Interface* object) : object_(object) {}
  ~Reference() { Reset(); }
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;

  Interface* operator->() const { return object_; }
  Interface* get() const { return object_; }
  Interface** out() {
    Reset();
    return &object_;
  }
  void** outVoid() { return reinterpret_cast<void**>(out()); }
  void Reset() {
    if (object_ != nullptr) object_->Release();
    object_ = nullptr;
  }

 private:
  Interface* object_ = nullptr;
};

/// Creates an object by the class's programmatic id; throws when it is not registered.
inline void CreateByName(const wchar_t* progId, REFIID id, void** object) {
  CLSID classId = {};
  if (FAILED(CLSIDFromProgID(progId, &classId)) ||
      FAILED(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, id, object))) {
    throw std::runtime_error("the class is not registered");
  }
}

/// Owns a BSTR that is passed by reference.
class Text {
 public:
  Text() = default;
  explicit Text(std::wstring_view text) : text_(com::NewBstr(text)) {}
  ~Text() { SysFreeString(text_); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  BSTR* operator&() { return &text_; }
  BSTR get() const { return text_; }
  std::wstring str() const { return std::wstring(com::TextOf(text_)); }

 private:
  BSTR text_ = nullptr;
};

/// The DLL beside the running test program.
inline std::wstring DllName() {
  std::wstring name(MAX_PATH, L'\0');
  name.resize(GetModuleFileNameW(nullptr, name.data(), MAX_PATH));
  return (std::filesystem::path(name).parent_path() / "orvengine.dll").wstring();
}

/// The engine's error code through the dual interface.
inline int ErrorCodeOf(IEngine* engine) {
  VARIANT code;
  VariantInit(&code);
  if (FAILED(engine->ErrorCode(&code)) || code.vt != VT_I2) return -1;
  return code.iVal;
}

/// A cell's text through the dual interface; throws when the call fails.
inline std::wstring CellTextOf(IEngine* engine, Text& path, long record, short field) {
  VARIANT_BOOL isMatrix = VARIANT_FALSE;
  VARIANT_BOOL formula = VARIANT_FALSE;
  Text text;
  if (FAILED(engine->GetCellValue(&path, &record, &field, &isMatrix, &formula, &text))) {
    throw std::runtime_error("a cell cannot be read");
  }
  return text.str();
}

}  // namespace orv::test
