// Public tables that other programs wrote, cell by cell beside what shapelib reads.
//
// The tables are not part of the project. They are looked for in the folder that the environment
// variable ORV_TEST_DATA names, else in ../shared/data beside the project; tests without their
// table are skipped.
#include <cctype>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <shapefil.h>

#include "support/driver.h"
#include "support/real_data.h"

namespace orv {
namespace {

using test::Driver;

struct Closer {
  void operator()(DBFHandle table) const { DBFClose(table); }
};
using Table = std::unique_ptr<DBFInfo, Closer>;

/// Blanks at both ends removed, the letters of code page 866 moved to 1251: what a cell's bytes
/// stand for.
std::string Converted(std::string bytes) {
  while (!bytes.empty() && bytes.back() == ' ') bytes.pop_back();
  bytes.erase(0, bytes.find_first_not_of(' '));
  for (char& c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 128 && byte <= 175) c = static_cast<char>(byte + 64);
    if (byte >= 224 && byte <= 239) c = static_cast<char>(byte + 16);
  }
  return bytes;
}

struct TableCase {
  const char* file;
  int records;  ///< -1: whatever the independent reader says
  int fields;   ///< counted from the header's length; -1 likewise
  /// The other reader refuses the table because its fields do not fit its records.
  bool refused = false;
};

void PrintTo(const TableCase& c, std::ostream* out) { *out << c.file; }

class RealTableTest : public testing::TestWithParam<TableCase> {
 protected:
  void SetUp() override {
    const auto source = test::RealData(GetParam().file);
    if (!source) {
      GTEST_SKIP() << "THE TABLE " << GetParam().file
                   << " IS NOT HERE: set ORV_TEST_DATA to the folder "
                   << "of the public tables";
    }
    db_.Use(L"table.dbf");
    before_ = test::ReadBytes(source->wstring());
    test::WriteBytes(db_.file(), before_);
  }

  /// The copy as shapelib reads it.
  Table Open() const {
    SAHooks hooks;
    SASetupDefaultHooks(&hooks);
    hooks.Error = [](const char*) {};  // a cut file is no news
    return Table(DBFOpenLL((db_.folder().path() / "table.dbf").string().c_str(), "rb", &hooks));
  }
  static std::string RawCell(const Table& table, int r, int f) {
    const char* record = DBFReadTuple(table.get(), r - 1);
    if (record == nullptr) return {};
    return {record + table->panFieldOffset[f - 1],
            static_cast<std::size_t>(table->panFieldSize[f - 1])};
  }
  static std::string Name(const Table& table, int f) {
    char name[XBASE_FLDNAME_LEN_READ + 1] = {};
    int width = 0;
    int decimals = 0;
    DBFGetFieldInfo(table.get(), f - 1, name, &width, &decimals);
    return name;
  }

  Driver db_;
  std::string before_;
};

TEST_P(RealTableTest, CountsNamesAndWidths) {
  EXPECT_EQ(db_.Kind(), 2);
  EXPECT_TRUE(GetParam().records < 0 || db_.Records() == GetParam().records);
  EXPECT_TRUE(GetParam().fields < 0 || db_.Fields() == GetParam().fields);
  const Table table = Open();
  ASSERT_EQ(table == nullptr, GetParam().refused);
  if (table == nullptr) return;
  EXPECT_EQ(db_.Records(), DBFGetRecordCount(table.get()));
  const int fields = DBFGetFieldCount(table.get());
  EXPECT_GE(db_.Fields(), fields);
  for (int f = 1; f <= fields; ++f) {
    EXPECT_EQ(db_.Get(L"", 0, f), Converted(Name(table, f)));
    std::wstring path = db_.Path();
    auto field = static_cast<std::int16_t>(f);
    EXPECT_EQ(*db_.engine.dBASEFldSize(path, field).Int16(), table->panFieldSize[f - 1]);
    EXPECT_EQ(db_.Type(L"", 1, f, "lenght"), std::to_string(table->panFieldSize[f - 1]));
  }
}

TEST_P(RealTableTest, EveryCell) {
  const Table table = Open();
  ASSERT_EQ(table == nullptr, GetParam().refused);
  if (table == nullptr) return;
  const int fields = DBFGetFieldCount(table.get());
  int compared = 0;
  for (int r = 1; r <= DBFGetRecordCount(table.get()); ++r) {
    if (DBFReadTuple(table.get(), r - 1) == nullptr) continue;  // beyond the end of a cut file
    for (int f = 1; f <= fields; ++f) {
      ASSERT_EQ(db_.Get(L"", r, f), Converted(RawCell(table, r, f))) << r << "," << f;
      ++compared;
    }
  }
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_GT(compared, 0);
}

TEST_P(RealTableTest, CellsBeyondTheTableDisturbNothing) {
  for (const int r : {db_.Records() + 1, db_.Records() + 1000, INT32_MAX}) {
    for (const int f : {1, db_.Fields(), db_.Fields() + 1, 32767, -1}) {
      db_.Get(L"", r, f);
      db_.Set(L"", r, f, "x");
      EXPECT_EQ(db_.Error(), 9) << r << "," << f;
    }
  }
  db_.Set(L"", 0, 1, "x");
  EXPECT_EQ(db_.Error(), 70);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), before_);
}

