// The filter builder: its three modes, its messages and codes, and what a view is afterwards.
#include "query/filter_builder.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "dialogs/recording_interface.h"
#include "engine/component.h"
#include "platform/clock.h"
#include "platform/code_page.h"
#include "support/driver.h"
#include "support/styled_file.h"

namespace orv {
namespace {

using platform::ToBytes;
using query::FilterClass;
using test::Driver;
using test::RecordingInterface;
namespace styled = test::styled;
using Texts = std::vector<std::string>;
using Runs = std::vector<std::pair<int, int>>;

constexpr const wchar_t* kFailed = L"Ошибка создания фильтра.";

class FilterBuilderTest : public testing::Test {
 protected:
  void TearDown() override { db_.CloseAll(); }

  /// A matrix whose field 1 counts the records and whose field 2 holds these texts.
  void Make(const Texts& texts) {
    db_.New();
    db_.AddFields(L"", 2, 1);
    db_.SetType(L"", 0, 1, "tit", "");
    const auto count = static_cast<int>(texts.size());
    if (count > 0) db_.AddRecords(L"", count, 1);
    for (int r = 1; r <= count; ++r) {
      db_.Set(L"", r, 1, std::to_string(r));
      const std::string& text = texts[static_cast<std::size_t>(r - 1)];
      if (!text.empty()) db_.Set(L"", r, 2, text);
    }
  }
  /// The underlying records that a view shows, read through field 1.
  std::vector<int> Shown(std::wstring_view steps) {
    std::vector<int> shown;
    const int count = db_.Records(steps);
    for (int r = 1; r <= count; ++r) shown.push_back(std::stoi("0" + db_.Get(steps, r, 1)));
    return shown;
  }
  FilterClass& Filters() { return engine::Component::Instance().filters; }
  std::int16_t Slot(std::wstring_view steps) { return Filters().GetFilterID(db_.Path(steps)); }
  Runs RunsOf(std::wstring_view steps, int count) {
    Runs runs;
    for (int k = 1; k <= count; ++k) {
      runs.emplace_back(Filters().GetCashRec(Slot(steps), k, false),
                        Filters().GetCashRec(Slot(steps), k, true));
    }
    return runs;
  }

