#include "com/host_argument.h"

#include "com/bstr.h"
#include "com/script_object.h"
#include "com/text_array.h"
#include "com/variant_value.h"

namespace orv::com {
namespace {

using engine::Argument;
using engine::ParameterType;

constexpr VARTYPE kVariantReference = VT_BYREF | VT_VARIANT;

Argument DefaultOf(ParameterType type) {
  switch (type) {
    case ParameterType::kText:
      return std::wstring();
    case ParameterType::kInt16:
      return std::int16_t{0};
    case ParameterType::kInt32:
      return std::int32_t{0};
    case ParameterType::kBoolean:
      return Boolean::kFalse;
    case ParameterType::kTextMatrix:
      break;
  }
  return TextMatrix();
}

// Arrays are compared element by element when they are written.
bool IsSame(const Argument& before, const Argument& after) {
  return before.index() == after.index() &&
         std::visit(
             [&after]<typename Content>(const Content& content) {
               if constexpr (std::is_same_v<Content, TextMatrix>) {
                 return false;
               } else {
                 return content == std::get<Content>(after);
               }
             },
             before);
}

}  // namespace

HostArgument::HostArgument(VARIANT* place) : place_(place) {
  // A variable of a script is a VARIANT behind a reference, sometimes behind two.
  while (place_ != nullptr && place_->vt == kVariantReference) {
    place_ = place_->pvarVal;
    isVariable_ = true;
  }
}

SAFEARRAY* HostArgument::Array() const {
  if ((place_->vt & VT_ARRAY) == 0) return nullptr;
  return (place_->vt & VT_BYREF) != 0 ? *place_->pparray : place_->parray;
}

IDispatch* HostArgument::Object() const {
  if (place_->vt == VT_DISPATCH) return place_->pdispVal;
  return place_->vt == (VT_BYREF | VT_DISPATCH) ? *place_->ppdispVal : nullptr;
}

HRESULT HostArgument::Read(ParameterType type) {
  content_ = DefaultOf(type);
  if (place_ == nullptr) return S_OK;
  return type == ParameterType::kTextMatrix ? ReadTexts() : ReadPlain(type);
}

HRESULT HostArgument::ReadTexts() {
  TextMatrix& matrix = std::get<TextMatrix>(content_);
  if (SAFEARRAY* array = Array()) return ReadTextArray(array, matrix);
  return ReadScriptArray(Object(), matrix);
}

HRESULT HostArgument::ReadPlain(ParameterType type) {
  if ((place_->vt & VT_ARRAY) != 0) return DISP_E_TYPEMISMATCH;
  Variant plain;
  IDispatch* object = Object();
  const HRESULT taken =
      object != nullptr ? ReadObject(object, *plain) : VariantCopyInd(plain.get(), place_);
  if (FAILED(taken)) return DISP_E_TYPEMISMATCH;
  wasEmpty_ = plain->vt == VT_EMPTY || (object != nullptr && plain->vt == VT_NULL);
  return wasEmpty_ ? S_OK : ReadValue(*plain, type, content_);
}

void HostArgument::WriteBack(const Argument& after) const {
  if (place_ == nullptr) return;
  if (const auto* matrix = std::get_if<TextMatrix>(&after)) {
    WriteTexts(*matrix);
    return;
  }
  if (IsSame(content_, after) && !wasEmpty_) return;
  if (IDispatch* object = Object()) {
    Variant fresh;
    StoreValue(after, *fresh);
    WriteObject(object, *fresh);
  } else if ((place_->vt & VT_BYREF) != 0) {
    StoreThroughReference(after, *place_);
  } else if (isVariable_) {
    Variant fresh;
    StoreValue(after, *fresh);
    VariantCopy(place_, fresh.get());
  }
}

void HostArgument::WriteTexts(const TextMatrix& after) const {
  if (SAFEARRAY* array = Array()) {
    WriteTextArray(after, array);
  } else if (IDispatch* object = Object()) {
    WriteScriptArray(after, object);
  }
}

}  // namespace orv::com