TEST_P(RealTableTest, OverwrittenCellsAreWhatTheOtherReaderFinds) {
  const int records = std::min(db_.Records(), 20);
  const int fields = std::min(db_.Fields(), 20);
  const std::string before = db_.Bytes();
  std::vector<std::vector<bool>> written(static_cast<std::size_t>(records) + 1);
  for (int r = 1; r <= records; ++r) {
    written[static_cast<std::size_t>(r)].resize(static_cast<std::size_t>(fields) + 1);
    for (int f = 1; f <= fields; ++f) {
      db_.Set(L"", r, f, "v" + std::to_string(r * f));
      written[static_cast<std::size_t>(r)][static_cast<std::size_t>(f)] = db_.Error() == 0;
    }
  }
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes().size(), before.size()) << "in place";
  const Table table = Open();
  ASSERT_EQ(table == nullptr, GetParam().refused);
  if (table == nullptr) return;
  for (int r = 1; r <= records; ++r) {
    for (int f = 1; f <= std::min(fields, DBFGetFieldCount(table.get())); ++f) {
      if (!written[static_cast<std::size_t>(r)][static_cast<std::size_t>(f)]) continue;
      std::string expected = "v" + std::to_string(r * f);
      expected.resize(static_cast<std::size_t>(table->panFieldSize[f - 1]), ' ');
      ASSERT_EQ(RawCell(table, r, f), expected) << r << "," << f;
    }
  }
}

TEST_P(RealTableTest, ItsCellsInAContainerReadBackTheSame) {
  const int records = std::min(db_.Records(), 200);
  const int fields = std::min(db_.Fields(), 30);
  std::vector<std::vector<std::string>> texts;
  for (int r = 0; r <= records; ++r) {
    texts.emplace_back();
    for (int f = 1; f <= fields; ++f) texts.back().push_back(db_.Get(L"", r, f));
  }
  db_.Use(L"copy.orv");
  db_.New("copy");
  db_.AddFields(L"", fields, 1);
  db_.AddRecords(L"", records, 1);
  for (int r = 0; r <= records; ++r) {
    for (int f = 1; f <= fields; ++f) {
      db_.Set(L"", r, f, texts[static_cast<std::size_t>(r)][static_cast<std::size_t>(f - 1)]);
    }
  }
  db_.CloseAll();
  for (int r = 0; r <= records; ++r) {
    for (int f = 1; f <= fields; ++f) {
      ASSERT_EQ(db_.Get(L"", r, f),
                texts[static_cast<std::size_t>(r)][static_cast<std::size_t>(f - 1)]);
    }
  }
}

std::string TestName(const testing::TestParamInfo<TableCase>& parameter) {
  std::string name = parameter.param.file;
  for (char& c : name) {
    if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(
    Public, RealTableTest,
    testing::Values(
        TableCase{"cbr__BNKSEEK.DBF", 2108, 28}, TableCase{"kladr__SOCRBASE.DBF", 148, 4},
        TableCase{"ddr__tl_2019_01_place.dbf", 587, 16}, TableCase{"infused__dbase_03.dbf", 14, 31},
        TableCase{"javadbf__sids.dbf", 100, 14}, TableCase{"yortus__PYACFL.DBF", 45, -1},
        TableCase{"ddr__dbase_03_nullchar.dbf", 3, 2}, TableCase{"infused__dbase_30.dbf", 34, -1},
        TableCase{"dbasers__stations_with_deleted.dbf", 6, 4, true},
        TableCase{"derived_cut5000__REG.DBF", -1, -1}),
    TestName);

TEST(OtherTableTest, AnotherVersionOfTheFormatIsNeitherKindOfFile) {
  const auto source = test::RealData("infused__dbase_83.dbf");
  if (!source) GTEST_SKIP() << "THE TABLE infused__dbase_83.dbf IS NOT HERE";
  Driver db;
  db.Use(L"table.dbf");
  test::WriteBytes(db.file(), test::ReadBytes(source->wstring()));
  EXPECT_EQ(db.Kind(), 0);
  EXPECT_EQ(db.Records(), -1);
  EXPECT_EQ(db.Get(L"", 1, 1), "");
  EXPECT_EQ(db.Error(), 255);
}

}  // namespace
}  // namespace orv
