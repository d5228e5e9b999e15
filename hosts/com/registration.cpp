#include "com/registration.h"

#include <array>
#include <cstdint>
#include <string>

#include "com/module.h"
#include "com/orv_engine_idl.h"
#include "com/windows_headers.h"

// The library has them; not every set of headers declares them.
extern "C" {
HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* fileName, OLECHAR* helpFolder);
HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID id, WORD major, WORD minor, LCID locale,
                                        SYSKIND system);
}

namespace orv::com {
namespace {

constexpr const wchar_t* kProgId = L"Orv.Engine";
constexpr const wchar_t* kVersionedProgId = L"Orv.Engine.1";
constexpr const wchar_t* kTitle = L"ORV table database engine";
constexpr WORD kLibraryMajor = 1;
constexpr WORD kLibraryMinor = 0;

std::wstring TextOfId(REFGUID id) {
  std::array<wchar_t, 40> text{};
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  return text.data();
}

HKEY Root(RegistrationScope scope) {
  return scope == RegistrationScope::kMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::wstring ClassesKey(const std::wstring& key) { return L"Software\\Classes\\" + key; }

HRESULT SetText(RegistrationScope scope, const std::wstring& key, const wchar_t* name,
                const std::wstring& text) {
  const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  return HRESULT_FROM_WIN32(static_cast<DWORD>(
      RegSetKeyValueW(Root(scope), ClassesKey(key).c_str(), name, REG_SZ, text.c_str(), bytes)));
}

HRESULT RemoveKey(RegistrationScope scope, const std::wstring& key) {
  const LSTATUS outcome = RegDeleteTreeW(Root(scope), ClassesKey(key).c_str());
  if (outcome == ERROR_FILE_NOT_FOUND) return S_OK;
  return HRESULT_FROM_WIN32(static_cast<DWORD>(outcome));
}

/// The entries, each a key, a value name and a text.
HRESULT WriteEntries(RegistrationScope scope, const std::wstring& fileName) {
  struct Entry {
    std::wstring key;
    const wchar_t* name;
    std::wstring text;
  };
  const std::wstring classId = TextOfId(CLSID_Engine);
  const std::wstring classKey = L"CLSID\\" + classId;
  const std::array entries = {
      Entry{classKey, nullptr, kTitle},
      Entry{classKey + L"\\InprocServer32", nullptr, fileName},
      Entry{classKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      Entry{classKey + L"\\ProgID", nullptr, kVersionedProgId},
      Entry{classKey + L"\\VersionIndependentProgID", nullptr, kProgId},
      Entry{classKey + L"\\TypeLib", nullptr, TextOfId(LIBID_Orv)},
      Entry{classKey + L"\\Version", nullptr, L"1.0"},
      Entry{classKey + L"\\Programmable", nullptr, L""},
      Entry{kVersionedProgId, nullptr, kTitle},
      Entry{std::wstring(kVersionedProgId) + L"\\CLSID", nullptr, classId},
      Entry{kProgId, nullptr, kTitle},
      Entry{std::wstring(kProgId) + L"\\CLSID", nullptr, classId},
      Entry{std::wstring(kProgId) + L"\\CurVer", nullptr, kVersionedProgId},
  };
  for (const Entry& entry : entries) {
    const HRESULT outcome = SetText(scope, entry.key, entry.name, entry.text);
    if (FAILED(outcome)) return outcome;
  }
  return S_OK;
}

HRESULT RegisterLibrary(RegistrationScope scope, const std::wstring& fileName) {
  ITypeLib* library = nullptr;
  const HRESULT loaded = LoadTypeLibEx(fileName.c_str(), REGKIND_NONE, &library);
  if (FAILED(loaded)) return loaded;
  std::wstring name = fileName;
  const auto write =
      scope == RegistrationScope::kMachine ? RegisterTypeLib : RegisterTypeLibForUser;
  const HRESULT outcome = write(library, name.data(), nullptr);
  library->Release();
  return outcome;
}

}  // namespace

HRESULT Register(RegistrationScope scope) {
  const std::wstring fileName = Module::FileName();
  if (fileName.empty()) return E_UNEXPECTED;
  const HRESULT written = WriteEntries(scope, fileName);
  return FAILED(written) ? written : RegisterLibrary(scope, fileName);
}

HRESULT Unregister(RegistrationScope scope) {
  const auto remove =
      scope == RegistrationScope::kMachine ? UnRegisterTypeLib : UnRegisterTypeLibForUser;
  // A library that was never registered cannot be removed, and need not be.
  constexpr SYSKIND kSystem = sizeof(void*) == sizeof(std::uint64_t) ? SYS_WIN64 : SYS_WIN32;
  remove(LIBID_Orv, kLibraryMajor, kLibraryMinor, LOCALE_NEUTRAL, kSystem);
  HRESULT outcome = S_OK;
  for (const std::wstring& key : {L"CLSID\\" + TextOfId(CLSID_Engine),
                                  std::wstring(kVersionedProgId), std::wstring(kProgId)}) {
    const HRESULT removed = RemoveKey(scope, key);
    if (FAILED(removed)) outcome = removed;
  }
  return outcome;
}

}  // namespace orv::com
