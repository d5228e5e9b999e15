// The double's functions: what the documentation of the automation library says of them, for the
// types that hosts pass.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

#include "fuzz/support/automation/variant_size.h"

std::size_t ByteSize(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BSTR:
    case VT_DISPATCH:
      return 8;
    case VT_VARIANT:
      return sizeof(VARIANT);
    default:
      return 0;
  }
}

namespace {

struct Range {
  double low;
  double high;
};

std::optional<Range> RangeOf(VARTYPE type) {
  switch (type) {
    case VT_I1:
      return Range{-128, 127};
    case VT_UI1:
      return Range{0, 255};
    case VT_I2:
      return Range{-32768, 32767};
    case VT_UI2:
      return Range{0, 65535};
    case VT_I4:
    case VT_INT:
      return Range{-2147483648.0, 2147483647.0};
    case VT_UI4:
    case VT_UINT:
      return Range{0, 4294967295.0};
    case VT_I8:
      return Range{-9.2e18, 9.2e18};
    case VT_UI8:
      return Range{0, 1.8e19};
    default:
      return std::nullopt;
  }
}

template <typename Number>
double As(const VARIANT& value) {
  Number number{};
  std::memcpy(&number, &value.llVal, sizeof number);
  return static_cast<double>(number);
}

/// The number that a plain value stands for.
std::optional<double> NumberOf(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY:
      return 0;
    case VT_I1:
      return As<std::int8_t>(value);
    case VT_UI1:
      return As<std::uint8_t>(value);
    case VT_I2:
    case VT_BOOL:
      return As<std::int16_t>(value);
    case VT_UI2:
      return As<std::uint16_t>(value);
    case VT_I4:
    case VT_INT:
      return As<std::int32_t>(value);
    case VT_UI4:
    case VT_UINT:
      return As<std::uint32_t>(value);
    case VT_I8:
      return As<std::int64_t>(value);
    case VT_CY:
      return As<std::int64_t>(value) / 10000;
    case VT_UI8:
      return As<std::uint64_t>(value);
    case VT_R4:
      return As<float>(value);
    case VT_R8:
    case VT_DATE:
      return value.dblVal;
    case VT_DECIMAL:
      return static_cast<double>(value.decVal.Lo64);
    case VT_BSTR:
      break;
    default:
      return std::nullopt;
  }
  const std::wstring text =
      value.bstrVal == nullptr ? L"" : std::wstring(value.bstrVal, SysStringLen(value.bstrVal));
  wchar_t* end = nullptr;
  const double number = std::wcstod(text.c_str(), &end);
  if (text.empty() || *end != L'\0') return std::nullopt;
  return number;
}

std::optional<std::wstring> TextOf(const VARIANT& value) {
  if (value.vt == VT_BSTR) {
    return value.bstrVal == nullptr ? L""
                                    : std::wstring(value.bstrVal, SysStringLen(value.bstrVal));
  }
  if (value.vt == VT_EMPTY) return L"";
  const std::optional<double> number = NumberOf(value);
  if (!number) return std::nullopt;
  wchar_t text[64];
  std::swprintf(text, sizeof text / sizeof *text, L"%.15g", *number);
  return text;
}

HRESULT StoreNumber(double number, VARTYPE type, VARIANT& target) {
  target.vt = type;
  if (type == VT_BOOL) {
    target.boolVal = number != 0 ? VARIANT_TRUE : VARIANT_FALSE;
  } else if (type == VT_R4) {
    target.fltVal = static_cast<float>(number);
  } else if (type == VT_R8 || type == VT_DATE) {
    target.dblVal = number;
  } else if (type == VT_DECIMAL) {
    target.decVal.Lo64 = 0;
  } else if (const std::optional<Range> range = RangeOf(type)) {
    const double whole = std::nearbyint(number);
    if (!(whole >= range->low && whole <= range->high)) return DISP_E_OVERFLOW;
    if (type == VT_UI8) {
      const auto bits = static_cast<std::uint64_t>(whole);
      std::memcpy(&target.llVal, &bits, sizeof bits);
    } else {
      target.llVal = static_cast<std::int64_t>(whole);
    }
  } else {
    return DISP_E_TYPEMISMATCH;
  }
  return S_OK;
}

}  // namespace

BSTR SysAllocStringLen(const wchar_t* text, UINT length) {
  auto* block = static_cast<char*>(
      std::malloc(sizeof(std::size_t) + (std::size_t{length} + 1) * sizeof(wchar_t)));
  if (block == nullptr) return nullptr;
  const std::size_t stored = length;
  std::memcpy(block, &stored, sizeof stored);
  auto* characters = reinterpret_cast<wchar_t*>(block + sizeof stored);
  if (text != nullptr && length > 0) std::memcpy(characters, text, length * sizeof(wchar_t));
  characters[length] = L'\0';
  return characters;
}

UINT SysStringLen(BSTR text) {
  if (text == nullptr) return 0;
  std::size_t stored = 0;
  std::memcpy(&stored, reinterpret_cast<char*>(text) - sizeof stored, sizeof stored);
  return static_cast<UINT>(stored);
}

void SysFreeString(BSTR text) {
  if (text != nullptr) std::free(reinterpret_cast<char*>(text) - sizeof(std::size_t));
}

