// The searches: MtxFindFirst, MtxFindMin and MtxFindMax.
#include "query/search.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dialogs/recording_interface.h"
#include "engine/component.h"
#include "platform/code_page.h"
#include "support/container_bytes.h"
#include "support/driver.h"
#include "support/raises.h"
#include "support/styled_file.h"

namespace orv {
namespace {

using platform::ToBytes;
using test::Driver;
namespace styled = test::styled;
using Texts = std::vector<std::string>;

/// The arguments of a search; what the member changes is seen afterwards.
struct Find {
  std::int32_t record = 1;
  std::int16_t field = 1;
  std::wstring value;
  std::int16_t region = 0;
  Boolean inCell = Boolean::kFalse;
  std::int16_t direct = 0;
  Boolean caseMatters = Boolean::kTrue;
};

class SearchTest : public testing::Test {
 protected:
  /// A matrix with these records; every text is a column of one record.
  void Make(const std::vector<Texts>& records) {
    db_.Use(std::to_wstring(++files_) + L".orv");
    db_.New();
    db_.AddFields(L"", static_cast<int>(records[0].size()), 1);
    db_.AddRecords(L"", static_cast<int>(records.size()), 1);
    for (std::size_t r = 0; r < records.size(); ++r) {
      for (std::size_t f = 0; f < records[r].size(); ++f) {
        if (records[r][f].empty()) continue;  // an empty cell
        db_.Set(L"", static_cast<int>(r + 1), static_cast<int>(f + 1), records[r][f]);
      }
    }
  }
  void MakeColumn(const Texts& texts) {
    std::vector<Texts> records;
    for (const std::string& text : texts) records.push_back({text});
    Make(records);
  }
  int First(Find& find, std::wstring_view steps = {}) {
    std::wstring path = db_.Path(steps);
    std::wstring value = find.value;
    const int found = db_.engine.MtxFindFirst(path, find.record, find.field, value, find.region,
                                              find.inCell, find.direct, find.caseMatters);
    EXPECT_EQ(value, find.value);
    return found;
  }
  int First(Find&& find, std::wstring_view steps = {}) { return First(find, steps); }
  int Min(int col, std::wstring_view steps = {}) {
    std::wstring path = db_.Path(steps);
    auto field = static_cast<std::int16_t>(col);
    return db_.engine.MtxFindMin(path, field);
  }
  int Max(int col, std::wstring_view steps = {}) {
    std::wstring path = db_.Path(steps);
    auto field = static_cast<std::int16_t>(col);
    return db_.engine.MtxFindMax(path, field);
  }

