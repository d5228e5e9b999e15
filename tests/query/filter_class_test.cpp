// The eight slots of filtered views and their caches.
#include "query/filter_class.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dialogs/recording_interface.h"
#include "platform/clock.h"
#include "support/raises.h"

namespace orv {
namespace {

using platform::RunTimeError;
using query::FilterClass;

/// A clock that stands still until a test moves it.
class ClockGuard {
 public:
  ClockGuard() {
    seconds = 1000;
    platform::SetClock([] { return platform::LocalTime{2024, 5, 17, seconds}; });
  }
  ~ClockGuard() { platform::SetClock(nullptr); }
  static inline double seconds = 0;
};

class FilterClassTest : public testing::Test {
 protected:
  void Fill(std::int16_t slot, const std::wstring& path) {
    filters_.CashPthSetGet(slot, path);
    filters_.CashRecsSetGet(slot, 4);
    filters_.CashFldsSetGet(slot, 2);
    filters_.ReDimCashFld(slot);
    filters_.SetCashFld(slot, 1, 1);
    filters_.SetCashFld(slot, 2, 2);
    filters_.ReDimCashRec(slot, 2);
    filters_.SetCashRec(slot, 1, 3, 5);
    filters_.SetCashRec(slot, 2, 9, 9);
  }
  /// Takes a slot for a view as the builder does.
  std::int16_t Build(const std::wstring& path) {
    FilterClass::Claim claim(filters_, path);
    if (claim.slot() != 0) claim.Complete();
    return claim.slot();
  }

