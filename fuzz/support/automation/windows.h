// A double of the part of the automation library that argument conversion uses, so that the
// automation server's conversion code can be built and fuzzed on this system. Characters are this
// system's wide ones; everything else has the width that it has on Windows.
#pragma once

#include <cstddef>
#include <cstdint>

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using UINT = std::uint32_t;
using ULONG = std::uint32_t;
using LONG = std::int32_t;
using HRESULT = std::int32_t;
using LCID = std::uint32_t;
using SCODE = std::int32_t;
using DISPID = std::int32_t;
using VARTYPE = std::uint16_t;
using VARIANT_BOOL = std::int16_t;
using DATE = double;
using BSTR = wchar_t*;
using LPOLESTR = wchar_t*;

constexpr HRESULT Failure(std::uint32_t code) { return static_cast<HRESULT>(code); }
constexpr bool FAILED(HRESULT outcome) { return outcome < 0; }
constexpr bool SUCCEEDED(HRESULT outcome) { return outcome >= 0; }

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT E_INVALIDARG = Failure(0x80070057);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = Failure(0x80020003);
inline constexpr HRESULT DISP_E_PARAMNOTFOUND = Failure(0x80020004);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = Failure(0x80020005);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = Failure(0x80020006);
inline constexpr HRESULT DISP_E_OVERFLOW = Failure(0x8002000A);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = Failure(0x8002000E);
inline constexpr HRESULT DISP_E_PARAMNOTOPTIONAL = Failure(0x8002000F);

inline constexpr DISPID DISPID_VALUE = 0;
inline constexpr DISPID DISPID_UNKNOWN = -1;
inline constexpr DISPID DISPID_PROPERTYPUT = -3;
inline constexpr WORD DISPATCH_METHOD = 1;
inline constexpr WORD DISPATCH_PROPERTYGET = 2;
inline constexpr WORD DISPATCH_PROPERTYPUT = 4;
inline constexpr LCID LOCALE_INVARIANT = 0x7F;
inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

enum : VARTYPE {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_UNKNOWN = 13,
  VT_DECIMAL = 14,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23,
  VT_ARRAY = 0x2000,
  VT_BYREF = 0x4000,
  VT_TYPEMASK = 0xFFF,
};

struct GUID {
  std::uint64_t halves[2];
};
using REFIID = const GUID&;
inline constexpr GUID IID_NULL = {{0, 0}};

struct VARIANT;
struct SAFEARRAY;

struct DISPPARAMS {
  VARIANT* rgvarg;
  DISPID* rgdispidNamedArgs;
  UINT cArgs;
  UINT cNamedArgs;
};

struct IDispatch {
  virtual ~IDispatch() = default;
  virtual ULONG AddRef() = 0;
  virtual ULONG Release() = 0;
  virtual HRESULT GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* numbers) = 0;
  virtual HRESULT Invoke(DISPID number, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                         VARIANT* result, void* exception, UINT* badArgument) = 0;
};

struct DECIMAL {
  WORD wReserved;  ///< the type of the VARIANT around it
  BYTE scale;
  BYTE sign;
  std::uint32_t Hi32;
  std::uint64_t Lo64;
};

struct VARIANT {
  union {
    struct {
      VARTYPE vt;
      WORD reserved[3];
      union {
        std::int64_t llVal;
        std::int32_t lVal;
        std::int16_t iVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        float fltVal;
        double dblVal;
        DATE date;
        BSTR bstrVal;
        IDispatch* pdispVal;
        SAFEARRAY* parray;
        void* byref;
        BSTR* pbstrVal;
        IDispatch** ppdispVal;
        SAFEARRAY** pparray;
        VARIANT* pvarVal;
        DECIMAL* pdecVal;
        void* record[2];
      };
    };
    DECIMAL decVal;
  };
};
static_assert(sizeof(DECIMAL) == 16 && sizeof(VARIANT) == 24);

struct SYSTEMTIME {
  WORD wYear, wMonth, wDayOfWeek, wDay, wHour, wMinute, wSecond, wMilliseconds;
};

BSTR SysAllocStringLen(const wchar_t* text, UINT length);
UINT SysStringLen(BSTR text);
void SysFreeString(BSTR text);

void VariantInit(VARIANT* variant);
HRESULT VariantClear(VARIANT* variant);
HRESULT VariantCopy(VARIANT* target, const VARIANT* source);
HRESULT VariantCopyInd(VARIANT* target, const VARIANT* source);
HRESULT VariantChangeTypeEx(VARIANT* target, const VARIANT* source, LCID, WORD flags, VARTYPE type);
int VariantTimeToSystemTime(DATE date, SYSTEMTIME* parts);

struct SAFEARRAYBOUND {
  ULONG cElements;
  LONG lLbound;
};
SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds);
HRESULT SafeArrayDestroy(SAFEARRAY* array);
UINT SafeArrayGetDim(SAFEARRAY* array);
HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type);
HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound);
HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound);
HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data);
HRESULT SafeArrayUnaccessData(SAFEARRAY* array);
