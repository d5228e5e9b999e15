// What late-bound hosts may pass, kind by kind.
#include <array>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "engine/members.h"
#include "server.h"

namespace orv::test {
namespace {

VARIANT Value(long number) {
  VARIANT v = {};
  v.vt = VT_I4;
  v.lVal = number;
  return v;
}
VARIANT Value(double number) {
  VARIANT v = {};
  v.vt = VT_R8;
  v.dblVal = number;
  return v;
}
VARIANT Value(BSTR text) {
  VARIANT v = {};
  v.vt = VT_BSTR;
  v.bstrVal = text;
  return v;
}
VARIANT Omitted() {
  VARIANT v = {};
  v.vt = VT_ERROR;
  v.scode = DISP_E_PARAMNOTFOUND;
  return v;
}
VARIANT By(VARIANT& variable) {
  VARIANT v = {};
  v.vt = VT_BYREF | VT_VARIANT;
  v.pvarVal = &variable;
  return v;
}
template <typename Type>
VARIANT By(VARTYPE type, Type& variable) {
  VARIANT v = {};
  v.vt = static_cast<VARTYPE>(VT_BYREF | type);
  v.byref = &variable;
  return v;
}

class LateBindingTest : public testing::Test {
 protected:
  void SetUp() override {
    CreateByName(L"Orv.Engine", IID_IDispatch, object_.outVoid());
    ASSERT_EQ(Call(L"CmdNewOrvDB", {Value(path_.get())}), S_OK);
    ASSERT_EQ(Call(L"CmdAddFld", {Value(path_.get()), Value(2L), Value(1L)}), S_OK);
    ASSERT_EQ(Call(L"CmdAddRecord", {Value(path_.get()), Value(5L), Value(1L)}), S_OK);
  }
  void TearDown() override { Call(L"CloseAll", {}); }

  DISPID NumberOf(const wchar_t* name) {
    auto* text = const_cast<wchar_t*>(name);
    DISPID number = DISPID_UNKNOWN;
    object_->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_NEUTRAL, &number);
    return number;
  }

  /// Calls with the arguments in the order of the parameters.
  HRESULT Call(const wchar_t* name, std::vector<VARIANT> arguments) {
    std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    DISPPARAMS parameters = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    return Invoke(name, parameters);
  }
  HRESULT Invoke(const wchar_t* name, DISPPARAMS& parameters, WORD flags = DISPATCH_METHOD) {
    VariantClear(result_.get());
    badArgument_ = kNone;
    return object_->Invoke(NumberOf(name), IID_NULL, LOCALE_NEUTRAL, flags, &parameters,
                           result_.get(), nullptr, &badArgument_);
  }
  std::wstring ResultText() {
    return std::wstring(com::TextOf(result_->vt == VT_BSTR ? result_->bstrVal : nullptr));
  }
  int ErrorCode() {
    Call(L"ErrorCode", {});
    return result_->vt == VT_I2 ? result_->iVal : -1;
  }
  std::wstring Cell(long record, long field) {
    EXPECT_EQ(Call(L"GetCellValue", {Value(path_.get()), Value(record), Value(field)}), S_OK);
    return ResultText();
  }
  HRESULT SetCell(VARIANT text) {
    return Call(L"SetCellValue", {text, Value(path_.get()), Value(1L), Value(1L)});
  }

