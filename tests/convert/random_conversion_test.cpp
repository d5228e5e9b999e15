// Chains of conversions, with writings between them, on random and on real tables.
#include <random>

#include "convert/conversion_fixture.h"
#include "support/real_data.h"
#include "support/styled_file.h"
#include "support/tier.h"

namespace orv {
namespace {

using test::Driver;
using test::Texts;
namespace style = test::style;

/// Long enough for every text that the tests keep in fixed cells.
constexpr int kCellSize = 64;

class RandomTable {
 public:
  explicit RandomTable(unsigned seed) : random_(seed) {
    db_.New();
    db_.AddFields(L"", 2, 1);
    Insert();
  }

  void Step() {
    switch (Below(6)) {
      case 0:
        return Insert();
      case 1:
        return Convert();
      case 2:
        db_.SetType(L"", -2, 1, "@width", std::to_string(Below(100)));
        return;
      default:
        return Write();
    }
  }

  void ExpectEqual() {
    ASSERT_EQ(db_.Records(), std::ssize(texts_));
    for (std::size_t i = 0; i < texts_.size(); ++i) {
      ASSERT_EQ(db_.Get(L"", static_cast<int>(i) + 1, 1), texts_[i]) << "record " << i + 1;
    }
    db_.CloseAll();
    ASSERT_EQ(test::WalkStructures(db_.Bytes()).Text(), "");
  }

 private:
  int Below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

  /// No blanks at the ends: fixed cells are trimmed.
  std::string RandomText() {
    if (Below(8) == 0) return {};
    if (Below(2) == 0) return "value " + std::to_string(Below(20));
    std::string text(static_cast<std::size_t>(1 + Below(kCellSize)), ' ');
    for (char& c : text) c = static_cast<char>(33 + Below(223));
    return text;
  }

  void Insert() {
    const int count = 1 + Below(20);
    const int position = 1 + Below(static_cast<int>(texts_.size()) + 1);
    db_.AddRecords(L"", count, position);
    ASSERT_EQ(db_.Error(), 0);
    // At the last record itself nothing moves: the new ones follow it.
    const auto last = static_cast<int>(texts_.size());
    const int at = position == last ? last : position - 1;
    texts_.insert(texts_.begin() + at, static_cast<std::size_t>(count), std::string());
  }

  void Write() {
    const int r = 1 + Below(static_cast<int>(texts_.size()));
    std::string& text = texts_[static_cast<std::size_t>(r - 1)];
    text = RandomText();
    db_.Set(L"", r, 1, text);
    ASSERT_EQ(db_.Error(), 0);
  }

  void Convert() {
    constexpr int kStyles[] = {style::kFree, style::kFixed, style::kDictionary};
    db_.SetStyle(L"", 1, kStyles[Below(3)], kCellSize, Below(2) == 0, Below(2) == 0 ? 0 : 10);
    ASSERT_EQ(db_.Error(), 0);
  }

  std::mt19937 random_;
  Driver db_;
  Texts texts_;
};

TEST(RandomConversions, KeepEveryCell) {
  const unsigned tables = test::LongTier() ? 400 : 20;
  for (unsigned seed = 1; seed <= tables; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomTable table(seed);
    for (int step = 0; step < 120; ++step) {
      table.Step();
      if (testing::Test::HasFatalFailure()) return;
      if (step % 12 == 11) table.ExpectEqual();
    }
  }
}

TEST(RandomConversions, OfDamagedFilesNeverDoMoreThanFail) {
  const int rounds = test::LongTier() ? 20'000 : 300;
  Driver db;
  test::MakeStyledFile(db);
  db.AddRecords(L"", 6, 1);
  for (int r = 1; r <= 6; ++r) {
    for (int f = 1; f <= test::styled::kFields; ++f) db.Set(L"", r, f, std::to_string(r % 4));
  }
  ASSERT_EQ(db.Error(), 0);
  db.CloseAll();
  const std::string sound = db.Bytes();
  std::mt19937 random(7);
  const auto below = [&](std::size_t end) { return random() % end; };
  constexpr int kStyles[] = {style::kFree, style::kFixed, style::kDictionary};
  int failures = 0;
  for (int round = 0; round < rounds; ++round) {
    std::string damaged = sound;
    for (std::size_t hit = 0; hit <= below(4); ++hit) {
      damaged[51 + below(damaged.size() - 51)] = static_cast<char>(below(256));
    }
    if (below(5) == 0) damaged.resize(60 + below(damaged.size() - 60));
    db.CloseAll();
    test::WriteBytes(db.file(), damaged);
    const int field = 1 + static_cast<int>(below(test::styled::kFields));
    db.SetStyle(L"", field, kStyles[below(3)], 8);
    failures += db.Error() != 0 ? 1 : 0;
    db.Get(L"", 1, field);
    db.Set(L"", 2, field, "other");
  }
  EXPECT_GT(failures, 0);
  EXPECT_LT(failures, rounds);
}

class RealTable : public testing::TestWithParam<const char*> {};

TEST_P(RealTable, SurvivesEveryStyle) {
  const auto path = test::RealData(GetParam());
  if (!path) GTEST_SKIP() << GetParam() << " is not beside the project";
  Driver db;
  test::WriteBytes(db.file(), test::ReadBytes(path->wstring()));
  const int records = db.Records();
  const int fields = db.Fields();
  ASSERT_GT(records, 0);
  std::vector<Texts> columns(static_cast<std::size_t>(fields));
  std::size_t longest = 1;
  for (int f = 1; f <= fields; ++f) {
    for (int r = 1; r <= records; ++r) {
      const std::string text = db.Get(L"", r, f);
      // Fixed cells lose the blanks around a text.
      columns[static_cast<std::size_t>(f - 1)].push_back(
          std::string(platform::Trim(std::string_view(text))));
      longest = std::max(longest, text.size());
    }
  }
  test::RecordingInterface screen;
  db.SaveAs(L"", L"copy.orv", false, 1);
  ASSERT_EQ(db.Error(), 0);
  db.Use(L"copy.orv");
  const auto expectSame = [&](const char* when) {
    for (int f = 1; f <= fields; ++f) {
      const Texts& column = columns[static_cast<std::size_t>(f - 1)];
      for (int r = 1; r <= records; ++r) {
        const std::string text = db.Get(L"", r, f);
        ASSERT_EQ(platform::Trim(std::string_view(text)), column[static_cast<std::size_t>(r - 1)])
            << when << ": record " << r << ", field " << f;
      }
    }
    db.CloseAll();
    ASSERT_EQ(test::WalkStructures(db.Bytes()).Text(), "");
  };
  expectSame("copied");
  constexpr int kWay[] = {style::kDictionary, style::kFixed,      style::kFree,
                          style::kFixed,      style::kDictionary, style::kFree};
  for (const int next : kWay) {
    for (int f = 1; f <= fields; ++f) {
      db.SetStyle(L"", f, next, static_cast<int>(longest));
      ASSERT_EQ(db.Error(), 0);
    }
    expectSame(next == style::kFree ? "free" : next == style::kFixed ? "fixed" : "dictionary");
  }
}

INSTANTIATE_TEST_SUITE_P(Of, RealTable,
                         testing::Values("cbr__BNKSEEK.DBF", "kladr__SOCRBASE.DBF",
                                         "ddr__tl_2019_01_place.dbf", "infused__dbase_03.dbf",
                                         "javadbf__sids.dbf"));

}  // namespace
}  // namespace orv
