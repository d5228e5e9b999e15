#include "com/script_object.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "com/bstr.h"
#include "com/variant_value.h"

namespace orv::com {
namespace {

constexpr const wchar_t* kValue = L"value";
constexpr const wchar_t* kLength = L"length";
// A script can give an array any length without an element; the texts of it are all made.
constexpr std::int64_t kGreatestArray = 2'000'000;

HRESULT FindProperty(IDispatch* object, const std::wstring& name, DISPID& number) {
  auto* text = const_cast<wchar_t*>(name.c_str());
  return object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_INVARIANT, &number);
}

HRESULT Get(IDispatch* object, DISPID number, VARIANT& value) {
  DISPPARAMS none = {};
  return object->Invoke(number, IID_NULL, LOCALE_INVARIANT, DISPATCH_PROPERTYGET, &none, &value,
                        nullptr, nullptr);
}

HRESULT Get(IDispatch* object, const std::wstring& name, VARIANT& value) {
  DISPID number = DISPID_UNKNOWN;
  const HRESULT found = FindProperty(object, name, number);
  return FAILED(found) ? found : Get(object, number, value);
}

void Put(IDispatch* object, const std::wstring& name, VARIANT& value) {
  DISPID number = DISPID_UNKNOWN;
  if (FAILED(FindProperty(object, name, number))) return;
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {&value, &named, 1, 1};
  object->Invoke(number, IID_NULL, LOCALE_INVARIANT, DISPATCH_PROPERTYPUT, &parameters, nullptr,
                 nullptr, nullptr);
}

// The number of elements of a script's array, or -1 when the object is none.
std::int32_t LengthOf(IDispatch* array) {
  Variant length;
  engine::Argument number;
  if (FAILED(Get(array, kLength, *length))) return -1;
  if (FAILED(ReadValue(*length, engine::ParameterType::kInt32, number))) return -1;
  return std::get<std::int32_t>(number);
}

/// The array at a field of the outer array, or nullptr. It lives as long as `holder`.
IDispatch* Inner(IDispatch* array, std::int32_t field, Variant& holder) {
  if (FAILED(Get(array, std::to_wstring(field), *holder))) return nullptr;
  return holder->vt == VT_DISPATCH ? holder->pdispVal : nullptr;
}

std::wstring ElementText(IDispatch* inner, std::int32_t record) {
  Variant element;
  engine::Argument text;
  if (FAILED(Get(inner, std::to_wstring(record), *element))) return {};
  if (FAILED(ReadValue(*element, engine::ParameterType::kText, text))) return {};
  return std::move(std::get<std::wstring>(text));
}

}  // namespace

HRESULT ReadObject(IDispatch* object, VARIANT& value) {
  if (object == nullptr) return DISP_E_TYPEMISMATCH;
  if (SUCCEEDED(Get(object, kValue, value))) return S_OK;
  return SUCCEEDED(Get(object, DISPID_VALUE, value)) ? S_OK : DISP_E_TYPEMISMATCH;
}

void WriteObject(IDispatch* object, VARIANT& value) {
  if (object != nullptr) Put(object, kValue, value);
}

HRESULT ReadScriptArray(IDispatch* array, TextMatrix& matrix) {
  if (array == nullptr) return DISP_E_TYPEMISMATCH;
  const std::int32_t fields = LengthOf(array);
  Variant first;
  IDispatch* firstInner = fields < 1 ? nullptr : Inner(array, 0, first);
  const std::int32_t records = firstInner == nullptr ? -1 : LengthOf(firstInner);
  if (records < 0) return DISP_E_TYPEMISMATCH;
  if (std::int64_t{fields} * std::max(records, 1) > kGreatestArray) return DISP_E_OVERFLOW;
  matrix = TextMatrix({0, fields - 1}, {0, records - 1});
  for (std::int32_t field = 0; field < fields; ++field) {
    Variant holder;
    IDispatch* inner = Inner(array, field, holder);
    if (inner == nullptr) return DISP_E_TYPEMISMATCH;
    for (std::int32_t record = 0; record < records; ++record) {
      matrix.At(field, record) = ElementText(inner, record);
    }
  }
  return S_OK;
}

void WriteScriptArray(const TextMatrix& matrix, IDispatch* array) {
  for (std::int32_t field = 0; field <= matrix.fields().high; ++field) {
    Variant holder;
    IDispatch* inner = Inner(array, field, holder);
    if (inner == nullptr) continue;
    for (std::int32_t record = 0; record <= matrix.records().high; ++record) {
      Variant text;
      StoreValue(engine::Argument(matrix.At(field, record)), *text);
      Put(inner, std::to_wstring(record), *text);
    }
  }
}

}  // namespace orv::com
