// Any arguments of a late-bound call to the automation server, over a double of the automation
// library: values and references of all types, arrays, script objects, by position and by name.
#include <array>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "com/late_call.h"
#include "fuzz/support/automation/variant_size.h"
#include "fuzz/support/entry.h"
#include "fuzz/support/input.h"
#include "fuzz/support/sample_file.h"

namespace orv::fuzz {
namespace {

constexpr int kGreatestDepth = 3;

/// An object of a script: a property `value`, a length and numbered elements.
class ScriptObject final : public IDispatch {
 public:
  ScriptObject() = default;
  ScriptObject(const ScriptObject&) = delete;
  ScriptObject& operator=(const ScriptObject&) = delete;
  ~ScriptObject() override {
    VariantClear(&value);
    VariantClear(&length);
    for (VARIANT& element : elements) VariantClear(&element);
  }

  ULONG AddRef() override { return ++references_; }
  ULONG Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* numbers) override {
    if (count != 1) std::abort();
    const std::wstring name = *names;
    if (name == L"value" && hasValue) {
      *numbers = kValue;
    } else if (name == L"length") {
      *numbers = kLength;
    } else if (!name.empty() && name.find_first_not_of(L"0123456789") == std::wstring::npos) {
      *numbers = kFirstElement + static_cast<DISPID>(std::wcstol(name.c_str(), nullptr, 10) % 64);
    } else {
      return DISP_E_UNKNOWNNAME;
    }
    return S_OK;
  }

  HRESULT Invoke(DISPID number, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                 void*, UINT*) override {
    VARIANT* place = Place(number);
    if (place == nullptr) return DISP_E_MEMBERNOTFOUND;
    if (flags == DISPATCH_PROPERTYPUT) return VariantCopyInd(place, parameters->rgvarg);
    return VariantCopy(result, place);
  }

  bool hasValue = true;
  VARIANT value = {};
  VARIANT length = {};
  std::vector<VARIANT> elements;

 private:
  static constexpr DISPID kValue = 1;
  static constexpr DISPID kLength = 2;
  static constexpr DISPID kFirstElement = 100;

  VARIANT* Place(DISPID number) {
    if (number == kValue || number == DISPID_VALUE) return &value;
    if (number == kLength) return &length;
    const auto index = static_cast<std::size_t>(number - kFirstElement);
    return index < elements.size() ? &elements[index] : nullptr;
  }

  ULONG references_ = 1;
};

/// Makes the arguments of one call and owns what their references lead to.
class Host {
 public:
  explicit Host(Input& input) : input_(input) {}
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;
  ~Host() {
    for (VARIANT& variant : variants_) VariantClear(&variant);
    for (auto& [type, bytes] : variables_) {
      VARIANT owned = {};
      owned.vt = type;
      if (type != VT_BSTR && type != VT_DISPATCH && (type & VT_ARRAY) == 0) continue;
      std::memcpy(&owned.llVal, bytes.get(), sizeof(void*));
      VariantClear(&owned);
    }
  }

  VARIANT Argument() { return Any(0); }

 private:
  VARIANT Any(int depth) {
    VARIANT variant = {};
    switch (input_.Byte() % 16) {
      case 0:
        break;
      case 1:
        variant.vt = VT_NULL;
        break;
      case 2:
        variant.vt = VT_ERROR;
        variant.scode = DISP_E_PARAMNOTFOUND;
        break;
      case 3:
      case 4:
        variant = Text(L"\"sample.orv\"");
        break;
      case 5:
        variant = Text(platform::ToWide(input_.Bytes(input_.Byte() % 32)));
        break;
      case 6:
        variant.vt = VT_I2;
        variant.iVal = static_cast<std::int16_t>(input_.Word());
        break;
      case 7:
        variant.vt = VT_I4;
        variant.lVal = static_cast<std::int8_t>(input_.Byte());
        break;
      case 8:
        variant = Number();
        break;
      case 9:
        variant.vt = VT_DATE;
        variant.date = input_.Long() / 1000.0;
        break;
      case 10:
        if (depth < kGreatestDepth) variant = Object(depth + 1);
        break;
      case 11:
        variant.vt = static_cast<VARTYPE>(VT_ARRAY);
        variant.parray = Array(depth, variant.vt);
        break;
      case 12:
        if (depth == 0) variant = ReferenceToArray();
        break;
      case 13:
        if (depth < kGreatestDepth) variant = ReferenceToVariant(depth + 1);
        break;
      default:
        if (depth < kGreatestDepth) variant = Reference(depth);
    }
    return variant;
  }

  static VARIANT Text(const std::wstring& text) {
    VARIANT variant = {};
    variant.vt = VT_BSTR;
    variant.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return variant;
  }

  VARIANT Number() {
    constexpr std::array<VARTYPE, 12> kTypes = {VT_I1,  VT_UI1, VT_UI2, VT_UI4,  VT_I8, VT_UI8,
                                                VT_INT, VT_CY,  VT_R4,  VT_UINT, VT_R8, VT_BOOL};
    VARIANT variant = {};
    variant.vt = kTypes[input_.Byte() % kTypes.size()];
    if (variant.vt == VT_R8) {
      variant.dblVal = input_.Long() * 1000.5;
    } else {
      variant.llVal = std::int64_t{input_.Long()} << (input_.Byte() % 33);
    }
    return variant;
  }

