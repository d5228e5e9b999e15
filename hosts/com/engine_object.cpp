#include "com/engine_object.h"

#include "com/late_call.h"

namespace orv::com {

HRESULT EngineObject::QueryInterface(REFIID id, void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (id != IID_IUnknown && id != IID_IDispatch && id != IID_IEngine) return E_NOINTERFACE;
  *object = static_cast<IEngine*>(this);
  AddRef();
  return S_OK;
}

ULONG EngineObject::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&references_)); }

ULONG EngineObject::Release() {
  const LONG left = InterlockedDecrement(&references_);
  if (left == 0) delete this;
  return static_cast<ULONG>(left);
}

HRESULT EngineObject::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT EngineObject::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  ITypeLib* library = nullptr;
  const HRESULT loaded = LoadTypeLibEx(Module::FileName().c_str(), REGKIND_NONE, &library);
  if (FAILED(loaded)) return loaded;
  const HRESULT found = library->GetTypeInfoOfGuid(IID_IEngine, info);
  library->Release();
  return found;
}

HRESULT EngineObject::GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID, DISPID* numbers) {
  if (id != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr || numbers == nullptr) return E_POINTER;
  return FindNumbers(names, count, numbers);
}

HRESULT EngineObject::Invoke(DISPID number, REFIID id, LCID, WORD flags, DISPPARAMS* parameters,
                             VARIANT* result, EXCEPINFO*, UINT* badArgument) {
  if (id != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (parameters == nullptr) return E_POINTER;
  try {
    return CallLate(engine_, number, flags, *parameters, result, badArgument);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace orv::com
