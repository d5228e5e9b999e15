#include "cli/comparison.h"

#include <filesystem>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "cli/failure.h"
#include "cli/target.h"
#include "support/temp_folder.h"

namespace orv::cli {
namespace {

class ComparisonTest : public testing::Test {
 protected:
  ~ComparisonTest() override { Engine().CloseAll(); }

  // A small tree with a property; `change` is done to it afterwards.
  Matrix Make(std::wstring_view name, const std::function<void(Matrix&)>& change = {}) {
    Engine().CloseAll();
    std::filesystem::remove(folder_.Name(name));
    std::wstring path = test::Quoted(folder_.Name(name));
    std::wstring title = L"Title";
    Engine().CmdNewOrvDB(path, title);
    Matrix matrix(path);
    matrix.Check();
    matrix.AddFields(2, 1);
    matrix.AddRecords(700, 1);
    matrix.SetCell(0, 1, L"Name");
    matrix.SetCell(650, 2, L"text");
    matrix.PutMatrix(3, 1, L"Nested");
    Matrix nested(CellPath(path, 3, 1));
    nested.AddFields(1, 1);
    nested.AddRecords(1, 1);
    nested.SetCell(1, 1, L"deep");
    SetProperty(matrix, 650, 2, L"people");
    if (change) change(matrix);
    return matrix;
  }

  static void SetProperty(Matrix& matrix, std::int32_t record, std::int16_t field,
                          std::wstring value) {
    std::wstring path = matrix.path();
    std::wstring name = L"unit";
    matrix.engine().SetTypeValue(path, record, field, name, value);
    matrix.Check();
  }

  // What the comparison with a changed copy complains about.
  std::string Complaint(const std::function<void(Matrix&)>& change) {
    Matrix left = Make(L"left.orv");
    Matrix right = Make(L"right.orv", change);
    try {
      CompareMatrices(left, right);
    } catch (const Failure& failure) {
      const std::string text = failure.what();
      return text.substr(text.find("right.orv\"") + 10);
    }
    return "equal";
  }

  test::TempFolder folder_;
};

TEST_F(ComparisonTest, CountsTheCellsOfEqualTrees) {
  Matrix left = Make(L"left.orv");
  Matrix right = Make(L"right.orv");
  // 700 x 2, the nested cell, one type of three fields, one property of two.
  EXPECT_EQ(CompareMatrices(left, right), 1400 + 1 + 3 + 2);
}

TEST_F(ComparisonTest, NamesTheFirstDifference) {
  EXPECT_EQ(Complaint([](Matrix& m) { m.SetTitle(L"Other"); }),
            ": the title differs from the original");
  EXPECT_EQ(Complaint([](Matrix& m) { m.AddRecords(1, 701); }),
            ": the number of records differs from the original");
  EXPECT_EQ(Complaint([](Matrix& m) { m.AddFields(1, 3); }),
            ": the number of fields differs from the original");
  EXPECT_EQ(Complaint([](Matrix& m) { m.SetCell(0, 2, L"x"); }),
            ": the name of field 2 differs from the original");
  EXPECT_EQ(Complaint([](Matrix& m) { m.SetCell(650, 2, L"texT"); }),
            ": cell [650,2] differs from the original");
  EXPECT_EQ(Complaint([](Matrix& m) { m.SetCell(700, 2, L"x"); }),
            ": cell [700,2] differs from the original");
  EXPECT_EQ(Complaint([](Matrix& m) { m.PutMatrix(650, 2, L"text"); }),
            ": cell [650,2] differs from the original");
}

TEST_F(ComparisonTest, LooksIntoNestedAndPropertyMatrices) {
  EXPECT_EQ(Complaint([](Matrix& m) { Matrix(CellPath(m.path(), 3, 1)).SetCell(1, 1, L"x"); }),
            "/[3,1]: cell [1,1] differs from the original");
  EXPECT_EQ(Complaint([](Matrix& m) { SetProperty(m, 650, 2, L"towns"); }),
            "/#/[1,3]: cell [1,2] differs from the original");
  EXPECT_EQ(Complaint([](Matrix& m) { SetProperty(m, 650, 1, L"people"); }).find("equal"),
            std::string::npos);
}

}  // namespace
}  // namespace orv::cli
