// Random conditions over real tables: views against plain loops.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "engine/component.h"
#include "platform/code_page.h"
#include "query/filter_model.h"
#include "support/driver.h"
#include "support/real_data.h"
#include "support/tier.h"

namespace orv {
namespace {

using test::ConditionMaker;
using test::Driver;
using test::ModelView;
using test::RandomCondition;
using test::Table;

constexpr const char* kTable = "cbr__BNKSEEK.DBF";
constexpr int kMostFields = 9;
constexpr int kMostRecords = 900;

int Rounds() { return test::LongTier() ? 5000 : 500; }

/// The driver's dBASE III table, read cell by cell.
Table ReadTable(Driver& db) {
  Table table;
  const int records = std::min(db.Records(), kMostRecords);
  const int fields = std::min(db.Fields(), kMostFields);
  for (int r = 1; r <= records; ++r) {
    std::vector<std::string>& record = table.emplace_back();
    for (int f = 1; f <= fields; ++f) record.push_back(db.Get(L"", r, f));
  }
  return table;
}

class FilterRandomTest : public testing::Test {
 protected:
  void SetUp() override {
    const auto source = test::RealData(kTable);
    if (!source) {
      std::cout << "SKIPPED: the real table " << kTable << " is not there\n";
      GTEST_SKIP() << kTable << " is not there";
    }
    db_.Use(L"table.dbf");
    std::filesystem::copy_file(*source, db_.file());
    table_ = ReadTable(db_);
    ASSERT_GT(table_.size(), 500U);
  }
  void TearDown() override { db_.CloseAll(); }

  /// The same texts in a container file.
  void Import() {
    db_.Use(L"table.orv");
    db_.New();
    db_.AddFields(L"", static_cast<int>(table_[0].size()), 1);
    db_.AddRecords(L"", static_cast<int>(table_.size()), 1);
    for (std::size_t r = 0; r < table_.size(); ++r) {
      for (std::size_t f = 0; f < table_[r].size(); ++f) {
        if (table_[r][f].empty()) continue;
        db_.Set(L"", static_cast<int>(r + 1), static_cast<int>(f + 1), table_[r][f]);
      }
    }
    ASSERT_EQ(db_.Error(), 0);
  }

  ModelView Filter(const ModelView& base, const RandomCondition& condition, bool onView) const {
    return base.Filter(
        [&](int number, int record) {
          return condition.holds(number, table_[static_cast<std::size_t>(record - 1)]);
        },
        onView);
  }

  /// Compares the view with the model: its count, and some of its records in every field.
  void ExpectView(const std::wstring& steps, const ModelView& model, ConditionMaker& maker) {
    ASSERT_EQ(db_.Records(steps), static_cast<int>(model.shown.size()));
    ASSERT_EQ(db_.Error(), 0);
    if (model.shown.empty()) return;
    for (int sample = 0; sample < 12; ++sample) {
      const std::size_t i = sample == 0 ? model.shown.size() - 1 : maker.Below(model.shown.size());
      const auto& record = table_[static_cast<std::size_t>(model.shown[i] - 1)];
      const std::size_t f = maker.Below(record.size());
      ASSERT_EQ(db_.Get(steps, static_cast<int>(i + 1), static_cast<int>(f + 1)), record[f])
          << "record " << i + 1 << " field " << f + 1;
    }
  }

  static std::string Narrow(const std::wstring& text) {
    std::string narrow;
    for (const wchar_t c : text) narrow += c < 128 ? static_cast<char>(c) : '?';
    return narrow;
  }

