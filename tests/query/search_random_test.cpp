// Random searches against plain loops: needles, letter cases, styles, start records, views.
#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/code_page.h"
#include "support/driver.h"
#include "support/styled_file.h"
#include "support/tier.h"

namespace orv {
namespace {

using platform::ToWide;
using test::Driver;
namespace styled = test::styled;

/// The letters that the texts are made of: each small one and its capital.
constexpr std::wstring_view kSmall = L"abcyzёежяґї";
constexpr std::wstring_view kCapital = L"ABCYZЁЕЖЯҐЇ";
constexpr std::wstring_view kOther = L" -1";

std::wstring Lower(const std::wstring& text) {
  std::wstring lower = text;
  for (wchar_t& c : lower) {
    const std::size_t at = kCapital.find(c);
    if (at != std::wstring_view::npos) c = kSmall[at];
  }
  return lower;
}

class SearchRandomTest : public testing::Test {
 protected:
  std::size_t Below(std::size_t count) { return random_() % count; }

  std::wstring RandomText(std::size_t greatestLength) {
    static const std::wstring letters =
        std::wstring(kSmall) + std::wstring(kCapital) + std::wstring(kOther);
    // Few letters, so that texts meet.
    const std::size_t from = Below(letters.size());
    std::wstring text;
    for (std::size_t left = Below(greatestLength + 1); left > 0; --left) {
      text += letters[(from + Below(4) * kSmall.size()) % letters.size()];
    }
    return text;
  }

  std::wstring RandomCell(int f) {
    switch (f) {
      case styled::kFree:
        return Below(40) == 0 ? RandomText(400) : RandomText(12);
      case styled::kText:
        return RandomText(5);
      case styled::kPacked:
        return std::to_wstring(static_cast<int>(Below(60)) - 30);
      case styled::kInt:
        return std::to_wstring(static_cast<int>(Below(60)) * 1111 - 30000);
      default: {
        // A dictionary of one byte has room for few values.
        static const std::array<const wchar_t*, 7> kValues = {L"Ёж",  L"ёж",  L"еж", L"",
                                                              L"abc", L"ABC", L"яb"};
        return kValues[Below(kValues.size())];
      }
    }
  }

  /// Fills the file in portions, so that the data stand in many blocks, and rewrites some cells, so
  /// that texts stand in pieces.
  void Fill(int records) {
    test::MakeStyledFile(db_);
    for (int made = 0; made < records;) {
      const int portion = std::min(records - made, 1 + static_cast<int>(Below(9)));
      db_.AddRecords(L"", portion, made + 1);
      made += portion;
    }
    for (int r = 1; r <= records; ++r) {
      for (int f = 1; f <= styled::kFields; ++f) {
        for (std::size_t writes = 1 + Below(2); writes > 0; --writes) {
          if (Below(8) == 0) continue;
          db_.Set(L"", r, f, platform::ToBytes(RandomCell(f)));
          ASSERT_EQ(db_.Error(), 0);
        }
      }
    }
    for (int r = 1; r <= records; ++r) {
      auto& record = table_.emplace_back();
      for (int f = 1; f <= styled::kFields; ++f) record.push_back(ToWide(db_.Get(L"", r, f)));
    }
  }

  std::wstring RandomNeedle(int f) {
    const auto& record = table_[Below(table_.size())];
    std::wstring needle = record[static_cast<std::size_t>((f == 0 ? 1 : f) - 1)];
    if (Below(3) == 0) needle = needle.substr(std::min(needle.size(), Below(3)), 1 + Below(4));
    if (Below(3) == 0) needle = Lower(needle);
    if (Below(10) == 0) needle += L"a";
    return needle;
  }

  static bool Matches(const std::wstring& cell, const std::wstring& needle, bool inCell,
                      bool caseMatters) {
    const std::wstring text = caseMatters ? cell : Lower(cell);
    const std::wstring wanted = caseMatters ? needle : Lower(needle);
    return inCell ? text.find(wanted) != std::wstring::npos : text == wanted;
  }

  /// The plain loop over records and fields.
  int Expected(int from, int f, const std::wstring& needle, bool inCell, bool caseMatters) const {
    const auto count = static_cast<int>(table_.size());
    for (int r = std::max(from, 1); r <= count; ++r) {
      const auto& record = table_[static_cast<std::size_t>(r - 1)];
      for (int field = 1; field <= styled::kFields; ++field) {
        if (f != 0 && field != f) continue;
        if (Matches(record[static_cast<std::size_t>(field - 1)], needle, inCell, caseMatters))
          return r;
      }
    }
    return -1;
  }

  int Found(int from, int f, std::wstring needle, bool inCell, bool caseMatters) {
    std::wstring path = db_.Path();
    std::int32_t record = from;
    auto field = static_cast<std::int16_t>(f);
    std::int16_t region = 0;
    std::int16_t direct = 0;
    Boolean in = ToBoolean(inCell);
    Boolean matters = ToBoolean(caseMatters);
    return db_.engine.MtxFindFirst(path, record, field, needle, region, in, direct, matters);
  }

  Driver db_;
  std::mt19937 random_{20240518};
  std::vector<std::vector<std::wstring>> table_;
};

TEST_F(SearchRandomTest, SearchesFindWhatAPlainLoopFinds) {
  ASSERT_NO_FATAL_FAILURE(Fill(400));
  const int rounds = test::LongTier() ? 100000 : 10000;
  std::array<int, styled::kFields + 1> hits{};
  for (int round = 0; round < rounds; ++round) {
    const auto f = static_cast<int>(Below(styled::kFields + 1));
    const std::wstring needle = RandomNeedle(f);
    const int from = static_cast<int>(Below(table_.size() + 4)) - 2;
    const bool inCell = Below(2) == 0;
    // A field of type "int" compares exactly whatever is asked for; its texts are digits anyway.
    const bool caseMatters = Below(2) == 0;
    const int expected = Expected(from, f, needle, inCell, caseMatters);
    ASSERT_EQ(Found(from, f, needle, inCell, caseMatters), expected)
        << "round " << round << " field " << f << " from " << from << " in cell " << inCell
        << " case " << caseMatters;
    ASSERT_EQ(db_.Error(), 0);
    if (expected > 0) ++hits[static_cast<std::size_t>(f)];
  }
  for (const int count : hits) EXPECT_GT(count, rounds / 40);
}

TEST_F(SearchRandomTest, DirectViewsOfEveryStyleShowWhatAPlainLoopFinds) {
  ASSERT_NO_FATAL_FAILURE(Fill(300));
  for (int round = 0; round < 300; ++round) {
    const int f = Below(2) == 0 ? styled::kFree : styled::kDictionary;
    const std::wstring value = RandomNeedle(f);
    const bool equal = Below(2) == 0;
    std::vector<int> expected;
    for (std::size_t r = 0; r < table_.size(); ++r) {
      if ((table_[r][static_cast<std::size_t>(f - 1)] == value) == equal) {
        expected.push_back(static_cast<int>(r + 1));
      }
    }
    const std::wstring view =
        L"/f(" + std::to_wstring(f) + (equal ? L")=\"" : L")<>\"") + value + L"\"";
    ASSERT_EQ(db_.Records(view), static_cast<int>(expected.size()));
    for (std::size_t i = 0; i < expected.size(); i += 7) {
      const auto& record = table_[static_cast<std::size_t>(expected[i] - 1)];
      ASSERT_EQ(ToWide(db_.Get(view, static_cast<int>(i + 1), styled::kInt)),
                record[styled::kInt - 1]);
    }
  }
}

}  // namespace
}  // namespace orv