  Driver db_;
  int files_ = 0;
};

TEST_F(SearchTest, FindsTheFirstEqualCell) {
  MakeColumn({"ab", "abc", "abc"});
  EXPECT_EQ(First({.value = L"abc"}), 2);
  EXPECT_EQ(First({.value = L"abcd"}), -1);
  EXPECT_EQ(db_.Error(), 0);
}

TEST_F(SearchTest, StartsAtTheRecordGiven) {
  MakeColumn({"a", "b", "a"});
  EXPECT_EQ(First({.record = 2, .value = L"a"}), 3);
  EXPECT_EQ(First({.record = 3, .value = L"a"}), 3);
  EXPECT_EQ(First({.record = 4, .value = L"a"}), -1);
  EXPECT_EQ(First({.record = 0, .value = L"a"}), 1);
  EXPECT_EQ(First({.record = -7, .value = L"a"}), 1);
}

TEST_F(SearchTest, CellsThatNobodyCanReadAreEmpty) {
  MakeStyledFile(db_);
  db_.AddRecords(L"", 3, 1);
  db_.CloseAll();
  test::ContainerBytes file(db_.Bytes());
  file.PutByte(file.Descriptor(file.Root(), styled::kFree) + 8, 7);  // compressed
  file.PutInt16(file.Descriptor(file.Root(), styled::kDictionary) + 9, 3);
  test::WriteBytes(db_.file(), file.bytes());
  for (const std::int16_t f : {std::int16_t{styled::kFree}, std::int16_t{styled::kDictionary}}) {
    EXPECT_EQ(db_.Get(L"", 2, f), "");
    EXPECT_EQ(First({.record = 2, .field = f, .value = L""}), 2);
    EXPECT_EQ(First({.field = f, .value = L"x"}), -1);
  }
}

TEST_F(SearchTest, LetterCaseMattersOnRequestOnly) {
  MakeColumn({"abc"});
  EXPECT_EQ(First({.value = L"ABC"}), -1);
  EXPECT_EQ(First({.value = L"ABC", .caseMatters = Boolean::kFalse}), 1);
  EXPECT_EQ(First({.value = L"abc"}), 1);
}

TEST_F(SearchTest, RussianLettersIgnoreCaseToo) {
  MakeColumn({ToBytes(L"ещё"), ToBytes(L"ЕЩЁ ОДИН"), ToBytes(L"Ґанок Їжак")});
  EXPECT_EQ(First({.value = L"ЕЩЁ", .caseMatters = Boolean::kFalse}), 1);
  EXPECT_EQ(First({.value = L"ещё один", .caseMatters = Boolean::kFalse}), 2);
  EXPECT_EQ(First({.value = L"ґАНОК їЖАК", .caseMatters = Boolean::kFalse}), 3);
  EXPECT_EQ(First({.value = L"Ё О", .inCell = Boolean::kTrue, .caseMatters = Boolean::kFalse}), 2);
  EXPECT_EQ(First({.value = L"ё о", .inCell = Boolean::kTrue}), -1);
}

TEST_F(SearchTest, FindsAPartOfACell) {
  MakeColumn({"hay", "a needle in hay", "needle"});
  EXPECT_EQ(First({.value = L"needle", .inCell = Boolean::kTrue}), 2);
  EXPECT_EQ(First({.value = L"y", .inCell = Boolean::kTrue}), 1);
  EXPECT_EQ(First({.value = L"needless", .inCell = Boolean::kTrue}), -1);
}

TEST_F(SearchTest, TheEmptyTextIsFoundInEmptyCellsAndInsideEveryCell) {
  MakeColumn({"a", "", "b"});
  EXPECT_EQ(First({.value = L""}), 2);
  EXPECT_EQ(First({.value = L"", .inCell = Boolean::kTrue}), 1);
  db_.AddRecords(L"", 2, 4);
  EXPECT_EQ(First({.record = 3, .value = L""}), 4);
}

TEST_F(SearchTest, AnyRegionButTheMatrixItselfFindsNothing) {
  MakeColumn({"a"});
  EXPECT_EQ(First({.value = L"a", .region = 1}), -1);
  EXPECT_EQ(First({.value = L"a", .region = -1}), -1);
}

TEST_F(SearchTest, TheDirectionHasNoEffect) {
  MakeColumn({"b", "a", "a"});
  for (const int direct : {-1, 0, 1, 99}) {
    EXPECT_EQ(First({.value = L"a", .direct = static_cast<std::int16_t>(direct)}), 2);
  }
}

TEST_F(SearchTest, LongTextsAndTextsInPiecesAreSearched) {
  const std::string text(300, 'x');
  MakeColumn({"short", text + "end", "abc"});
  db_.Set(L"", 1, 1, "grown beyond its piece");
  EXPECT_EQ(First({.value = L"grown beyond its piece"}), 1);
  EXPECT_EQ(First({.value = L"beyond", .inCell = Boolean::kTrue}), 1);
  EXPECT_EQ(First({.value = L"xend", .inCell = Boolean::kTrue}), 2);
  EXPECT_EQ(First({.value = platform::ToWide(text + "end")}), 2);
}

TEST_F(SearchTest, ANestedMatrixIsFoundByItsTitle) {
  MakeColumn({"a", "b"});
  db_.Put(L"", 2, 1, "Nested");
  EXPECT_EQ(First({.value = L"Nested"}), 2);
}

TEST_F(SearchTest, AnyFieldReportsTheFirstPass) {
  Make({{"a", "b"}, {"c", "d"}, {"d", "a"}});
  Find find{.field = 0, .value = L"d"};
  EXPECT_EQ(First(find), 2);
  EXPECT_EQ(find.field, 1);
  find = {.record = 3, .field = 0, .value = L"a"};
  EXPECT_EQ(First(find), 3);
  EXPECT_EQ(find.field, 1);
  find = {.field = 0, .value = L"none"};
  EXPECT_EQ(First(find), -1);
  EXPECT_EQ(find.field, 0);
}

TEST_F(SearchTest, AFieldOfTypeIntComparesExactly) {
  MakeColumn({"ABC"});
  db_.SetType(L"", -2, 1, "type", "int");
  Find find{.value = L"abc", .caseMatters = Boolean::kFalse};
  EXPECT_EQ(First(find), -1);
  EXPECT_EQ(find.caseMatters, Boolean::kTrue);
  find = {.value = L"ABC", .caseMatters = Boolean::kFalse};
  EXPECT_EQ(First(find), 1);
  find = {.field = 0, .value = L"abc", .caseMatters = Boolean::kFalse};
  EXPECT_EQ(First(find), 1);
  EXPECT_EQ(find.caseMatters, Boolean::kFalse);
}

TEST_F(SearchTest, TheTypeIsNotAskedForInAPropertyMatrix) {
  MakeColumn({"a"});
  db_.SetType(L"", -2, 1, "type", "int");
  Find find{.field = 1, .value = L"TIT", .caseMatters = Boolean::kFalse};
  First(find, L"/#");
  EXPECT_EQ(find.caseMatters, Boolean::kFalse);
}

TEST_F(SearchTest, FailuresGiveMinusOneAndKeepTheirCode) {
  MakeColumn({"a"});
  EXPECT_EQ(First({.value = L"a"}, L"/[1,1]"), -1);
  EXPECT_EQ(db_.Error(), 19);
  EXPECT_EQ(First({.field = 2, .value = L"a"}), -1);
  EXPECT_EQ(db_.Error(), 9);
  EXPECT_EQ(First({.field = -1, .value = L"a"}), -1);
  EXPECT_EQ(db_.Error(), 9);
}

TEST_F(SearchTest, ADbaseTableIsNotSearched) {
  db_.Use(L"table.dbf");
  test::WriteBytes(db_.file(), std::string("\x03") + std::string(200, '\0'));
  EXPECT_EQ(First({.value = L""}), -1);
  EXPECT_EQ(Min(1), -1);
  EXPECT_EQ(Max(1), -1);
  EXPECT_EQ(db_.Error(), 0);
}

TEST_F(SearchTest, EveryStorageStyleIsSearched) {
  test::MakeStyledFile(db_);
  db_.AddRecords(L"", 4, 1);
  const std::vector<Texts> columns = {{"", "", "", ""},
                                      {"ab", "Ab c", "b", "ab"},
                                      {"5", "-7", "300", "5"},
                                      {"70000", "-1", "12", "70000"},
                                      {"Ivan", "Petr", "Ivan", "ivan"}};
  for (int f = 2; f <= styled::kFields; ++f) {
    for (int r = 1; r <= 4; ++r) {
      db_.Set(L"", r, f, columns[static_cast<std::size_t>(f - 1)][static_cast<std::size_t>(r - 1)]);
      ASSERT_EQ(db_.Error(), 0);
    }
  }
  const auto first = [this](int f, const wchar_t* value, bool inCell, bool caseMatters,
                            int from = 1) {
    return First({.record = from,
                  .field = static_cast<std::int16_t>(f),
                  .value = value,
                  .inCell = ToBoolean(inCell),
                  .caseMatters = ToBoolean(caseMatters)});
  };
  EXPECT_EQ(first(styled::kText, L"ab", false, true, 2), 4);
  EXPECT_EQ(first(styled::kText, L"AB C", false, false), 2);
  EXPECT_EQ(first(styled::kText, L"b c", true, true), 2);
  EXPECT_EQ(first(styled::kText, L"ab ", false, true), -1);
  EXPECT_EQ(first(styled::kText, L"abcdef", false, true), -1);
  EXPECT_EQ(first(styled::kPacked, L"-7", false, true), 2);
  EXPECT_EQ(first(styled::kPacked, L"5", false, false, 2), 4);
  EXPECT_EQ(first(styled::kPacked, L"05", false, true), -1);
  EXPECT_EQ(first(styled::kPacked, L"00", true, true), 3);
  EXPECT_EQ(first(styled::kInt, L"-1", false, false), 2);
  EXPECT_EQ(first(styled::kInt, L"70000", false, true, 2), 4);
  EXPECT_EQ(first(styled::kInt, L"000", true, true, 2), 4);
  EXPECT_EQ(first(styled::kDictionary, L"Ivan", false, true, 2), 3);
  EXPECT_EQ(first(styled::kDictionary, L"IVAN", false, false, 4), 4);
  EXPECT_EQ(first(styled::kDictionary, L"et", true, true), 2);
  EXPECT_EQ(first(styled::kDictionary, L"none", false, true), -1);
  EXPECT_EQ(first(styled::kFree, L"", false, true), 1);
  EXPECT_EQ(first(0, L"12", false, true), 3);
  EXPECT_EQ(Max(styled::kDictionary), 4);
  EXPECT_EQ(Min(styled::kDictionary), -1);
  EXPECT_EQ(Max(styled::kText), 3);
  EXPECT_EQ(Min(styled::kText), 2);
}

TEST_F(SearchTest, BlanksInFrontOfAFixedTextAreNoPartOfIt) {
  test::MakeStyledFile(db_);
  db_.AddRecords(L"", 2, 1);
  db_.Set(L"", 1, styled::kText, "  x");
  db_.Set(L"", 2, styled::kText, "x");
  EXPECT_EQ(First({.field = styled::kText, .value = L"x"}), 1);
  EXPECT_EQ(First({.field = styled::kText, .value = L"  x"}), -1);
  EXPECT_EQ(First({.record = 2, .field = styled::kText, .value = L""}), -1);
}

class ViewSearchTest : public SearchTest {
 protected:
  void SetUp() override {
    Make({{"abc", "1"}, {"ABC", "1"}, {"abcd", "2"}, {"abc", "2"}, {"xyz", "2"}});
  }
};

TEST_F(ViewSearchTest, RecordsAreCountedWithinTheView) {
  EXPECT_EQ(First({.value = L"xyz", .inCell = Boolean::kTrue}, L"/f(2)=2"), 3);
  EXPECT_EQ(First({.value = L"bcd", .inCell = Boolean::kTrue}, L"/f(2)=2"), 1);
}

TEST_F(ViewSearchTest, TheStartHasNoEffectInAView) {
  EXPECT_EQ(First({.record = 3, .value = L"bcd", .inCell = Boolean::kTrue}, L"/f(2)=2"), 1);
}

TEST_F(ViewSearchTest, ATextOfAnotherLengthEndsTheSearch) {
  EXPECT_EQ(First({.value = L"abc"}, L"/f(2)=2"), -1);
  EXPECT_EQ(First({.value = L"ABC"}, L"/f(2)=1"), 2);
  EXPECT_EQ(First({.value = L"ABC", .caseMatters = Boolean::kFalse}, L"/f(2)=1"), 1);
}

TEST_F(ViewSearchTest, AnEmptyViewHoldsNothing) {
  EXPECT_EQ(First({.value = L"abc"}, L"/f(2)=none"), -1);
  EXPECT_EQ(First({.field = 0, .value = L"abc"}, L"/f(2)=none"), -1);
}

TEST_F(ViewSearchTest, AnyFieldSearchesTheViewFieldByField) {
  Find find{.field = 0, .value = L"2", .inCell = Boolean::kTrue};
  EXPECT_EQ(First(find, L"/f(2)=2"), 1);
  EXPECT_EQ(find.field, 0);
}

TEST_F(ViewSearchTest, AnyFieldEndsAtATextOfAnotherLength) {
  EXPECT_EQ(First({.field = 0, .value = L"2"}, L"/f(2)=2"), -1);
}

TEST_F(ViewSearchTest, WhatTheMatrixHoldsRemainsWhenTheViewHasNothing) {
  Find find{.field = 0, .value = L"ABC", .inCell = Boolean::kTrue};
  EXPECT_EQ(First(find, L"/f(2)=2"), 2);
  EXPECT_EQ(find.field, 0);
}

TEST_F(ViewSearchTest, TheExtremesAreThoseOfTheMatrixItself) {
  EXPECT_EQ(Max(1, L"/f(2)=1"), 5);
  EXPECT_EQ(Min(1, L"/f(2)=2"), 2);
}

TEST_F(SearchTest, TheLeastTextIsFoundBehindRecordOne) {
  MakeColumn({"b", "a"});
  EXPECT_EQ(Min(1), 2);
  MakeColumn({"a", "b"});
  EXPECT_EQ(Min(1), -1);
  EXPECT_EQ(db_.Error(), 0);
  MakeColumn({"b", "a", "a"});
  EXPECT_EQ(Min(1), 2);
}

TEST_F(SearchTest, EmptyCellsAreLess) {
  MakeColumn({"b", "a", "", ""});
  EXPECT_EQ(Min(1), 3);
  MakeColumn({"", "a"});
  EXPECT_EQ(Min(1), 1);
  MakeColumn({"x", "a"});
  db_.Set(L"", 1, 1, "");  // a cell with the empty text
  EXPECT_EQ(Min(1), -1);
}

TEST_F(SearchTest, TheFirstGreatestTextIsFound) {
  MakeColumn({"a", "c", "c"});
  EXPECT_EQ(Max(1), 2);
  MakeColumn({"", ""});
  EXPECT_EQ(Max(1), -1);
  EXPECT_EQ(db_.Error(), 0);
  MakeColumn({"10", "9"});
  EXPECT_EQ(Max(1), 2);
}

TEST_F(SearchTest, TextsAreComparedByCharacterCodes) {
  MakeColumn({"z", ToBytes(L"ё"), ToBytes(L"я"), "a"});
  EXPECT_EQ(Max(1), 3);
  EXPECT_EQ(Min(1), 4);
}

TEST_F(SearchTest, AnEmptyMatrixLeavesFive) {
  db_.New();
  db_.AddFields(L"", 1, 1);
  EXPECT_EQ(Min(1), -1);
  EXPECT_EQ(db_.Error(), 5);
  EXPECT_EQ(Max(1), -1);
  EXPECT_EQ(db_.Error(), 5);
}

TEST_F(SearchTest, TheExtremesOfAMissingFieldLeaveNine) {
  MakeColumn({"a"});
  EXPECT_EQ(Min(2), -1);
  EXPECT_EQ(db_.Error(), 9);
  EXPECT_EQ(Max(0), -1);
  EXPECT_EQ(db_.Error(), 9);
}

TEST_F(SearchTest, TheGreatestNumberMustBeAboveZero) {
  query::Search& search = engine::Component::Instance().search;
  MakeColumn({"9", "10", "x", "10"});
  EXPECT_EQ(search.FindMaxNumber(db_.Path(), 1), 2);
  MakeColumn({"-9", "0", "x"});
  EXPECT_EQ(search.FindMaxNumber(db_.Path(), 1), -1);
}

TEST_F(SearchTest, EqualTextsAreFoundFromRecordOneOn) {
  query::Search& search = engine::Component::Instance().search;
  Make({{"abcd", "2"}, {"ABC", "2"}, {"abc", "2"}});
  EXPECT_EQ(search.FindEqual(db_.Path(), 1, "abc"), 3);
  EXPECT_EQ(search.FindEqual(db_.Path(L"/cell(rec,1)<>\"ABC\""), 1, "abc"), 2);
  EXPECT_EQ(search.FindEqual(db_.Path(), 1, "none"), -1);
}

}  // namespace
}  // namespace orv
