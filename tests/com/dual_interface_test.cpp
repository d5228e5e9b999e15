// A C++ host that calls through the dual interface.
#include <gtest/gtest.h>

#include "platform/code_page.h"
#include "server.h"

namespace orv::test {
namespace {

class DualInterfaceTest : public testing::Test {
 protected:
  void SetUp() override {
    CreateByName(L"Orv.Engine.1", IID_IEngine, engine_.outVoid());
    Text title(L"\u0422\u0430\u0431\u043B\u0438\u0446\u0430");
    short fields = 2;
    short firstField = 1;
    long records = 3;
    long firstRecord = 1;
    ASSERT_EQ(engine_->CmdNewOrvDB(&path_, &title), S_OK);
    ASSERT_EQ(engine_->CmdAddFld(&path_, &fields, &firstField), S_OK);
    ASSERT_EQ(engine_->CmdAddRecord(&path_, &records, &firstRecord), S_OK);
    ASSERT_EQ(ErrorCodeOf(engine_.get()), 0);
  }
  void TearDown() override { engine_->CloseAll(); }

  void Set(long record, short field, std::wstring_view text) {
    Text value(text);
    ASSERT_EQ(engine_->SetCellValue(&value, &path_, &record, &field), S_OK);
    ASSERT_EQ(ErrorCodeOf(engine_.get()), 0);
  }
  std::wstring Get(long record, short field) {
    return CellTextOf(engine_.get(), path_, record, field);
  }

  Apartment apartment_;
  TempFolder folder_;
  Text path_{Quoted(folder_.Name(L"\u0444\u0430\u0439\u043B.orv"))};
  Reference<IEngine> engine_;
};

TEST_F(DualInterfaceTest, TextsOfEveryByteComeBack) {
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
  const std::wstring all = platform::ToWide(bytes);
  Set(1, 1, all);
  EXPECT_EQ(Get(1, 1), all);
}

TEST_F(DualInterfaceTest, EmptyAndVeryLongTextsComeBack) {
  const std::wstring text(100000, L'\u042F');
  Set(1, 1, text);
  EXPECT_EQ(Get(1, 1), text);
  Set(1, 1, L"");
  EXPECT_EQ(Get(1, 1), L"");
  long record = 2;
  short field = 2;
  BSTR none = nullptr;
  ASSERT_EQ(engine_->SetCellValue(&none, &path_, &record, &field), S_OK)
      << "null is the empty text";
  EXPECT_EQ(ErrorCodeOf(engine_.get()), 0);
}

TEST_F(DualInterfaceTest, ParametersAreOutToo) {
  long record = 2;
  short field = 1;
  Set(2, 1, L"becomes a title");
  Text title;
  ASSERT_EQ(engine_->PutMatrix(&path_, &record, &field, &title), S_OK);
  EXPECT_EQ(title.str(), L"becomes a title");
  VARIANT_BOOL isMatrix = VARIANT_FALSE;
  VARIANT_BOOL formula = VARIANT_FALSE;
  Text text;
  ASSERT_EQ(engine_->GetCellValue(&path_, &record, &field, &isMatrix, &formula, &text), S_OK);
  EXPECT_EQ(isMatrix, VARIANT_TRUE);
}

TEST_F(DualInterfaceTest, AnUnchangedTextKeepsItsPlace) {
  const BSTR before = path_.get();
  long count = 0;
  ASSERT_EQ(engine_->Records(&path_, &count), S_OK);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(path_.get(), before);
}

TEST_F(DualInterfaceTest, TheHostsArrayKeepsItsBounds) {
  Set(2, 1, L"two");
  Set(3, 2, L"three");
  SAFEARRAYBOUND bounds[] = {{2, 1}, {3, 2}};  // fields 1 and 2, records 2 to 4
  SAFEARRAY* array = SafeArrayCreate(VT_BSTR, 2, bounds);
  ASSERT_NE(array, nullptr);
  long first = 2;
  long last = 9;
  VARIANT_BOOL formula = VARIANT_FALSE;
  ASSERT_EQ(engine_->ValueMatrix(&array, &path_, &first, &last, &formula), S_OK);
  EXPECT_EQ(last, 4) << "the first record beyond the last";
  const auto element = [array](LONG field, LONG record) {
    LONG indexes[] = {field, record};
    Text text;
    EXPECT_EQ(SafeArrayGetElement(array, indexes, &text), S_OK);
    return text.str();
  };
  EXPECT_EQ(element(1, 2), L"two");
  EXPECT_EQ(element(2, 3), L"three");
  EXPECT_EQ(element(1, 4), L"");
  LONG low = 0;
  SafeArrayGetLBound(array, 2, &low);
  EXPECT_EQ(low, 2);
  SafeArrayDestroy(array);
}

TEST_F(DualInterfaceTest, AnArrayOfAnotherKindIsATypeMismatch) {
  SAFEARRAYBOUND bound = {3, 0};
  SAFEARRAY* array = SafeArrayCreate(VT_BSTR, 1, &bound);
  long first = 1;
  long last = 2;
  VARIANT_BOOL formula = VARIANT_FALSE;
  EXPECT_EQ(engine_->ValueMatrix(&array, &path_, &first, &last, &formula), DISP_E_TYPEMISMATCH);
  SafeArrayDestroy(array);
}

TEST_F(DualInterfaceTest, NullPointersAreRefused) {
  long count = 0;
  EXPECT_EQ(engine_->Records(nullptr, &count), E_POINTER);
  EXPECT_EQ(engine_->Records(&path_, nullptr), E_POINTER);
  EXPECT_EQ(engine_->ErrorCode(nullptr), E_POINTER);
}

TEST_F(DualInterfaceTest, FailuresAreErrorCodesNeverFailedCalls) {
  engine_->CloseAll();
  Text missing(Quoted(folder_.Name(L"missing.orv")));
  long count = 0;
  EXPECT_EQ(engine_->Records(&missing, &count), S_OK);
  EXPECT_EQ(count, -1);
  EXPECT_EQ(ErrorCodeOf(engine_.get()), 53);
}

TEST_F(DualInterfaceTest, AFileThatAnotherProgramHasLockedIsError75) {
  const std::wstring name = folder_.Name(L"locked.orv");
  WriteBytes(name, "anything");
  HANDLE lock = CreateFileW(name.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(lock, INVALID_HANDLE_VALUE);
  Text path(Quoted(name));
  long count = 0;
  EXPECT_EQ(engine_->Records(&path, &count), S_OK);
  EXPECT_EQ(count, -1);
  EXPECT_EQ(ErrorCodeOf(engine_.get()), 75);
  CloseHandle(lock);
}

TEST_F(DualInterfaceTest, EveryObjectIsAHandleOnTheSameEngine) {
  Reference<IEngine> other;
  CreateByName(L"Orv.Engine", IID_IEngine, other.outVoid());
  engine_->CloseAll();
  Text missing(Quoted(folder_.Name(L"missing.orv")));
  long count = 0;
  engine_->Records(&missing, &count);
  EXPECT_EQ(ErrorCodeOf(other.get()), 53);
}

}  // namespace
}  // namespace orv::test
