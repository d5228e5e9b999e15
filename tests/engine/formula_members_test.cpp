// Texts that are commands, met through the members: formulas of types, subscripts of paths.
#include <string>

#include <gtest/gtest.h>

#include "platform/code_page.h"
#include "support/driver.h"

namespace orv {
namespace {

using platform::ToBytes;

/// Three records by three fields with the numbers 11 to 33; record 3, field 3 has the formula that
/// adds the two cells before it.
class FormulaMembersTest : public testing::Test {
 protected:
  void SetUp() override {
    db_.New();
    db_.AddFields(L"", 3, 1);
    db_.AddRecords(L"", 3, 1);
    for (int r = 1; r <= 3; ++r) {
      for (int f = 1; f <= 3; ++f) db_.Set(L"", r, f, std::to_string(10 * r + f));
    }
    db_.SetType(L"", 3, 3, "comp", "=val(cell(rec,1))+val(cell(rec,2))");
    ASSERT_EQ(db_.Error(), 0);
  }
  std::string Cell(std::wstring_view steps, std::int32_t record, int f, bool formula) {
    std::wstring path = db_.Path(steps);
    auto field = static_cast<std::int16_t>(f);
    Boolean isMatrix = Boolean::kFalse;
    Boolean frml = ToBoolean(formula);
    return ToBytes(db_.engine.GetCellValue(path, record, field, isMatrix, frml));
  }
  std::string Property(const std::string& name, bool formula) {
    std::wstring path = db_.Path();
    std::int32_t record = 3;
    std::int16_t field = 3;
    std::wstring prop = platform::ToWide(name);
    Boolean frml = ToBoolean(formula);
    return ToBytes(db_.engine.GetTypeValue(path, record, field, prop, frml));
  }

  test::Driver db_;
};

TEST_F(FormulaMembersTest, AFormulaIsRunOnlyWhenItIsAskedFor) {
  EXPECT_EQ(Cell(L"", 3, 3, false), "33");
  EXPECT_EQ(Cell(L"", 3, 3, true), "63");
  EXPECT_EQ(Cell(L"", 2, 3, true), "23") << "a cell of another type";
  db_.SetType(L"", 3, 3, "comp", "");
  EXPECT_EQ(Cell(L"", 3, 3, true), "33");
}

TEST_F(FormulaMembersTest, ABlockOfCellsRunsFormulasToo) {
  for (const bool formula : {false, true}) {
    TextMatrix block({1, 3}, {1, 3});
    std::wstring path = db_.Path();
    std::int32_t first = 1;
    std::int32_t last = 3;
    Boolean frml = ToBoolean(formula);
    db_.engine.ValueMatrix(block, path, first, last, frml);
    EXPECT_EQ(block.At(3, 3), formula ? L"63" : L"33");
    EXPECT_EQ(block.At(2, 3), L"32");
    EXPECT_EQ(block.At(3, 2), L"23");
  }
}

TEST_F(FormulaMembersTest, APropertyThatIsACommandIsRunWhenItIsAskedFor) {
  db_.SetType(L"", 3, 3, "next", "=val(cell(rec,fld))+1;");
  db_.SetType(L"", 3, 3, "plain", "=without an end");
  EXPECT_EQ(Property("next", false), "=val(cell(rec,fld))+1;");
  EXPECT_EQ(Property("next", true), "34");
  EXPECT_EQ(Property("NEXT", true), "34");
  EXPECT_EQ(Property("plain", true), "=without an end");
  EXPECT_EQ(Property("missing", true), "");
  EXPECT_EQ(db_.Error(), 4);
}

TEST_F(FormulaMembersTest, SubscriptsOfAPathAreExpressionsOverTheMatrixBeforeThem) {
  db_.Put(L"", 3, 2, "nested");
  db_.AddFields(L"/[3,2]", 1, 1);
  db_.AddRecords(L"/[3,2]", 1, 1);
  db_.Set(L"/[3,2]", 1, 1, "inside");
  for (const auto* steps : {L"/[1+2,2]", L"/[records,fields-1]", L"/[val(\"3\"),2]",
                            L"/[val(cell(1,1))-8,2]", L"/[ 3 , 2 ]"}) {
    EXPECT_EQ(Cell(steps, 1, 1, false), "inside") << ToBytes(steps);
    EXPECT_EQ(db_.Error(), 0) << ToBytes(steps);
  }
  Cell(L"/[records-3,2]", 1, 1, false);
  EXPECT_EQ(db_.Error(), 20);
  Cell(L"/[3,1-1]", 1, 1, false);
  EXPECT_EQ(db_.Error(), 21);
  Cell(L"/[99999999999,2]", 1, 1, false);
  EXPECT_EQ(db_.Error(), 6);
}

}  // namespace
}  // namespace orv