void VariantInit(VARIANT* variant) { *variant = {}; }

HRESULT VariantClear(VARIANT* variant) {
  if (variant->vt == VT_BSTR) SysFreeString(variant->bstrVal);
  if (variant->vt == VT_DISPATCH && variant->pdispVal != nullptr) variant->pdispVal->Release();
  if ((variant->vt & (VT_ARRAY | VT_BYREF)) == VT_ARRAY) SafeArrayDestroy(variant->parray);
  *variant = {};
  return S_OK;
}

HRESULT VariantCopy(VARIANT* target, const VARIANT* source) {
  VARIANT copy = *source;
  if ((copy.vt & (VT_ARRAY | VT_BYREF)) == VT_ARRAY) return E_INVALIDARG;
  if (copy.vt == VT_BSTR) {
    copy.bstrVal = SysAllocStringLen(source->bstrVal, SysStringLen(source->bstrVal));
  }
  if (copy.vt == VT_DISPATCH && copy.pdispVal != nullptr) copy.pdispVal->AddRef();
  VariantClear(target);
  *target = copy;
  return S_OK;
}

HRESULT VariantCopyInd(VARIANT* target, const VARIANT* source) {
  if ((source->vt & VT_BYREF) == 0) return VariantCopy(target, source);
  const auto type = static_cast<VARTYPE>(source->vt & ~VT_BYREF);
  if (source->byref == nullptr || (type & VT_ARRAY) != 0) return E_INVALIDARG;
  if (type == VT_VARIANT) {
    const VARIANT& behind = *source->pvarVal;
    if (behind.vt == (VT_BYREF | VT_VARIANT)) return E_INVALIDARG;
    return VariantCopyInd(target, &behind);
  }
  VARIANT plain = {};
  if (type == VT_DECIMAL) {
    plain.decVal = *source->pdecVal;
  } else if (ByteSize(type) == 0) {
    return E_INVALIDARG;
  } else {
    std::memcpy(&plain.llVal, source->byref, ByteSize(type));
  }
  plain.vt = type;
  return VariantCopy(target, &plain);
}

HRESULT VariantChangeTypeEx(VARIANT* target, const VARIANT* source, LCID, WORD, VARTYPE type) {
  VARIANT plain = {};
  const HRESULT taken = VariantCopyInd(&plain, source);
  if (FAILED(taken)) return taken;
  VARIANT changed = {};
  HRESULT outcome = DISP_E_TYPEMISMATCH;
  if (type == VT_BSTR) {
    if (const auto text = TextOf(plain)) {
      changed.bstrVal = SysAllocStringLen(text->data(), static_cast<UINT>(text->size()));
      changed.vt = VT_BSTR;
      outcome = S_OK;
    }
  } else if (const auto number = NumberOf(plain)) {
    outcome = StoreNumber(*number, type, changed);
  }
  VariantClear(&plain);
  if (FAILED(outcome)) return outcome;
  VariantClear(target);
  *target = changed;
  return S_OK;
}

int VariantTimeToSystemTime(DATE date, SYSTEMTIME* parts) {
  constexpr double kLowest = -657434;
  constexpr double kHighest = 2958465;
  if (!(date >= kLowest && date <= kHighest)) return 0;
  *parts = {};
  parts->wYear = 1900;
  parts->wMonth = 1;
  parts->wDay = 1;
  parts->wHour = static_cast<WORD>(std::fabs(date - std::trunc(date)) * 24);
  return 1;
}

struct SAFEARRAY {
  VARTYPE type = VT_EMPTY;
  std::vector<SAFEARRAYBOUND> bounds;
  std::vector<char> data;
  int locks = 0;
};

SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
  auto* array = new SAFEARRAY;
  array->type = type;
  array->bounds.assign(bounds, bounds + dimensions);
  std::size_t elements = 1;
  for (const SAFEARRAYBOUND& bound : array->bounds) elements *= bound.cElements;
  array->data.resize(elements * ByteSize(type));
  return array;
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) {
  if (array == nullptr) return S_OK;
  if (array->locks != 0) std::abort();
  if (array->type == VT_BSTR) {
    auto* texts = reinterpret_cast<BSTR*>(array->data.data());
    for (std::size_t i = 0; i < array->data.size() / sizeof(BSTR); ++i) SysFreeString(texts[i]);
  }
  if (array->type == VT_VARIANT) {
    auto* variants = reinterpret_cast<VARIANT*>(array->data.data());
    for (std::size_t i = 0; i < array->data.size() / sizeof(VARIANT); ++i) {
      VariantClear(&variants[i]);
    }
  }
  delete array;
  return S_OK;
}

UINT SafeArrayGetDim(SAFEARRAY* array) { return static_cast<UINT>(array->bounds.size()); }

HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type) {
  *type = array->type;
  return S_OK;
}

HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
  *bound = array->bounds[dimension - 1].lLbound;
  return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
  const SAFEARRAYBOUND& own = array->bounds[dimension - 1];
  *bound = static_cast<LONG>(std::int64_t{own.lLbound} + own.cElements - 1);
  return S_OK;
}

HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data) {
  ++array->locks;
  *data = array->data.data();
  return S_OK;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array) {
  --array->locks;
  return S_OK;
}
