#include "com/variant_value.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <type_traits>
#include <utility>

#include "com/bstr.h"

namespace orv::com {
namespace {

using engine::Argument;
using engine::ParameterType;

HRESULT ChangeType(VARIANT& target, const VARIANT& source, VARTYPE type) {
  return VariantChangeTypeEx(&target, const_cast<VARIANT*>(&source), LOCALE_INVARIANT, 0, type);
}

// Only the value was wrong, or only its size: nothing else may reach a host as the reason.
HRESULT Reason(HRESULT failure) {
  return failure == DISP_E_OVERFLOW ? DISP_E_OVERFLOW : DISP_E_TYPEMISMATCH;
}

// A date without a time of day is a date only, a time on day 0 a time only.
HRESULT DateText(DATE date, std::wstring& text) {
  SYSTEMTIME parts = {};
  if (!VariantTimeToSystemTime(date, &parts)) return DISP_E_TYPEMISMATCH;
  const bool hasDay = std::trunc(date) != 0;
  const bool hasTime = parts.wHour != 0 || parts.wMinute != 0 || parts.wSecond != 0;
  std::array<wchar_t, 32> part{};
  if (hasDay || !hasTime) {
    std::swprintf(part.data(), part.size(), L"%02u.%02u.%04u", parts.wDay, parts.wMonth,
                  parts.wYear);
    text = part.data();
  }
  if (hasTime) {
    std::swprintf(part.data(), part.size(), L"%02u:%02u:%02u", parts.wHour, parts.wMinute,
                  parts.wSecond);
    text += (text.empty() ? L"" : L" ") + std::wstring(part.data());
  }
  return S_OK;
}

HRESULT ReadText(const VARIANT& value, std::wstring& text) {
  if (value.vt == VT_BSTR) {
    text = TextOf(value.bstrVal);
    return S_OK;
  }
  if (value.vt == VT_BOOL) {
    text = value.boolVal != VARIANT_FALSE ? L"true" : L"false";
    return S_OK;
  }
  if (value.vt == VT_DATE) return DateText(value.date, text);
  Variant converted;
  const HRESULT outcome = ChangeType(*converted, value, VT_BSTR);
  if (FAILED(outcome)) return Reason(outcome);
  text = TextOf(converted->bstrVal);
  return S_OK;
}

HRESULT ReadInt16(const VARIANT& value, Argument& argument) {
  Variant converted;
  const HRESULT outcome = ChangeType(*converted, value, VT_I2);
  if (FAILED(outcome)) return Reason(outcome);
  argument = std::int16_t{converted->iVal};
  return S_OK;
}

HRESULT ReadInt32(const VARIANT& value, Argument& argument) {
  Variant converted;
  const HRESULT outcome = ChangeType(*converted, value, VT_I4);
  if (FAILED(outcome)) return Reason(outcome);
  argument = static_cast<std::int32_t>(converted->lVal);
  return S_OK;
}

HRESULT ReadBoolean(const VARIANT& value, Argument& argument) {
  Variant converted;
  const HRESULT outcome = ChangeType(*converted, value, VT_BOOL);
  if (FAILED(outcome)) return Reason(outcome);
  argument = static_cast<Boolean>(converted->boolVal);
  return S_OK;
}

void Store(std::monostate, VARIANT& target) { target.vt = VT_EMPTY; }

void Store(const std::wstring& text, VARIANT& target) {
  target.bstrVal = NewBstr(text);
  target.vt = VT_BSTR;
}

void Store(std::int16_t number, VARIANT& target) {
  target.vt = VT_I2;
  target.iVal = number;
}

void Store(std::int32_t number, VARIANT& target) {
  target.vt = VT_I4;
  target.lVal = number;
}

void Store(Boolean boolean, VARIANT& target) {
  target.vt = VT_BOOL;
  target.boolVal = static_cast<VARIANT_BOOL>(boolean);
}

void Store(const Value& value, VARIANT& target) { StoreValue(value, target); }

// Arrays go back element by element, never as a value.
void Store(const TextMatrix&, VARIANT& target) { target.vt = VT_EMPTY; }

std::size_t SizeOfType(VARTYPE type) {
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
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    default:
      return 0;
  }
}

}  // namespace

HRESULT ReadValue(const VARIANT& value, ParameterType type, Argument& argument) {
  switch (type) {
    case ParameterType::kText: {
      std::wstring text;
      const HRESULT outcome = ReadText(value, text);
      if (SUCCEEDED(outcome)) argument = std::move(text);
      return outcome;
    }
    case ParameterType::kInt16:
      return ReadInt16(value, argument);
    case ParameterType::kInt32:
      return ReadInt32(value, argument);
    case ParameterType::kBoolean:
      return ReadBoolean(value, argument);
    case ParameterType::kTextMatrix:
      break;
  }
  return DISP_E_TYPEMISMATCH;
}

void StoreValue(const Argument& argument, VARIANT& target) {
  std::visit([&target](const auto& content) { Store(content, target); }, argument);
}

void StoreValue(const engine::Result& result, VARIANT& target) {
  std::visit([&target](const auto& content) { Store(content, target); }, result);
}

void StoreValue(const Value& value, VARIANT& target) {
  if (const std::int16_t* number = value.Int16()) {
    Store(*number, target);
  } else if (const std::int32_t* longNumber = value.Int32()) {
    Store(*longNumber, target);
  } else if (const std::wstring* text = value.Text()) {
    Store(*text, target);
  } else {
    target.vt = VT_EMPTY;
  }
}

void StoreThroughReference(const Argument& argument, VARIANT& reference) {
  const auto type = static_cast<VARTYPE>(reference.vt & VT_TYPEMASK);
  Variant natural;
  Variant converted;
  StoreValue(argument, *natural);
  if (FAILED(ChangeType(*converted, *natural, type))) return;
  if (type == VT_BSTR) {
    std::swap(*reference.pbstrVal, converted->bstrVal);
  } else if (type == VT_DECIMAL) {
    *reference.pdecVal = converted->decVal;
  } else {
    std::memcpy(reference.byref, &converted->llVal, SizeOfType(type));
  }
}

}  // namespace orv::com
