#include "com/class_factory.h"

#include "com/engine_object.h"
#include "com/module.h"
#include "com/native_interface.h"

namespace orv::com {

ClassFactory& ClassFactory::Instance() {
  static ClassFactory factory;
  return factory;
}

HRESULT ClassFactory::QueryInterface(REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (id != IID_IUnknown && id != IID_IClassFactory) return E_NOINTERFACE;
  *object = static_cast<IClassFactory*>(this);
  AddRef();
  return S_OK;
}

// A host that holds the class object holds the DLL.
ULONG ClassFactory::AddRef() {
  Module::AddUse();
  return 2;
}

ULONG ClassFactory::Release() {
  Module::DropUse();
  return 1;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  try {
    NativeInterface::Install();
    auto* created = new EngineObject();
    const HRESULT outcome = created->QueryInterface(id, object);
    created->Release();
    return outcome;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT ClassFactory::LockServer(BOOL lock) {
  if (lock) {
    Module::AddUse();
  } else {
    Module::DropUse();
  }
  return S_OK;
}

}  // namespace orv::com
