// The automation object: a handle on the engine with the interfaces of a COM object.
#pragma once

#include "orv/engine.h"

#include "com/early_call.h"
#include "com/module.h"
#include "com/orv_engine_idl.h"
#include "com/windows_headers.h"

namespace orv::com {

/// Every object of a process is a handle on the same engine. Lives until its last reference is
/// released, and keeps the DLL loaded.
class EngineObject final : public IEngine {
 public:
  EngineObject() { Module::AddUse(); }
  EngineObject(const EngineObject&) = delete;
  EngineObject& operator=(const EngineObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* numbers) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID number, REFIID id, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) override;

  // The compiler holds each of these against the interface on one side and the member function on
  // the other.
  HRESULT STDMETHODCALLTYPE UnloadServer() override {
    return EarlyCall<&Engine::UnloadServer>::Run(engine_);
  }
  HRESULT STDMETHODCALLTYPE SortData(BSTR* Pth, short* f) override {
    return EarlyCall<&Engine::SortData>::Run(engine_, Pth, f);
  }
  HRESULT STDMETHODCALLTYPE dBASEFldSize(BSTR* Pth, short* f, VARIANT* result) override {
    return EarlyCall<&Engine::dBASEFldSize>::Run(engine_, Pth, f, result);
  }
  HRESULT STDMETHODCALLTYPE IsORVorDBF(BSTR* Pth, short* result) override {
    return EarlyCall<&Engine::IsORVorDBF>::Run(engine_, Pth, result);
  }
  HRESULT STDMETHODCALLTYPE InsFirstLvlMtx(BSTR* Pth) override {
    return EarlyCall<&Engine::InsFirstLvlMtx>::Run(engine_, Pth);
  }
  HRESULT STDMETHODCALLTYPE GetTitle(BSTR* Pth, BSTR* result) override {
    return EarlyCall<&Engine::GetTitle>::Run(engine_, Pth, result);
  }
  HRESULT STDMETHODCALLTYPE SaveMtxAs(BSTR* Pth, BSTR* file, VARIANT_BOOL* WithProp,
                                      short* FileType) override {
    return EarlyCall<&Engine::SaveMtxAs>::Run(engine_, Pth, file, WithProp, FileType);
  }
  HRESULT STDMETHODCALLTYPE PutMatrix(BSTR* Pth, long* r, short* f, BSTR* MtxName) override {
    return EarlyCall<&Engine::PutMatrix>::Run(engine_, Pth, r, f, MtxName);
  }
  HRESULT STDMETHODCALLTYPE Records(BSTR* p, long* result) override {
    return EarlyCall<&Engine::Records>::Run(engine_, p, result);
  }
  HRESULT STDMETHODCALLTYPE Fields(BSTR* p, long* result) override {
    return EarlyCall<&Engine::Fields>::Run(engine_, p, result);
  }
  HRESULT STDMETHODCALLTYPE SetCellValue(BSTR* v, BSTR* p, long* Rec, short* Fld) override {
    return EarlyCall<&Engine::SetCellValue>::Run(engine_, v, p, Rec, Fld);
  }
  HRESULT STDMETHODCALLTYPE Cmd(BSTR* a, short* Tp, BSTR* result) override {
    return EarlyCall<&Engine::Cmd>::Run(engine_, a, Tp, result);
  }
  HRESULT STDMETHODCALLTYPE CmdAddRecord(BSTR* Pth, long* Number, long* row) override {
    return EarlyCall<&Engine::CmdAddRecord>::Run(engine_, Pth, Number, row);
  }
  HRESULT STDMETHODCALLTYPE GetCellValue(BSTR* p, long* Rec, short* Fld, VARIANT_BOOL* isMtx,
                                         VARIANT_BOOL* Frml, BSTR* result) override {
    return EarlyCall<&Engine::GetCellValue>::Run(engine_, p, Rec, Fld, isMtx, Frml, result);
  }
  HRESULT STDMETHODCALLTYPE MtxFindFirst(BSTR* Pth, long* Rec, short* Fld, BSTR* Vlu, short* Region,
                                         VARIANT_BOOL* inCell, short* Direct,
                                         VARIANT_BOOL* Register, long* result) override {
    return EarlyCall<&Engine::MtxFindFirst>::Run(engine_, Pth, Rec, Fld, Vlu, Region, inCell,
                                                 Direct, Register, result);
  }
  HRESULT STDMETHODCALLTYPE MtxFindMin(BSTR* Pth, short* Col, long* result) override {
    return EarlyCall<&Engine::MtxFindMin>::Run(engine_, Pth, Col, result);
  }
  HRESULT STDMETHODCALLTYPE MtxFindMax(BSTR* Pth, short* Col, long* result) override {
    return EarlyCall<&Engine::MtxFindMax>::Run(engine_, Pth, Col, result);
  }
  HRESULT STDMETHODCALLTYPE SetTypeValue(BSTR* Pth, long* r, short* f, BSTR* Prop,
                                         BSTR* Vlu) override {
    return EarlyCall<&Engine::SetTypeValue>::Run(engine_, Pth, r, f, Prop, Vlu);
  }
  HRESULT STDMETHODCALLTYPE GetTypeValue(BSTR* Pth, long* r, short* f, BSTR* Prop,
                                         VARIANT_BOOL* Frml, BSTR* result) override {
    return EarlyCall<&Engine::GetTypeValue>::Run(engine_, Pth, r, f, Prop, Frml, result);
  }
  HRESULT STDMETHODCALLTYPE ReBit(BSTR* Pth, long* r, short* f, short* b,
                                  VARIANT* result) override {
    return EarlyCall<&Engine::ReBit>::Run(engine_, Pth, r, f, b, result);
  }
  HRESULT STDMETHODCALLTYPE CmdNewOrvDB(BSTR* file, BSTR* MtxName) override {
    return EarlyCall<&Engine::CmdNewOrvDB>::Run(engine_, file, MtxName);
  }
  HRESULT STDMETHODCALLTYPE SetFldStyle(BSTR* p, short* f, short* FreeSize, short* cellsize,
                                        VARIANT_BOOL* FixedType, VARIANT_BOOL* Unique,
                                        short* DataType) override {
    return EarlyCall<&Engine::SetFldStyle>::Run(engine_, p, f, FreeSize, cellsize, FixedType,
                                                Unique, DataType);
  }
  HRESULT STDMETHODCALLTYPE GetFldStyle(BSTR* p, short* f, short* FreeSize, short* cellsize,
                                        VARIANT_BOOL* FixedType, VARIANT_BOOL* Unique,
                                        short* DataType) override {
    return EarlyCall<&Engine::GetFldStyle>::Run(engine_, p, f, FreeSize, cellsize, FixedType,
                                                Unique, DataType);
  }
  HRESULT STDMETHODCALLTYPE CmdAddFld(BSTR* Pth, short* NumOfFields, short* f) override {
    return EarlyCall<&Engine::CmdAddFld>::Run(engine_, Pth, NumOfFields, f);
  }
  HRESULT STDMETHODCALLTYPE CmdDelFld(BSTR* Pth, short* f) override {
    return EarlyCall<&Engine::CmdDelFld>::Run(engine_, Pth, f);
  }
  HRESULT STDMETHODCALLTYPE ExecCmd(BSTR* a, BSTR* Mtx, long* Rec, short* Fld,
                                    VARIANT* result) override {
    return EarlyCall<&Engine::ExecCmd>::Run(engine_, a, Mtx, Rec, Fld, result);
  }
  HRESULT STDMETHODCALLTYPE GetID(BSTR* Pth, long* r, short* f, short* result) override {
    return EarlyCall<&Engine::GetID>::Run(engine_, Pth, r, f, result);
  }
  HRESULT STDMETHODCALLTYPE GetCellDataType(BSTR* Pth, long* r, short* f, short* result) override {
    return EarlyCall<&Engine::GetCellDataType>::Run(engine_, Pth, r, f, result);
  }
  HRESULT STDMETHODCALLTYPE SetTitle(BSTR* Vlu, BSTR* Pth) override {
    return EarlyCall<&Engine::SetTitle>::Run(engine_, Vlu, Pth);
  }
  HRESULT STDMETHODCALLTYPE CopyCell(BSTR* Mtx, long* r1, short* f1, BSTR* toMtx, long* r2,
                                     short* f2, VARIANT_BOOL* WhatToCopy,
                                     VARIANT_BOOL* WithNested) override {
    return EarlyCall<&Engine::CopyCell>::Run(engine_, Mtx, r1, f1, toMtx, r2, f2, WhatToCopy,
                                             WithNested);
  }
  HRESULT STDMETHODCALLTYPE ValueMatrix(SAFEARRAY** m, BSTR* Pth, long* r1, long* r2,
                                        VARIANT_BOOL* Frml) override {
    return EarlyCall<&Engine::ValueMatrix>::Run(engine_, m, Pth, r1, r2, Frml);
  }
  HRESULT STDMETHODCALLTYPE ErrorCode(VARIANT* result) override {
    return EarlyCall<&Engine::ErrorCode>::Run(engine_, result);
  }
  HRESULT STDMETHODCALLTYPE CloseAll() override {
    return EarlyCall<&Engine::CloseAll>::Run(engine_);
  }
  HRESULT STDMETHODCALLTYPE gt() override { return EarlyCall<&Engine::gt>::Run(engine_); }

 private:
  ~EngineObject() { Module::DropUse(); }

  volatile LONG references_ = 1;
  Engine engine_;
};

}  // namespace orv::com
