#include "com/text_array.h"

#include <utility>

#include "com/bstr.h"
#include "com/variant_value.h"

namespace orv::com {
namespace {

constexpr UINT kFieldDimension = 1;
constexpr UINT kRecordDimension = 2;

/// The elements of an array, locked in memory while the object lives.
class Elements {
 public:
  explicit Elements(SAFEARRAY* array) : array_(array) {
    if (array == nullptr || SafeArrayGetDim(array) != 2) return;
    if (FAILED(SafeArrayGetVartype(array, &type_))) return;
    if (type_ != VT_BSTR && type_ != VT_VARIANT) return;
    isLocked_ = SUCCEEDED(SafeArrayAccessData(array, &data_));
  }
  ~Elements() {
    if (isLocked_) SafeArrayUnaccessData(array_);
  }
  Elements(const Elements&) = delete;
  Elements& operator=(const Elements&) = delete;

  /// An array without elements may be locked and have no memory.
  bool IsReadable() const { return isLocked_ && data_ != nullptr; }
  Bounds Dimension(UINT number) const {
    LONG low = 0;
    LONG high = -1;
    SafeArrayGetLBound(array_, number, &low);
    SafeArrayGetUBound(array_, number, &high);
    return {static_cast<std::int32_t>(low), static_cast<std::int32_t>(high)};
  }

  HRESULT Read(std::size_t index, std::wstring& text) const {
    if (type_ == VT_BSTR) {
      text = TextOf(Texts()[index]);
      return S_OK;
    }
    Variant plain;
    engine::Argument content;
    const HRESULT copied = VariantCopyInd(plain.get(), &Variants()[index]);
    if (FAILED(copied)) return DISP_E_TYPEMISMATCH;
    const HRESULT outcome = ReadValue(*plain, engine::ParameterType::kText, content);
    if (SUCCEEDED(outcome)) text = std::move(std::get<std::wstring>(content));
    return outcome;
  }

  void Write(std::size_t index, const std::wstring& text) const {
    BSTR fresh = NewBstr(text);
    if (type_ == VT_BSTR) {
      std::swap(Texts()[index], fresh);
      SysFreeString(fresh);
      return;
    }
    VARIANT& element = Variants()[index];
    VariantClear(&element);
    element.vt = VT_BSTR;
    element.bstrVal = fresh;
  }

 private:
  BSTR* Texts() const { return static_cast<BSTR*>(data_); }
  VARIANT* Variants() const { return static_cast<VARIANT*>(data_); }

  SAFEARRAY* array_;
  VARTYPE type_ = VT_EMPTY;
  void* data_ = nullptr;
  bool isLocked_ = false;
};

/// Calls `visit(field, record, index)` for every element in the order of memory, where the field
/// runs first, until it fails.
template <typename Visit>
HRESULT ForEachElement(const Bounds& fields, const Bounds& records, Visit visit) {
  std::size_t index = 0;
  for (std::int64_t record = records.low; record <= records.high; ++record) {
    for (std::int64_t field = fields.low; field <= fields.high; ++field) {
      const HRESULT outcome =
          visit(static_cast<std::int32_t>(field), static_cast<std::int32_t>(record), index++);
      if (FAILED(outcome)) return outcome;
    }
  }
  return S_OK;
}

}  // namespace

HRESULT ReadTextArray(SAFEARRAY* array, TextMatrix& matrix) {
  const Elements elements(array);
  if (!elements.IsReadable()) return DISP_E_TYPEMISMATCH;
  matrix = TextMatrix(elements.Dimension(kFieldDimension), elements.Dimension(kRecordDimension));
  return ForEachElement(matrix.fields(), matrix.records(),
                        [&](std::int32_t field, std::int32_t record, std::size_t index) {
                          return elements.Read(index, matrix.At(field, record));
                        });
}

HRESULT WriteTextArray(const TextMatrix& matrix, SAFEARRAY* array) {
  const Elements elements(array);
  // While a long operation serviced events, the host may have given its array other bounds.
  if (!elements.IsReadable() || elements.Dimension(kFieldDimension) != matrix.fields() ||
      elements.Dimension(kRecordDimension) != matrix.records()) {
    return DISP_E_TYPEMISMATCH;
  }
  return ForEachElement(matrix.fields(), matrix.records(),
                        [&](std::int32_t field, std::int32_t record, std::size_t index) {
                          std::wstring present;
                          const std::wstring& text = matrix.At(field, record);
                          if (FAILED(elements.Read(index, present)) || present != text) {
                            elements.Write(index, text);
                          }
                          return S_OK;
                        });
}

}  // namespace orv::com