  static constexpr UINT kNone = 999;
  Apartment apartment_;
  TempFolder folder_;
  Text path_{Quoted(folder_.Name(L"late.orv"))};
  Reference<IDispatch> object_;
  com::Variant result_;
  UINT badArgument_ = kNone;
};

TEST_F(LateBindingTest, NamesIgnoreLetterCaseAndNumbersAreTheTables) {
  for (const engine::Member& member : engine::Members()) {
    std::wstring name(member.name().begin(), member.name().end());
    EXPECT_EQ(NumberOf(name.c_str()), member.number());
    CharUpperW(name.data());
    EXPECT_EQ(NumberOf(name.c_str()), member.number());
  }
  EXPECT_EQ(NumberOf(L"Absent"), DISPID_UNKNOWN);
}

TEST_F(LateBindingTest, NumbersOfEveryTypeAreTaken) {
  short i2 = 2;
  unsigned char ui1 = 2;
  float r4 = 2;
  double r8 = 2;
  long i4 = 2;
  long long i8 = 2;
  VARIANT_BOOL boolean = VARIANT_TRUE;
  CY currency = {};
  currency.int64 = 20000;
  Text text(L"2");
  for (VARIANT record :
       {By(VT_I2, i2), By(VT_UI1, ui1), By(VT_R4, r4), By(VT_R8, r8), By(VT_I4, i4), By(VT_I8, i8),
        By(VT_CY, currency), Value(text.get()), Value(2.0)}) {
    SCOPED_TRACE(record.vt);
    EXPECT_EQ(Call(L"GetCellValue", {Value(path_.get()), record, Value(1L)}), S_OK);
    EXPECT_EQ(ErrorCode(), 0);
  }
  EXPECT_EQ(Call(L"GetCellValue", {Value(path_.get()), By(VT_BOOL, boolean), Value(1L)}), S_OK);
  EXPECT_EQ(ErrorCode(), 20) << "true is -1";
}

TEST_F(LateBindingTest, TextsAreMadeOfWhatAVariableHolds) {
  EXPECT_EQ(SetCell(Value(42L)), S_OK);
  EXPECT_EQ(Cell(1, 1), L"42");
  EXPECT_EQ(SetCell(Value(-0.5)), S_OK);
  EXPECT_EQ(Cell(1, 1), L"-0.5");
  VARIANT truth = {};
  truth.vt = VT_BOOL;
  truth.boolVal = VARIANT_TRUE;
  EXPECT_EQ(SetCell(truth), S_OK);
  EXPECT_EQ(Cell(1, 1), L"true");
  VARIANT date = {};
  date.vt = VT_DATE;
  date.date = 45296.75;
  EXPECT_EQ(SetCell(date), S_OK);
  EXPECT_EQ(Cell(1, 1), L"05.01.2024 18:00:00");
  date.date = 45296;
  EXPECT_EQ(SetCell(date), S_OK);
  EXPECT_EQ(Cell(1, 1), L"05.01.2024");
  VARIANT empty = {};
  EXPECT_EQ(SetCell(empty), S_OK);
  EXPECT_EQ(Cell(1, 1), L"");
}

TEST_F(LateBindingTest, ResultsGoBackIntoTheSameVariable) {
  com::Variant isMatrix;
  ASSERT_EQ(Call(L"GetCellValue", {Value(path_.get()), Value(1L), Value(1L), By(*isMatrix)}), S_OK);
  EXPECT_EQ(isMatrix->vt, VT_BOOL) << "an empty variable takes the result's type";
  EXPECT_EQ(isMatrix->boolVal, VARIANT_FALSE);

  Text nine(L"9");
  com::Variant freeSize;
  double cellSize = 7;
  short fixed = 5;
  ASSERT_EQ(Call(L"GetFldStyle", {Value(path_.get()), Value(1L), By(*freeSize), By(VT_R8, cellSize),
                                  By(VT_I2, fixed), Omitted(), Omitted()}),
            S_OK);
  EXPECT_EQ(ErrorCode(), 0);
  EXPECT_EQ(freeSize->vt, VT_I2);
  EXPECT_EQ(freeSize->iVal, 0);
  EXPECT_EQ(fixed, 0) << "a boolean goes back into a number";
}

TEST_F(LateBindingTest, AVariableThatTheCallDoesNotChangeStaysAsItWas) {
  com::Variant record;
  record->vt = VT_BSTR;
  record->bstrVal = com::NewBstr(L" 2 ");
  const BSTR before = record->bstrVal;
  ASSERT_EQ(Call(L"GetCellValue", {Value(path_.get()), By(*record), Value(1L)}), S_OK);
  EXPECT_EQ(record->vt, VT_BSTR);
  EXPECT_EQ(record->bstrVal, before);
}

TEST_F(LateBindingTest, AReferenceToAReferenceIsFollowed) {
  com::Variant variable;
  VARIANT inner = By(*variable);
  ASSERT_EQ(Call(L"GetCellValue", {Value(path_.get()), Value(1L), Value(1L), By(inner)}), S_OK);
  EXPECT_EQ(variable->vt, VT_BOOL);
}

TEST_F(LateBindingTest, ArgumentsByNameComeInAnyOrder) {
  std::array<const wchar_t*, 4> names = {L"GetCellValue", L"FLD", L"rec", L"p"};
  std::array<DISPID, 4> numbers{};
  ASSERT_EQ(object_->GetIDsOfNames(IID_NULL, const_cast<wchar_t**>(names.data()), 4, LOCALE_NEUTRAL,
                                   numbers.data()),
            S_OK);
  ASSERT_EQ(SetCell(Value(7L)), S_OK);
  std::array<VARIANT, 3> arguments = {Value(1L), Value(1L), Value(path_.get())};
  DISPPARAMS parameters = {arguments.data(), numbers.data() + 1, 3, 3};
  ASSERT_EQ(Invoke(L"GetCellValue", parameters), S_OK);
  EXPECT_EQ(ResultText(), L"7");
}

TEST_F(LateBindingTest, NamesThatNoParameterHasAreUnknown) {
  std::array<const wchar_t*, 2> names = {L"GetCellValue", L"nope"};
  std::array<DISPID, 2> numbers{};
  EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, const_cast<wchar_t**>(names.data()), 2, LOCALE_NEUTRAL,
                                   numbers.data()),
            DISP_E_UNKNOWNNAME);
  EXPECT_EQ(numbers[0], 14);
  EXPECT_EQ(numbers[1], DISPID_UNKNOWN);
}