  VARIANT Object(int depth) {
    auto* object = new ScriptObject;
    object->hasValue = input_.Byte() % 4 != 0;
    object->value = Plain(depth);
    object->length = Plain(depth);
    for (int n = input_.Byte() % 4; n > 0; --n) object->elements.push_back(Plain(depth));
    VARIANT variant = {};
    variant.vt = VT_DISPATCH;
    variant.pdispVal = object;
    return variant;
  }

  /// A value that owns all it has: no reference and no array, which nobody could copy.
  VARIANT Plain(int depth) {
    VARIANT variant = Any(depth);
    if ((variant.vt & (VT_BYREF | VT_ARRAY)) != 0) VariantClear(&variant);
    return variant;
  }

  SAFEARRAY* Array(int depth, VARTYPE& type) {
    const VARTYPE element = input_.Byte() % 2 == 0 ? VT_BSTR : VT_VARIANT;
    const UINT dimensions = input_.Byte() % 4 == 0 ? 1 : 2;
    std::array<SAFEARRAYBOUND, 2> bounds = {};
    std::size_t elements = 1;
    for (UINT i = 0; i < dimensions; ++i) {
      bounds[i] = {input_.Byte() % 4U, input_.Byte() % 8 == 0 ? INT32_MAX - 3 : input_.Byte() % 3};
      elements *= bounds[i].cElements;
    }
    type = static_cast<VARTYPE>(type | element);
    SAFEARRAY* array = SafeArrayCreate(element, dimensions, bounds.data());
    void* data = nullptr;
    SafeArrayAccessData(array, &data);
    for (std::size_t i = 0; i < elements; ++i) {
      if (element == VT_BSTR) {
        static_cast<BSTR*>(data)[i] =
            input_.Byte() % 2 == 0 ? nullptr : SysAllocStringLen(L"element", 7);
      } else {
        static_cast<VARIANT*>(data)[i] = depth < kGreatestDepth ? Plain(depth + 1) : VARIANT{};
      }
    }
    SafeArrayUnaccessData(array);
    return array;
  }

  VARIANT ReferenceToArray() {
    VARTYPE type = VT_ARRAY;
    SAFEARRAY* array = input_.Byte() % 8 == 0 ? nullptr : Array(0, type);
    VARIANT variant = {};
    variant.vt = static_cast<VARTYPE>(type | VT_BYREF);
    variant.byref = Variable(type, &array, sizeof array);
    return variant;
  }

  VARIANT ReferenceToVariant(int depth) {
    variants_.push_back(Any(depth));
    VARIANT variant = {};
    variant.vt = VT_BYREF | VT_VARIANT;
    variant.pvarVal = &variants_.back();
    return variant;
  }

  /// A reference to a variable that has exactly the size of its type.
  VARIANT Reference(int depth) {
    VARIANT content = Plain(depth + 1);
    VARIANT variant = {};
    variant.vt = static_cast<VARTYPE>(content.vt | VT_BYREF);
    const std::size_t size = ByteSize(content.vt);
    if (size != 0) variant.byref = Variable(content.vt, &content.llVal, size);
    return variant;
  }

  void* Variable(VARTYPE type, const void* content, std::size_t size) {
    auto bytes = std::make_unique<char[]>(size);
    std::memcpy(bytes.get(), content, size);
    variables_.emplace_back(type, std::move(bytes));
    return variables_.back().second.get();
  }

  Input& input_;
  std::deque<VARIANT> variants_;
  std::deque<std::pair<VARTYPE, std::unique_ptr<char[]>>> variables_;
};

void Call(Engine& engine, Input& input) {
  constexpr std::size_t kMostArguments = 10;
  const DISPID member = input.Byte() % 40;
  const auto flags = static_cast<WORD>(input.Byte());
  Host host(input);
  std::vector<VARIANT> arguments(input.Byte() % kMostArguments);
  std::vector<DISPID> names(arguments.empty() ? 0 : input.Byte() % (arguments.size() + 1));
  for (DISPID& name : names) name = static_cast<std::int8_t>(input.Byte() % 12) - 1;
  for (VARIANT& argument : arguments) argument = host.Argument();
  DISPPARAMS parameters = {arguments.data(), names.data(), static_cast<UINT>(arguments.size()),
                           static_cast<UINT>(names.size())};
  VARIANT result = {};
  UINT badArgument = 0;
  com::CallLate(engine, member, flags, parameters, &result, &badArgument);
  VariantClear(&result);
  for (VARIANT& argument : arguments) VariantClear(&argument);
}

}  // namespace
}  // namespace orv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr int kMostCalls = 8;
  auto& sample = orv::fuzz::SampleFile::Instance();
  orv::fuzz::Input input(data, size);
  for (int i = 0; i < kMostCalls && !input.IsEmpty(); ++i) {
    try {
      orv::fuzz::Call(sample.engine(), input);
    } catch (const std::bad_alloc&) {
      // The object around the call turns it into a failure of the call.
    }
  }
  sample.Finish();
  return 0;
}
