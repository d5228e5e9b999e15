// What the system calls in the DLL.
#include <string_view>

#include "com/class_factory.h"
#include "com/module.h"
#include "com/orv_engine_idl.h"
#include "com/registration.h"
#include "com/windows_headers.h"

using orv::com::RegistrationScope;

namespace {

/// Per machine, or per user where the machine's entries may not be written.
template <typename Write>
HRESULT ForMachineElseUser(Write write) {
  const HRESULT outcome = write(RegistrationScope::kMachine);
  return outcome == E_ACCESSDENIED || outcome == TYPE_E_REGISTRYACCESS
             ? write(RegistrationScope::kUser)
             : outcome;
}

}  // namespace

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (classId != CLSID_Engine) return CLASS_E_CLASSNOTAVAILABLE;
  return orv::com::ClassFactory::Instance().QueryInterface(id, object);
}

STDAPI DllCanUnloadNow() { return orv::com::Module::IsUsed() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() { return ForMachineElseUser(orv::com::Register); }

STDAPI DllUnregisterServer() {
  const HRESULT outcome = ForMachineElseUser(orv::com::Unregister);
  const HRESULT user = orv::com::Unregister(RegistrationScope::kUser);
  return FAILED(outcome) ? outcome : user;
}

// "regsvr32 /n /i:user" registers for the user alone, with or without rights on the machine.
STDAPI DllInstall(BOOL install, PCWSTR commandLine) {
  if (commandLine == nullptr || std::wstring_view(commandLine) != L"user") return E_INVALIDARG;
  return install ? orv::com::Register(RegistrationScope::kUser)
                 : orv::com::Unregister(RegistrationScope::kUser);
}