  FilterClass filters_;
};

TEST_F(FilterClassTest, VisibleRecordsAreFoundThroughTheRuns) {
  Fill(1, L"a");
  const std::vector<std::int32_t> expected = {3, 4, 5, 9, -1, -1};
  for (std::int32_t r = 1; r <= 6; ++r) {
    EXPECT_EQ(filters_.GetFilterValue(1, r), expected[static_cast<std::size_t>(r - 1)]);
  }
}

TEST_F(FilterClassTest, ARecordBelowOneIsCountedBackFromTheFirstRun) {
  Fill(1, L"a");
  EXPECT_EQ(filters_.GetFilterValue(1, 0), 2);
  EXPECT_EQ(filters_.GetFilterValue(1, -3), -1);
}

TEST_F(FilterClassTest, AFreeSlotHasNoRecords) {
  EXPECT_EQ(filters_.GetFilterValue(3, 1), -1);
  EXPECT_EQ(filters_.CashPthSetGet(3), L"");
  EXPECT_EQ(filters_.CashRecsSetGet(3), 0);
  EXPECT_EQ(filters_.CashFldsSetGet(3), 0);
  EXPECT_EQ(filters_.CashTimerSetGet(3), 0);
}

/// The walk over the runs as it is stated.
std::int32_t Walk(const std::vector<std::pair<std::int32_t, std::int32_t>>& runs, std::int32_t r) {
  std::int32_t before = 0;
  for (const auto& [up, end] : runs) {
    const std::int32_t n = end - up + 1;
    if (before + n >= r) return up + (r - before) - 1;
    before += n;
  }
  return -1;
}

TEST_F(FilterClassTest, ManyRunsGiveWhatTheWalkGives) {
  std::mt19937 random(99);
  for (int round = 0; round < 60; ++round) {
    const auto count = static_cast<std::int32_t>(random() % 200);
    // Every third table has empty and backward runs, which only a host can set.
    const bool wild = round % 3 == 0;
    std::vector<std::pair<std::int32_t, std::int32_t>> runs;
    filters_.ReDimCashRec(2, count);
    std::int32_t total = 0;
    for (std::int32_t k = 1; k <= count; ++k) {
      const auto up = static_cast<std::int32_t>(random() % 1000);
      const auto length = static_cast<std::int32_t>(random() % 5) + (wild ? -2 : 1);
      runs.emplace_back(up, up + length - 1);
      filters_.SetCashRec(2, k, up, up + length - 1);
      total += length;
    }
    for (std::int32_t r = -2; r <= total + 3; ++r) {
      ASSERT_EQ(filters_.GetFilterValue(2, r), Walk(runs, r)) << round << " record " << r;
    }
    for (int any = 0; any < 300; ++any) {
      const auto r = static_cast<std::int32_t>(random() % 600);
      ASSERT_EQ(filters_.GetFilterValue(2, r), Walk(runs, r)) << round << " record " << r;
    }
  }
}

TEST_F(FilterClassTest, RunsWhoseSumsLeave32BitsAreWalked) {
  filters_.ReDimCashRec(1, 3);
  filters_.SetCashRec(1, 1, 1, 2147483647);
  filters_.SetCashRec(1, 2, 1, 2147483647);
  EXPECT_EQ(filters_.GetFilterValue(1, 2147483647), 2147483647);
  EXPECT_EQ(filters_.GetFilterValue(1, 5), 5);
}

TEST_F(FilterClassTest, PathsAreComparedLetterByLetter) {
  Fill(2, L"\"c:\\a.orv\"/cell(rec,1)=\"x\"");
  EXPECT_EQ(filters_.GetFilterID(L"\"c:\\a.orv\"/cell(rec,1)=\"x\""), 2);
  EXPECT_EQ(filters_.GetFilterID(L"\"c:\\a.orv\"/cell(rec,1)=\"X\""), -1);
  EXPECT_EQ(filters_.GetFilterID(L"\"c:\\a.orv\"/cell(rec,1)="), -1);
}

TEST_F(FilterClassTest, TheFirstOfTwoEqualPathsCounts) {
  Fill(5, L"twice");
  Fill(3, L"twice");
  EXPECT_EQ(filters_.GetFilterID(L"twice"), 3);
}

TEST_F(FilterClassTest, WritingThePropertyPthOnlyTakesThePath) {
  Fill(4, L"kept");
  EXPECT_EQ(filters_.Pth(4), L"kept");
  filters_.Pth(4, L"another");
  EXPECT_EQ(filters_.Pth(4), L"");
  EXPECT_EQ(filters_.GetFilterID(L"kept"), -1);
  EXPECT_EQ(filters_.GetFilterID(L"another"), -1);
  EXPECT_EQ(filters_.CashRecsSetGet(4), 4);
  EXPECT_EQ(filters_.GetFilterValue(4, 4), 9);
}

TEST_F(FilterClassTest, CountsAndNumbersOfAViewAsTexts) {
  Fill(6, L"view");
  EXPECT_EQ(filters_.Records(L"view"), "4");
  EXPECT_EQ(filters_.Fields(L"view"), "2");
  EXPECT_EQ(filters_.RecUndFlt(L"view", 4), "9");
  EXPECT_EQ(filters_.RecUndFlt(L"view", 5), "-1");
  EXPECT_EQ(filters_.FldUndFlt(L"view", 2), "2");
}

TEST_F(FilterClassTest, AnUnknownViewRaisesFive) {
  EXPECT_RAISES(RunTimeError::kInvalidCall, filters_.Records(L"none"));
  EXPECT_RAISES(RunTimeError::kInvalidCall, filters_.Fields(L"none"));
  EXPECT_RAISES(RunTimeError::kInvalidCall, filters_.RecUndFlt(L"none", 1));
  EXPECT_RAISES(RunTimeError::kInvalidCall, filters_.FldUndFlt(L"none", 1));
}

TEST_F(FilterClassTest, EraseCashFreesAllSlots) {
  for (std::int16_t slot = 1; slot <= 8; ++slot) Fill(slot, L"view " + std::to_wstring(slot));
  filters_.EraseCash();
  for (std::int16_t slot = 1; slot <= 8; ++slot) {
    const std::wstring path = L"view " + std::to_wstring(slot);
    EXPECT_EQ(filters_.GetFilterID(path), -1);
    EXPECT_RAISES(RunTimeError::kInvalidCall, filters_.Records(path));
    EXPECT_EQ(filters_.CashRecsSetGet(slot), 0);
    EXPECT_EQ(filters_.CashTimerSetGet(slot), 0);
    EXPECT_EQ(filters_.GetCashFld(slot, 1), 0);
    EXPECT_RAISES(RunTimeError::kSubscript, filters_.GetCashRec(slot, 1, false));
  }
}

TEST_F(FilterClassTest, TheRecordCacheGivesBothEndsOfARun) {
  Fill(1, L"a");
  EXPECT_EQ(filters_.GetCashRec(1, 1, false), 3);
  EXPECT_EQ(filters_.GetCashRec(1, 1, true), 5);
  filters_.ReDimCashRec(1, 2);
  EXPECT_EQ(filters_.GetCashRec(1, 1, true), 0);
}

TEST_F(FilterClassTest, SomeOperationsIgnoreIndexesOutsideTheSlots) {
  for (const std::int16_t index : std::initializer_list<std::int16_t>{0, 9, -1}) {
    filters_.ReDimCashFld(index);
    filters_.SetCashFld(index, 1, 1);
    filters_.SetCashRec(index, 1, 1, 1);
    EXPECT_EQ(filters_.GetCashFld(index, 1), 0);
    EXPECT_EQ(filters_.GetCashRec(index, 1, true), 0);
  }
}

TEST_F(FilterClassTest, OtherOperationsRaiseNineOutsideTheSlots) {
  for (const std::int16_t index : std::initializer_list<std::int16_t>{0, 9}) {
    EXPECT_RAISES(RunTimeError::kSubscript, filters_.CashTimerSetGet(index));
    EXPECT_RAISES(RunTimeError::kSubscript, filters_.CashTimerSetGet(index, 1.0F));
    EXPECT_RAISES(RunTimeError::kSubscript, filters_.CashPthSetGet(index));
    EXPECT_RAISES(RunTimeError::kSubscript, filters_.CashRecsSetGet(index));
    EXPECT_RAISES(RunTimeError::kSubscript, filters_.CashFldsSetGet(index));
    EXPECT_RAISES(RunTimeError::kSubscript, filters_.Pth(index));
    EXPECT_RAISES(RunTimeError::kSubscript, filters_.ReDimCashRec(index, 1));
    EXPECT_RAISES(RunTimeError::kSubscript, filters_.GetFilterValue(index, 1));
  }
}

TEST_F(FilterClassTest, EntriesOutsideTheCachesRaiseNine) {
  Fill(1, L"a");
  EXPECT_RAISES(RunTimeError::kSubscript, filters_.SetCashFld(1, 3, 1));
  EXPECT_RAISES(RunTimeError::kSubscript, filters_.SetCashFld(1, 0, 1));
  EXPECT_RAISES(RunTimeError::kSubscript, filters_.SetCashRec(1, 3, 1, 1));
  EXPECT_RAISES(RunTimeError::kOverflow, filters_.SetCashFld(1, 1, 32768));
  EXPECT_EQ(filters_.GetCashFld(1, 3), 0);
}

TEST_F(FilterClassTest, ClearingAWrongSlotIsToldToTheUser) {
  test::RecordingInterface seen;
  filters_.ClearFilter(9);
  ASSERT_EQ(seen.messages.size(), 1U);
  EXPECT_EQ(seen.messages[0].text, L"Error in Clear Filter");
  EXPECT_EQ(seen.messages[0].caption, L"");
}

TEST_F(FilterClassTest, FreeSlotsAreTakenInTheirOrder) {
  for (std::int16_t slot = 1; slot <= 8; ++slot) {
    EXPECT_EQ(Build(L"view " + std::to_wstring(slot)), slot);
  }
}

TEST_F(FilterClassTest, TheNinthViewTakesTheSlotOfTheFirst) {
  const ClockGuard clock;
  for (int view = 1; view <= 8; ++view) {
    ClockGuard::seconds += 1;
    Build(L"view " + std::to_wstring(view));
  }
  ClockGuard::seconds += 1;
  EXPECT_EQ(Build(L"view 9"), 1);
  EXPECT_EQ(filters_.GetFilterID(L"view 1"), -1);
  EXPECT_EQ(filters_.GetFilterID(L"view 2"), 2);
  EXPECT_EQ(filters_.GetFilterID(L"view 9"), 1);
}

TEST_F(FilterClassTest, SlotsKeepTheirOrderWhileTheClockStandsStill) {
  const ClockGuard clock;
  for (int view = 1; view <= 30; ++view) {
    EXPECT_EQ(Build(L"view " + std::to_wstring(view)), (view - 1) % 8 + 1);
  }
}

TEST_F(FilterClassTest, AStampIsTheTimeOfDay) {
  const ClockGuard clock;
  ClockGuard::seconds = 40000.5;
  EXPECT_EQ(filters_.CashTimerSetGet(Build(L"view")), 40000.5F);
}

TEST_F(FilterClassTest, NoSlotIsToBeHadAfterMidnightWhileAllAreInUse) {
  const ClockGuard clock;
  ClockGuard::seconds = 86000;
  for (int view = 1; view <= 8; ++view) Build(L"view " + std::to_wstring(view));
  ClockGuard::seconds = 5;
  EXPECT_EQ(Build(L"late"), 0);
  filters_.ClearFilter(6);
  EXPECT_EQ(Build(L"late"), 6);
  EXPECT_EQ(filters_.CashTimerSetGet(6), 5.0F);
  EXPECT_EQ(Build(L"later"), 6);
  EXPECT_GT(filters_.CashTimerSetGet(6), 5.0F);
}

TEST_F(FilterClassTest, TheSmallestTimerIsChosenTheLowestSlotAmongEqualOnes) {
  const ClockGuard clock;
  for (std::int16_t slot = 1; slot <= 8; ++slot) filters_.CashTimerSetGet(slot, 500);
  filters_.CashTimerSetGet(4, 100);
  filters_.CashTimerSetGet(7, 100);
  EXPECT_EQ(Build(L"view"), 4);
}

TEST_F(FilterClassTest, SlotsThatThePathStandsOnAreNotChosen) {
  Build(L"m/a");
  for (int view = 2; view <= 8; ++view) Build(L"other " + std::to_wstring(view));
  EXPECT_EQ(Build(L"m/a/b"), 2);
  EXPECT_EQ(Build(L"m/a/b/c"), 3);
  EXPECT_EQ(filters_.GetFilterID(L"m/a"), 1);
}

TEST_F(FilterClassTest, APathThatOnlyBeginsAlikeStandsOnNothing) {
  Build(L"m/a");
  for (int view = 2; view <= 8; ++view) Build(L"other " + std::to_wstring(view));
  EXPECT_EQ(Build(L"m/ab"), 1);
}

TEST_F(FilterClassTest, NineViewsOnOneAnotherDoNotFit) {
  std::wstring path = L"m";
  for (int level = 1; level <= 8; ++level) {
    path += L"/c" + std::to_wstring(level);
    EXPECT_EQ(Build(path), level);
  }
  EXPECT_EQ(Build(path + L"/c9"), 0);
}

TEST_F(FilterClassTest, ASlotUnderConstructionAndItsBaseAreNotChosen) {
  Build(L"m/a");
  FilterClass::Claim outer(filters_, L"m/a/b");
  EXPECT_EQ(outer.slot(), 2);
  for (int view = 3; view <= 8; ++view) EXPECT_EQ(Build(L"other " + std::to_wstring(view)), view);
  EXPECT_EQ(Build(L"other 9"), 3);
  EXPECT_TRUE(outer.Stands());
  filters_.EraseCash();
  EXPECT_FALSE(outer.Stands());
}

TEST_F(FilterClassTest, DropFileFreesTheViewsIntoThatFile) {
  Fill(1, L"\"/tmp/Data.orv\"/a");
  Fill(2, L"\"/tmp/data.orv\"/[1,2]/b");
  Fill(3, L"\"/tmp/data.orv2\"/a");
  Fill(4, L"\"/tmp/other.orv\"/a");
  filters_.DropFile(L"/TMP/DATA.orv");
  EXPECT_EQ(filters_.CashPthSetGet(1), L"");
  EXPECT_EQ(filters_.CashPthSetGet(2), L"");
  EXPECT_NE(filters_.CashPthSetGet(3), L"");
  EXPECT_NE(filters_.CashPthSetGet(4), L"");
}

}  // namespace
}  // namespace orv