  Driver db_;
  RecordingInterface seen_;
};

TEST_F(FilterBuilderTest, TheFieldFormSearchesTheFieldDirectly) {
  Make({"abc", "abd", "", "abc"});
  EXPECT_EQ(Shown(L"/f(2)=abc"), (std::vector<int>{1, 4}));
  EXPECT_EQ(Shown(L"/f(2)<>abc"), (std::vector<int>{2, 3}));
  EXPECT_EQ(Shown(L"/f(2)=\"\""), (std::vector<int>{3}));
  EXPECT_EQ(Shown(L"/f(2)=ABC"), (std::vector<int>{}));
  EXPECT_EQ(db_.Error(), 0);
}

TEST_F(FilterBuilderTest, TheFieldFormMayHaveBlanksAndAnyLetterCase) {
  Make({"abc", "x"});
  EXPECT_EQ(Shown(L"/F (2) = abc"), (std::vector<int>{1}));
  EXPECT_EQ(Shown(L"/ f(1+1)=\"abc\""), (std::vector<int>{1}));
}

TEST_F(FilterBuilderTest, TheFieldMayBeNamed) {
  Make({"abc", "x", "abc"});
  db_.Set(L"", 0, 2, ToBytes(L" Город "));
  EXPECT_EQ(Shown(L"/f(\"город\")=abc"), (std::vector<int>{1, 3}));
  EXPECT_EQ(Shown(L"/f(\"ГОРОД\")<>abc"), (std::vector<int>{2}));
}

TEST_F(FilterBuilderTest, TheValueIsAnExpression) {
  Make({"12", "7", "2"});
  EXPECT_EQ(Shown(L"/f(2)=5+7"), (std::vector<int>{1}));
  EXPECT_EQ(Shown(L"/f(1)=records"), (std::vector<int>{3}));
  EXPECT_EQ(Shown(L"/f(2)=cell(3,2)"), (std::vector<int>{3}));
}

TEST_F(FilterBuilderTest, OtherOperatorCharactersAreSteppedOver) {
  Make({"a", "b"});
  EXPECT_EQ(Shown(L"/f(2)>=b"), (std::vector<int>{2}));
  EXPECT_EQ(Shown(L"/f(2)<=b"), (std::vector<int>{2}));
}

TEST_F(FilterBuilderTest, ConditionsThatOnlyBeginWithTheLetterAreGeneral) {
  Make({"a", "b"});
  EXPECT_EQ(Shown(L"/fields=2"), (std::vector<int>{1, 2}));
  EXPECT_EQ(Shown(L"/field(2,\"b\")=rec"), (std::vector<int>{2}));
  EXPECT_EQ(Shown(L"/false"), (std::vector<int>{}));
}

TEST_F(FilterBuilderTest, AGeneralConditionIsEvaluatedForEachRecord) {
  Make({"5", "50", "500"});
  EXPECT_EQ(Shown(L"/val(cell(rec,2))>49"), (std::vector<int>{2, 3}));
  EXPECT_EQ(Shown(L"/cell(rec,2)=\"50\""), (std::vector<int>{2}));
  EXPECT_EQ(Shown(L"/rec"), (std::vector<int>{}));
  EXPECT_EQ(Shown(L"/true"), (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(Shown(L"/TRUE"), (std::vector<int>{}));
}

TEST_F(FilterBuilderTest, MatchingNeighboursShareARun) {
  Make({"x", "x", "x", "", "", "", "x"});
  const std::wstring view = L"/f(2)=x";
  EXPECT_EQ(db_.Records(view), 4);
  EXPECT_EQ(RunsOf(view, 2), (Runs{{1, 3}, {7, 7}}));
  EXPECT_EQ(db_.Fields(view), 2);
  EXPECT_EQ(Filters().GetCashFld(Slot(view), 1), 1);
  EXPECT_EQ(Filters().GetCashFld(Slot(view), 2), 2);
  const std::wstring others = L"/f(2)<>x";
  EXPECT_EQ(db_.Records(others), 3);
  EXPECT_EQ(RunsOf(others, 1), (Runs{{4, 6}}));
  const std::wstring evaluated = L"/cell(rec,2)=\"x\"";
  EXPECT_EQ(db_.Records(evaluated), 4);
  EXPECT_EQ(RunsOf(evaluated, 2), (Runs{{1, 3}, {7, 7}}));
}

TEST_F(FilterBuilderTest, AViewOnAViewComparesTheCellsOfTheView) {
  Make({"a", "b", "a", "c", "a"});
  EXPECT_EQ(Shown(L"/f(2)=a/f(1)=5"), (std::vector<int>{5}));
  EXPECT_EQ(Shown(L"/f(2)=a/f(1)<>3"), (std::vector<int>{1, 5}));
  EXPECT_EQ(Shown(L"/f(2)=a/f(1)<>3/rec=2"), (std::vector<int>{5}));
}

TEST_F(FilterBuilderTest, AViewOnAViewContinuesRunsByTheNumbersOfTheView) {
  // The view shows records 2, 4, 6, 7 and 9 as 1 to 5.
  Make({"", "x", "", "x", "", "x", "x", "", "x"});
  const std::wstring view = L"/f(2)=x";
  ASSERT_EQ(Shown(view), (std::vector<int>{2, 4, 6, 7, 9}));
  // The run that ends with record 2 is continued by the third of the view, record 6: its number
  // there less 1 is 2. So the run comes to span records that did not match.
  const std::wstring some = view + L"/(rec-2)*(rec-2)=1";
  EXPECT_EQ(db_.Records(some), 2);
  EXPECT_EQ(RunsOf(some, 1), (Runs{{2, 6}}));
  EXPECT_EQ(Shown(some), (std::vector<int>{2, 3}));
  // Neighbours whose numbers do not fit stand in runs of their own.
  const std::wstring last = view + L"/rec>2";
  EXPECT_EQ(RunsOf(last, 0), (Runs{}));
  EXPECT_EQ(db_.Records(last), 3);
  EXPECT_EQ(RunsOf(last, 3), (Runs{{6, 6}, {7, 7}, {9, 9}}));
}

TEST_F(FilterBuilderTest, AValueWithQuotesComparesLikeAnyOther) {
  Make({"say \"hi\"", "say hi", "x"});
  const std::wstring base = L"/true";
  EXPECT_EQ(Shown(base + L"/f(2)=cell(1,2)"), (std::vector<int>{1}));
  EXPECT_EQ(Shown(base + L"/f(2)<>cell(1,2)"), (std::vector<int>{2, 3}));
  EXPECT_EQ(Shown(L"/f(2)=cell(1,2)"), (std::vector<int>{1}));
}

TEST_F(FilterBuilderTest, UniqueOnAViewBeepsAndShowsNothing) {
  Make({"a", "unique"});
  EXPECT_EQ(Shown(L"/true/f(2)=unique"), (std::vector<int>{}));
  EXPECT_EQ(seen_.beeps, 1);
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_NE(Slot(L"/true/f(2)=unique"), -1);
}

TEST_F(FilterBuilderTest, UniqueOnAMatrixIsAValue) {
  Make({"a", "unique"});
  EXPECT_EQ(Shown(L"/f(2)=unique"), (std::vector<int>{2}));
  EXPECT_EQ(seen_.beeps, 0);
}

TEST_F(FilterBuilderTest, APropertyMatrixIsEvaluatedRecordByRecord) {
  Make({"a"});
  db_.SetType(L"", -2, 1, "first", "1");
  db_.SetType(L"", -2, 2, "second", "2");
  const int records = db_.Records(L"/#");
  ASSERT_GT(records, 1);
  EXPECT_EQ(db_.Records(L"/#/f(1)=unique"), 0);
  EXPECT_EQ(seen_.beeps, 1);
  EXPECT_EQ(db_.Records(L"/#/f(1)<>none"), records);
}

TEST_F(FilterBuilderTest, DictionaryFieldsAreSearchedFixedOnesGiveNoRecords) {
  test::MakeStyledFile(db_);
  db_.AddRecords(L"", 3, 1);
  for (int r = 1; r <= 3; ++r) {
    db_.Set(L"", r, styled::kFree, std::to_string(r));
    db_.Set(L"", r, styled::kText, r == 2 ? "no" : "yes");
    db_.Set(L"", r, styled::kDictionary, r == 2 ? "no" : "yes");
  }
  EXPECT_EQ(Shown(L"/f(5)=yes"), (std::vector<int>{1, 3}));
  EXPECT_EQ(Shown(L"/f(5)<>yes"), (std::vector<int>{2}));
  EXPECT_EQ(Shown(L"/f(5)=none"), (std::vector<int>{}));
  EXPECT_EQ(Shown(L"/f(2)=yes"), (std::vector<int>{}));
  EXPECT_EQ(seen_.LastDialog().phases.back().value, 3) << "the bar ends full";
  EXPECT_EQ(Shown(L"/f(2)<>yes"), (std::vector<int>{}));
  EXPECT_EQ(Shown(L"/cell(rec,2)=\"yes\""), (std::vector<int>{1, 3}));
  EXPECT_EQ(Shown(L"/true/f(2)=yes"), (std::vector<int>{1, 3}));
}

TEST_F(FilterBuilderTest, MalformedFieldFormsLeaveFiveAndNoView) {
  Make({"a"});
  for (const wchar_t* view : {L"/f()=1", L"/f( )=1", L"/f(2)", L"/f(2)abc", L"/f(2)<a"}) {
    EXPECT_EQ(db_.Records(view), -1) << view;
    EXPECT_EQ(db_.Error(), 5) << view;
    EXPECT_EQ(Slot(view), -1) << view;
  }
  EXPECT_TRUE(seen_.messages.empty());
}

TEST_F(FilterBuilderTest, AFieldOfAnotherTypeLeavesThirteen) {
  Make({"a"});
  for (const wchar_t* view :
       {L"/f(1.5)=1", L"/f(abc)=1", L"/f(str(\"x\"))=1", L"/f(2)=\"a\"*\"b\""}) {
    EXPECT_EQ(db_.Records(view), -1) << view;
    EXPECT_EQ(db_.Error(), 13) << view;
    EXPECT_EQ(Slot(view), -1) << view;
  }
}

TEST_F(FilterBuilderTest, AFieldBelowOneFailsWithFive) {
  Make({"a"});
  for (const wchar_t* view : {L"/f(0)=a", L"/f(\"nobody\")=a"}) {
    seen_.messages.clear();
    EXPECT_EQ(db_.Records(view), -1) << view;
    EXPECT_EQ(db_.Error(), 5) << view;
    ASSERT_EQ(seen_.messages.size(), 1U);
    EXPECT_EQ(seen_.messages[0].text, kFailed);
    EXPECT_EQ(Slot(view), -1) << view;
  }
}

TEST_F(FilterBuilderTest, ARunTimeFailureIsToldAndLeavesItsNumber) {
  Make({"a"});
  EXPECT_EQ(db_.Records(L"/f(9)=a"), -1);
  EXPECT_EQ(db_.Error(), 9);
  ASSERT_EQ(seen_.messages.size(), 1U);
  EXPECT_EQ(seen_.messages[0].text, kFailed);
  EXPECT_EQ(seen_.messages[0].caption, L"");
  EXPECT_EQ(seen_.messages[0].buttons, Buttons::kOk);
  EXPECT_EQ(Slot(L"/f(9)=a"), -1);
}

TEST_F(FilterBuilderTest, ARecordThatFailsInTheLanguageDoesNotMatch) {
  Make({"0", "5", "0"});
  EXPECT_EQ(Shown(L"/(10/val(cell(rec,2)))=2"), (std::vector<int>{2}));
  EXPECT_EQ(db_.Error(), 0);
}

TEST_F(FilterBuilderTest, AnEmptyBaseGivesAnEmptyViewWhateverTheCondition) {
  Make({});
  EXPECT_EQ(db_.Records(L"/f()=1"), 0);
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Fields(L"/f()=1"), 2);
  EXPECT_EQ(db_.Get(L"/f()=1", 1, 1), "[Error=20]");
}

TEST_F(FilterBuilderTest, ABaseThatDoesNotResolveLeavesItsCode) {
  Make({"a"});
  engine::Component& component = engine::Component::Instance();
  component.filters.CreateFilter(db_.Path(L"/[1,1]/true"), L"true");
  EXPECT_EQ(component.storage.error.value(), 19);
  EXPECT_EQ(Slot(L"/[1,1]/true"), -1);
}

TEST_F(FilterBuilderTest, AnEmptyPathIsNoView) {
  engine::Component& component = engine::Component::Instance();
  component.filters.EraseCash();
  component.filters.CreateFilter(L"  ", L"");
  for (std::int16_t slot = 1; slot <= FilterClass::kSlots; ++slot) {
    EXPECT_EQ(component.filters.CashPthSetGet(slot), L"");
    EXPECT_EQ(component.filters.CashTimerSetGet(slot), 0);
  }
}

TEST_F(FilterBuilderTest, TheDialogShowsTheConditionAndTheRecord) {
  Make({"a", "b", "a"});
  db_.Records(L"/val(cell(rec,1))>1");
  ASSERT_EQ(seen_.dialogs.size(), 1U);
  const RecordingInterface::Shown& dialog = seen_.LastDialog();
  EXPECT_EQ(dialog.name, L"CrFlt");
  EXPECT_EQ(dialog.texts,
            (std::vector<RecordingInterface::LabelText>{{L"Label", L"val(cell(rec,1))>1"}}));
  EXPECT_EQ(dialog.phases, (std::vector<RecordingInterface::Phase>{{0, 3, 3}}));
  EXPECT_TRUE(dialog.closed);
  EXPECT_EQ(seen_.services, 1 + 3 + 1);
  db_.Records(L"/val(cell(rec,1))>1");
  EXPECT_EQ(seen_.dialogs.size(), 1U);
}

TEST_F(FilterBuilderTest, ADirectSearchShowsItsProgressInTheLabel) {
  Make({"a", "b", "a"});
  db_.Records(L"/f(2)=a");
  const RecordingInterface::Shown& dialog = seen_.LastDialog();
  ASSERT_FALSE(dialog.texts.empty());
  EXPECT_EQ(dialog.texts.front().text, L"f(2)=a");
  EXPECT_EQ(dialog.texts.back().text, L"f(2)=a: 3");
  EXPECT_EQ(dialog.phases, (std::vector<RecordingInterface::Phase>{{0, 3, 3}}));
}

class FilterCancelTest : public FilterBuilderTest,
                         public testing::WithParamInterface<std::wstring> {
 protected:
  void SetUp() override {
    Texts texts(1000);
    for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = i % 3 == 0 ? "x" : "y";
    Make(texts);
  }
};
INSTANTIATE_TEST_SUITE_P(Conditions, FilterCancelTest,
                         testing::Values(L"/f(2)=x", L"/cell(rec,2)=\"x\"", L"/f(2)<>y",
                                         L"/true/f(2)=x"));

TEST_P(FilterCancelTest, AConfirmedCancelKeepsWhatWasFound) {
  db_.Records(L"/true");
  seen_.answers = {Button::kYes};
  seen_.pressCancel = {.phase = 1, .value = 100};
  EXPECT_EQ(db_.Records(GetParam()), 34);
  EXPECT_EQ(db_.Error(), 0);
  ASSERT_EQ(seen_.messages.size(), 1U);
  EXPECT_EQ(seen_.messages[0].caption, L"ORV DB Server");
  EXPECT_EQ(seen_.messages[0].text,
            L"Если прервать создание фильтра то возможно будут паказаны не все записи "
            L"удовлетворяющие условие.\rВы хотите прервать создание фильтра в любом случае?");
  EXPECT_EQ(Shown(GetParam()).back(), 100);
}

TEST_P(FilterCancelTest, ARefusedCancelGoesOn) {
  db_.Records(L"/true");
  seen_.answers = {Button::kNo};
  seen_.pressCancel = {.phase = 1, .value = 100};
  EXPECT_EQ(db_.Records(GetParam()), 334);
  EXPECT_EQ(seen_.messages.size(), 1U);
}

TEST_P(FilterCancelTest, AnEarlierCancelHasNoEffect) {
  dialogs::CancelRequest::Make();
  EXPECT_EQ(db_.Records(GetParam()), 334);
}

TEST_P(FilterCancelTest, AHostCallThatClosesEverythingLeavesNoHalfView) {
  db_.Records(L"/true");
  int calls = 0;
  seen_.onServiceEvents = [&] {
    if (++calls == 50) db_.CloseAll();
  };
  EXPECT_EQ(db_.Records(GetParam()), -1);
  EXPECT_EQ(Slot(GetParam()), -1);
  seen_.onServiceEvents = nullptr;
  EXPECT_EQ(db_.Records(GetParam()), 334);
}

TEST_P(FilterCancelTest, AHostCallSeesTheViewAsItIsAtThatMoment) {
  db_.Records(L"/true");
  int calls = 0;
  int midway = -2;
  seen_.onServiceEvents = [&] {
    if (++calls == 50) midway = Filters().CashRecsSetGet(Slot(GetParam()));
  };
  EXPECT_EQ(db_.Records(GetParam()), 334);
  EXPECT_EQ(midway, 0);
}

TEST_F(FilterBuilderTest, APathGoesOnInTheFileThatAHostCallOpenedAnew) {
  Make({"x", "y"});
  db_.Put(L"", 1, 1, "nested");
  db_.AddFields(L"/[1,1]", 1, 1);
  db_.AddRecords(L"/[1,1]", 7, 1);
  bool once = true;
  seen_.onServiceEvents = [&] {
    if (!std::exchange(once, false)) return;
    db_.CloseAll();
    db_.Records(L"/f(2)=x");
  };
  EXPECT_EQ(db_.Records(L"/f(2)=x/[1,1]"), 7);
  db_.CloseAll();
  seen_.onServiceEvents = nullptr;
  EXPECT_EQ(db_.Records(L"/f(2)=y"), 1);
  db_.CloseAll();
  once = true;
  seen_.onServiceEvents = [&] {
    if (!std::exchange(once, false)) return;
    db_.CloseAll();
    db_.Records(L"/f(2)=y");
  };
  EXPECT_EQ(db_.Get(L"/f(2)=y", 1, 2), "y");
}

TEST_F(FilterBuilderTest, ATextWrittenFromTheEventsLeavesTheOneBeingWrittenAlone) {
  Make({"x", "y", "x"});
  bool once = true;
  seen_.onServiceEvents = [&] {
    if (std::exchange(once, false)) db_.Set(L"", 2, 1, "a text of the call from the events");
  };
  db_.Set(L"/f(2)=x", 2, 1, "outer");
  EXPECT_EQ(db_.Get(L"", 3, 1), "outer");
  EXPECT_EQ(db_.Get(L"", 2, 1), "a text of the call from the events");
}

TEST_F(FilterBuilderTest, ACancelledInnerViewEndsNothingButItself) {
  Make({"x", "x", "x", "x", "x", "x"});
  seen_.answers = {Button::kYes};
  seen_.pressCancel = {.phase = 1, .value = 3};
  db_.SetStyle(L"/cell(rec,2)=\"x\"", 1, 1, 5);
  EXPECT_EQ(seen_.messages.size(), 1U);
  EXPECT_EQ(db_.Style(L"", 1).substr(0, 3), "1 5") << "the conversion itself was not cancelled";
}

TEST_F(FilterBuilderTest, AnotherSpellingOfAFileMadeAnewIsBuiltAnew) {
  Make({"nut", "bolt", "nut"});
  const std::wstring file = db_.file();
  const std::size_t slash = file.rfind(L'/');
  const std::wstring other = file.substr(0, slash) + L"/." + file.substr(slash);
  std::wstring view = L'"' + other + L"\"/f(2)=nut";
  EXPECT_EQ(db_.engine.Records(view), 2);
  seen_.answers = {Button::kOk};
  db_.New();
  EXPECT_EQ(db_.Records(), 0);
  EXPECT_EQ(db_.engine.Records(view), 0);
}

TEST_F(FilterBuilderTest, WithoutASlotTheBuilderSaysSo) {
  Make({"a"});
  static double seconds = 0;
  seconds = 86000;
  platform::SetClock([] { return platform::LocalTime{2024, 5, 17, seconds}; });
  for (int view = 1; view <= 8; ++view) db_.Records(L"/rec=" + std::to_wstring(view));
  seconds = 3;
  EXPECT_TRUE(seen_.messages.empty());
  EXPECT_EQ(db_.Records(L"/rec=9"), -1);
  platform::SetClock(nullptr);
  ASSERT_EQ(seen_.messages.size(), 1U);
  EXPECT_EQ(seen_.messages[0].text, L"Error in ID 'CreateFilter'");
  EXPECT_EQ(seen_.messages[0].caption, L"");
  EXPECT_EQ(Slot(L"/rec=9"), -1);
  EXPECT_EQ(Slot(L"/rec=1"), 1);
}

TEST_F(FilterBuilderTest, AConditionMayReadThroughAnotherView) {
  Make({"a", "b", "a", "b"});
  const std::wstring other = L"cell(rec,1)=matrix_cell(" + db_.Path(L"/f(2)=b") + L",2,1,false)";
  EXPECT_EQ(Shown(L"/" + other), (std::vector<int>{4}));
  EXPECT_NE(Slot(L"/f(2)=b"), -1);
  EXPECT_EQ(db_.Error(), 0);
}

TEST_F(FilterBuilderTest, AViewInTheMiddleOfAPathLeadsIntoItsRecord) {
  Make({"a", "b", "a"});
  db_.AddFields(L"", 1, 3);
  for (int r = 1; r <= 3; ++r) {
    const std::wstring cell = L"/[" + std::to_wstring(r) + L",3]";
    db_.Put(L"", r, 3, "nested");
    db_.AddFields(cell, 1, 1);
    db_.AddRecords(cell, 1, 1);
    db_.Set(cell, 1, 1, std::to_string(r * 10));
  }
  EXPECT_EQ(db_.Get(L"/f(2)=a/[2,3]", 1, 1), "30");
  EXPECT_EQ(db_.Get(L"/f(2)=b/[1,3]", 1, 1), "20");
  EXPECT_EQ(db_.Records(L"/f(2)=b/[2,3]"), -1);
  EXPECT_EQ(db_.Error(), 19);
  EXPECT_EQ(Shown(L"/f(2)=b/[1,3]/f(1)=20"), (std::vector<int>{20}));
}

TEST_F(FilterBuilderTest, CellsAreWrittenThroughAView) {
  Make({"a", "b", "a"});
  db_.Set(L"/f(2)=a", 2, 1, "written");
  EXPECT_EQ(db_.Get(L"", 3, 1), "written");
}

TEST_F(FilterBuilderTest, ClosingForgetsTheViews) {
  Make({"a", "b"});
  EXPECT_EQ(db_.Records(L"/f(2)=a"), 1);
  db_.CloseAll();
  EXPECT_EQ(Slot(L"/f(2)=a"), -1);
  db_.Set(L"", 2, 2, "a");
  EXPECT_EQ(db_.Records(L"/f(2)=a"), 2);
}

}  // namespace
}  // namespace orv
