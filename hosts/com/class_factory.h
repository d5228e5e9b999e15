// The class object that creates engines.
#pragma once

#include "com/windows_headers.h"

namespace orv::com {

/// One a process, never destroyed; its references are not counted, locks on it are.
class ClassFactory final : public IClassFactory {
 public:
  static ClassFactory& Instance();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;
};

}  // namespace orv::com