TEST_F(LateBindingTest, WrongTypesNameTheArgument) {
  Text word(L"two");
  EXPECT_EQ(Call(L"GetCellValue", {Value(path_.get()), Value(word.get()), Value(1L)}),
            DISP_E_TYPEMISMATCH);
  EXPECT_EQ(badArgument_, 1U) << "arguments count from the last";
  EXPECT_EQ(Call(L"GetCellValue", {Value(path_.get()), Value(1L), Value(word.get())}),
            DISP_E_TYPEMISMATCH);
  EXPECT_EQ(badArgument_, 0U);
  VARIANT null = {};
  null.vt = VT_NULL;
  EXPECT_EQ(SetCell(null), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(badArgument_, 3U);
}

TEST_F(LateBindingTest, NumbersThatDoNotFitOverflow) {
  EXPECT_EQ(Call(L"GetCellValue", {Value(path_.get()), Value(1L), Value(40000L)}), DISP_E_OVERFLOW);
  EXPECT_EQ(badArgument_, 0U);
  EXPECT_EQ(Call(L"GetCellValue", {Value(path_.get()), Value(3e9), Value(1L)}), DISP_E_OVERFLOW);
  EXPECT_EQ(badArgument_, 1U);
}

TEST_F(LateBindingTest, MissingAndSurplusArgumentsAreRefused) {
  EXPECT_EQ(Call(L"GetCellValue", {Value(path_.get()), Value(1L)}), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(Call(L"Records", {Value(path_.get()), Value(1L)}), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(Call(L"GetCellValue", {Value(path_.get()), Omitted(), Value(1L)}),
            DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(badArgument_, 1U);
}

TEST_F(LateBindingTest, MembersAreNoPropertiesToBeSet) {
  VARIANT argument = Value(1L);
  DISPPARAMS parameters = {&argument, nullptr, 1, 0};
  EXPECT_EQ(Invoke(L"Records", parameters, DISPATCH_PROPERTYPUT), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(object_->Invoke(35, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters, nullptr,
                            nullptr, nullptr),
            DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(object_->Invoke(1, IID_IUnknown, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters, nullptr,
                            nullptr, nullptr),
            DISP_E_UNKNOWNINTERFACE);
}

TEST_F(LateBindingTest, AnArrayOfVariantsIsFilledInPlace) {
  ASSERT_EQ(SetCell(Value(11L)), S_OK);
  SAFEARRAYBOUND bounds[] = {{3, 0}, {6, 0}};
  com::Variant array;
  array->vt = VT_ARRAY | VT_VARIANT;
  array->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  com::Variant last;
  last->vt = VT_I2;
  last->iVal = 3;
  ASSERT_EQ(Call(L"ValueMatrix", {By(*array), Value(path_.get()), Value(1L), By(*last)}), S_OK);
  EXPECT_EQ(ErrorCode(), 0);
  LONG indexes[] = {1, 1};
  com::Variant element;
  ASSERT_EQ(SafeArrayGetElement(array->parray, indexes, element.get()), S_OK);
  ASSERT_EQ(element->vt, VT_BSTR);
  EXPECT_EQ(std::wstring(com::TextOf(element->bstrVal)), L"11");
}

}  // namespace
}  // namespace orv::test