  Driver db_;
  Table table_;
};

TEST_F(FilterRandomTest, ViewsOnAContainerShowWhatAPlainLoopFinds) {
  Import();
  ConditionMaker maker(table_, 1);
  const ModelView whole = ModelView::Whole(table_);
  int some = 0;
  for (int round = 0; round < Rounds(); ++round) {
    const RandomCondition condition = maker.Next();
    const ModelView model = Filter(whole, condition, false);
    if (!model.shown.empty() && model.shown.size() < table_.size()) ++some;
    ASSERT_NO_FATAL_FAILURE(ExpectView(L"/" + condition.text, model, maker))
        << "round " << round << ": " << Narrow(condition.text);
  }
  EXPECT_GT(some, Rounds() / 3);
}

TEST_F(FilterRandomTest, ViewsOnADbaseTableShowWhatAPlainLoopFinds) {
  ConditionMaker maker(table_, 2);
  // The table itself is longer than the part of it that is held here.
  const std::wstring part = L"rec<" + std::to_wstring(table_.size() + 1);
  const ModelView whole = ModelView::Whole(table_);
  for (int round = 0; round < Rounds() / 2; ++round) {
    const RandomCondition condition = maker.Next();
    const ModelView model = Filter(whole, condition, true);
    ASSERT_NO_FATAL_FAILURE(ExpectView(L"/" + part + L"/" + condition.text, model, maker))
        << "round " << round << ": " << Narrow(condition.text);
  }
}

TEST_F(FilterRandomTest, DirectSearchesOfADbaseTableShowWhatAPlainLoopFinds) {
  const int records = db_.Records();
  for (int round = 0; round < 40; ++round) {
    const auto f = static_cast<std::size_t>(round) % table_[0].size();
    const std::string& text = table_[static_cast<std::size_t>(round) * 7 % table_.size()][f];
    if (text.find('"') != std::string::npos) continue;
    int expected = 0;
    for (int r = 1; r <= records; ++r) {
      if (db_.Get(L"", r, static_cast<int>(f + 1)) == text) ++expected;
    }
    const std::wstring value = L"\"" + platform::ToWide(text) + L"\"";
    const std::wstring field = L"/f(" + std::to_wstring(f + 1) + L")";
    ASSERT_EQ(db_.Records(field + L"=" + value), expected);
    ASSERT_EQ(db_.Records(field + L"<>" + value), records - expected);
  }
}

TEST_F(FilterRandomTest, ViewsOnViewsShowWhatPlainLoopsFind) {
  Import();
  ConditionMaker maker(table_, 3);
  int deep = 0;
  for (int round = 0; round < Rounds(); ++round) {
    ModelView model = ModelView::Whole(table_);
    std::wstring steps;
    const std::size_t levels = 2 + maker.Below(3);
    for (std::size_t level = 0; level < levels; ++level) {
      const RandomCondition condition = maker.Next();
      steps += L"/" + condition.text;
      model = Filter(model, condition, level > 0);
    }
    if (model.shown.size() > 1) ++deep;
    ASSERT_NO_FATAL_FAILURE(ExpectView(steps, model, maker))
        << "round " << round << ": " << Narrow(steps);
  }
  EXPECT_GT(deep, Rounds() / 10);
}

TEST_F(FilterRandomTest, PathsLeadThroughViewsIntoNestedTables) {
  Import();
  // Field n + 1 of every tenth record holds a table with the record's number in it.
  const int nested = static_cast<int>(table_[0].size()) + 1;
  db_.AddFields(L"", 1, nested);
  const std::wstring field = std::to_wstring(nested);
  for (int r = 10; r <= static_cast<int>(table_.size()); r += 10) {
    const std::wstring cell = L"/[" + std::to_wstring(r) + L"," + field + L"]";
    db_.Put(L"", r, nested, "nested");
    db_.AddFields(cell, 1, 1);
    db_.AddRecords(cell, 3, 1);
    for (int i = 1; i <= 3; ++i) db_.Set(cell, i, 1, std::to_string(r * i));
  }
  ASSERT_EQ(db_.Error(), 0);
  ConditionMaker maker(table_, 4);
  const ModelView whole = ModelView::Whole(table_);
  int entered = 0;
  for (int round = 0; round < Rounds(); ++round) {
    const RandomCondition condition = maker.Next();
    const ModelView model = Filter(whole, condition, false);
    if (model.shown.empty()) continue;
    const std::size_t i = maker.Below(model.shown.size());
    const std::wstring steps =
        L"/" + condition.text + L"/[" + std::to_wstring(i + 1) + L"," + field + L"]";
    const int record = model.shown[i];
    if (record % 10 != 0) {
      ASSERT_EQ(db_.Records(steps), -1) << Narrow(steps);
      ASSERT_EQ(db_.Error(), 19) << Narrow(steps);
      continue;
    }
    ++entered;
    ASSERT_EQ(db_.Get(steps, 2, 1), std::to_string(record * 2)) << Narrow(steps);
    ASSERT_EQ(db_.Get(steps + L"/cell(rec,1)<>\"x\"", 3, 1), std::to_string(record * 3));
    ASSERT_EQ(db_.Records(steps + L"/f(1)=" + std::to_wstring(record)), 1) << Narrow(steps);
  }
  EXPECT_GT(entered, Rounds() / 40);
}

TEST_F(FilterRandomTest, EightSlotsServeMoreThanEightViewsInAnyOrder) {
  Import();
  constexpr std::size_t kViews = 13;
  constexpr std::size_t kSlots = 8;
  ConditionMaker maker(table_, 5);
  const ModelView whole = ModelView::Whole(table_);
  std::vector<std::pair<std::wstring, ModelView>> views;
  while (views.size() < kViews) {
    const RandomCondition condition = maker.Next();
    const bool known = std::any_of(views.begin(), views.end(), [&](const auto& view) {
      return view.first == L"/" + condition.text;
    });
    if (!known) views.emplace_back(L"/" + condition.text, Filter(whole, condition, false));
  }
  const query::FilterClass& filters = engine::Component::Instance().filters;
  std::list<std::wstring> kept;  // the oldest first
  for (int access = 0; access < Rounds(); ++access) {
    const auto& [steps, model] = views[maker.Below(kViews)];
    ASSERT_NO_FATAL_FAILURE(ExpectView(steps, model, maker)) << Narrow(steps);
    if (std::find(kept.begin(), kept.end(), steps) == kept.end()) {
      if (kept.size() == kSlots) kept.pop_front();
      kept.push_back(steps);
    }
    for (const auto& [other, ignored] : views) {
      const bool expected = std::find(kept.begin(), kept.end(), other) != kept.end();
      ASSERT_EQ(filters.GetFilterID(db_.Path(other)) != -1, expected) << "access " << access;
    }
  }
}

}  // namespace
}  // namespace orv
