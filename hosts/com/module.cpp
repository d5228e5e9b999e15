#include "com/module.h"

namespace orv::com {

HINSTANCE Module::Instance() {
  HMODULE module = nullptr;
  constexpr DWORD kFlags =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  GetModuleHandleExW(kFlags, reinterpret_cast<LPCWSTR>(&Module::Instance), &module);
  return module;
}

std::wstring Module::FileName() {
  constexpr std::size_t kLongest = 32768;
  std::wstring name(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetModuleFileNameW(Instance(), name.data(), static_cast<DWORD>(name.size()));
    if (length < name.size()) {
      name.resize(length);
      return name;
    }
    if (name.size() >= kLongest) return {};
    name.resize(name.size() * 2);
  }
}

}  // namespace orv::com
