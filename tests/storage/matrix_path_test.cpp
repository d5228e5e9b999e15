#include "storage/matrix_path.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/run_time_error.h"
#include "support/raises.h"

namespace orv::storage {
namespace {

using testing::Return;

class MockSubscripts : public SubscriptPort {
 public:
  MOCK_METHOD(double, ReadSubscript, (const std::wstring&, const std::wstring&), (override));
};

/// The steps as one text: "[2,1]", "#", or a filter between angle brackets.
std::wstring Shown(const MatrixPath& path) {
  std::wstring text = path.fileName;
  for (const PathStep& step : path.steps) {
    if (step.kind == PathStep::Kind::kProperties) text += L" #";
    if (step.kind == PathStep::Kind::kFilter) text += L" <" + step.condition + L">";
    if (step.kind == PathStep::Kind::kCell) {
      text += L" [" + std::to_wstring(step.record) + L"," + std::to_wstring(step.field) + L"]";
    }
  }
  return text;
}

struct GoodPath {
  const wchar_t* path;
  const wchar_t* shown;
};

TEST(MatrixPathTest, PathsThatCanBeTakenApart) {
  const GoodPath cases[] = {
      {L"\"a.orv\"", L"a.orv"},
      {L"a.orv", L"a.orv"},
      {L"  a.orv  ", L"a.orv"},
      {L"\"c:/dir/a.orv\"", L"c:/dir/a.orv"},
      {L"c:\\dir\\a b.orv", L"c:\\dir\\a b.orv"},
      {L"\"a.orv\"/[2,1]", L"a.orv [2,1]"},
      {L"a.orv/[2,1]", L"a.orv [2,1]"},
      {L"\"a.orv\" / [ 2 , 1 ] ", L"a.orv [2,1]"},
      {L"\"a.orv\"/[2,1]/[33,4]", L"a.orv [2,1] [33,4]"},
      {L"\"a.orv\"/#", L"a.orv #"},
      {L"\"a.orv\"/ # ", L"a.orv #"},
      {L"\"a.orv\"/#/[1,3]/#", L"a.orv # [1,3] #"},
      {L"\"a.orv\"/f(1)=5", L"a.orv <f(1)=5>"},
      {L"\"a.orv\"/f(1)=5/[2,1]", L"a.orv <f(1)=5> [2,1]"},
      {L"\"a.orv\"/f(1)=5/f(2)=6", L"a.orv <f(1)=5> <f(2)=6>"},
      {L"\"a.orv\"/f(1)=\"x/y[1,2]#\"", L"a.orv <f(1)=\"x/y[1,2]#\">"},
      {L"\"a.orv\"/(1/2=cell[3,4])", L"a.orv <(1/2=cell[3,4])>"},
      {L"\"a.orv\"/[000000007,0001]", L"a.orv [7,1]"},
      {L"\"a.orv\"/[1,32767]", L"a.orv [1,32767]"},
  };
  for (const GoodPath& c : cases) {
    ErrorCode error;
    EXPECT_EQ(Shown(SplitPath(c.path, nullptr, error)), c.shown) << testing::PrintToString(c.path);
    EXPECT_EQ(error.value(), 0) << testing::PrintToString(c.path);
  }
}

struct BadPath {
  const wchar_t* path;
  int code;
};

TEST(MatrixPathTest, PathsThatCannot) {
  const BadPath cases[] = {
      // no file part
      {L"", 10},
      {L"   ", 10},
      {L"/[1,1]", 10},
      {L"\"\"", 10},
      {L"\"a.orv", 10},
      {L"a\"b.orv", 10},
      {L"\"a\"b.orv", 10},
      // a character in the wrong state
      {L"\"a.orv\"/", 10},
      {L"\"a.orv\"//[1,1]", 10},
      {L"\"a.orv\"/[1/2,1]", 10},
      {L"\"a.orv\"/[1,1/2]", 10},
      {L"\"a.orv\"/[1,1", 10},
      {L"\"a.orv\"/[1", 10},
      {L"\"a.orv\"/[1]", 10},
      {L"\"a.orv\"/[1,1,1]", 10},
      {L"\"a.orv\"/[[1,1]", 10},
      {L"\"a.orv\"/[1,[1]", 10},
      {L"\"a.orv\"/1,1", 10},
      {L"\"a.orv\"/1,1]", 10},
      {L"\"a.orv\"/]", 10},
      {L"\"a.orv\"/x[1,1]", 10},
      {L"\"a.orv\"/[1,1]x", 10},
      {L"\"a.orv\"/[1,1][2,2]", 10},
      {L"\"a.orv\"/[1,1]#", 10},
      {L"\"a.orv\"/##", 10},
      {L"\"a.orv\"/#x", 10},
      {L"\"a.orv\"/[#,1]", 10},
      {L"\"a.orv\"/[1,#]", 10},
      // an expression without anybody to evaluate it, an empty subscript
      {L"\"a.orv\"/[1+1,1]", 10},
      {L"\"a.orv\"/[,1]", 10},
      {L"\"a.orv\"/[1,]", 10},
      // numbers
      {L"\"a.orv\"/[0,1]", 20},
      {L"\"a.orv\"/[1,0]", 21},
      {L"\"a.orv\"/[0,0]", 20},
  };
  for (const BadPath& c : cases) {
    ErrorCode error;
    SplitPath(c.path, nullptr, error);
    EXPECT_EQ(error.value(), c.code) << testing::PrintToString(c.path);
  }
}

TEST(MatrixPathTest, AFieldBeyondItsTypeRaises6) {
  ErrorCode error;
  EXPECT_RAISES(6, SplitPath(L"\"a\"/[1,32768]", nullptr, error));
}

TEST(MatrixPathTest, ThirtyTwoStepsAreTheMost) {
  std::wstring path = L"\"a\"";
  for (int i = 0; i < 32; ++i) path += L"/[1,1]";
  ErrorCode error;
  EXPECT_EQ(SplitPath(path, nullptr, error).steps.size(), 32U);
  EXPECT_EQ(error.value(), 0);
  SplitPath(path + L"/#", nullptr, error);
  EXPECT_EQ(error.value(), 10);
  error.Clear();
  SplitPath(path + L"/f(1)=2", nullptr, error);
  EXPECT_EQ(error.value(), 10);
}

TEST(MatrixPathTest, ExpressionsAreReadInTheContextOfThePathBeforeTheirStep) {
  MockSubscripts subscripts;
  testing::InSequence inOrder;
  EXPECT_CALL(subscripts, ReadSubscript(std::wstring(L"1+1"), std::wstring(L"\"a\"")))
      .WillOnce(Return(2));
  EXPECT_CALL(subscripts, ReadSubscript(std::wstring(L"field(\"x,]/[\")"), std::wstring(L"\"a\"")))
      .WillOnce(Return(3));
  EXPECT_CALL(subscripts, ReadSubscript(std::wstring(L" records "),
                                        std::wstring(L"\"a\"/[1+1,field(\"x,]/[\")]")))
      .WillOnce(Return(7));
  ErrorCode error;
  const MatrixPath path =
      SplitPath(L"\"a\"/[1+1,field(\"x,]/[\")]/[ records ,1]", &subscripts, error);
  EXPECT_EQ(Shown(path), L"a [2,3] [7,1]");
  EXPECT_EQ(error.value(), 0);
}

TEST(MatrixPathTest, SubscriptsAreRoundedHalvesToEven) {
  for (const auto& [value, record] :
       {std::pair{2.5, 2}, {3.5, 4}, {1.49, 1}, {2147483647.0, 2147483647}}) {
    MockSubscripts subscripts;
    EXPECT_CALL(subscripts, ReadSubscript).WillOnce(Return(value));
    ErrorCode error;
    const MatrixPath path = SplitPath(L"\"a\"/[x,1]", &subscripts, error);
    ASSERT_EQ(path.steps.size(), 1U);
    EXPECT_EQ(path.steps[0].record, record);
  }
}

TEST(MatrixPathTest, SubscriptsBelowOneAndOutsideTheirType) {
  for (const double value : {0.5, 0.0, -1.0, -2147483648.0}) {
    MockSubscripts subscripts;
    EXPECT_CALL(subscripts, ReadSubscript).WillOnce(Return(value));
    ErrorCode error;
    SplitPath(L"\"a\"/[x,1]", &subscripts, error);
    EXPECT_EQ(error.value(), 20) << value;
  }
  MockSubscripts subscripts;
  EXPECT_CALL(subscripts, ReadSubscript).WillRepeatedly(Return(1e10));
  ErrorCode error;
  EXPECT_RAISES(6, SplitPath(L"\"a\"/[x,1]", &subscripts, error));
  EXPECT_RAISES(6, SplitPath(L"\"a\"/[1,x]", &subscripts, error));
}

TEST(MatrixPathTest, NothingBehindAFaultIsEvaluated) {
  MockSubscripts subscripts;
  EXPECT_CALL(subscripts, ReadSubscript).Times(0);
  ErrorCode error;
  SplitPath(L"\"a\"/x[1,1]/[y,1]", &subscripts, error);
  EXPECT_EQ(error.value(), 10);
}

TEST(MatrixPathTest, TheCodeThatAnExpressionLeavesIsNotThePaths) {
  MockSubscripts subscripts;
  ErrorCode error;
  EXPECT_CALL(subscripts, ReadSubscript)
      .WillOnce([&error](const std::wstring&, const std::wstring&) {
        error.Set(code::kNotAMatrix);
        return 1.0;
      });
  EXPECT_EQ(SplitPath(L"\"a\"/[x,1]", &subscripts, error).steps.size(), 1U);
  EXPECT_EQ(error.value(), 0);
}

TEST(MatrixPathTest, PathsArePutTogether) {
  EXPECT_EQ(QuotedFile(L"a b"), L"\"a b\"");
  EXPECT_EQ(NestedPath(L"\"a\"", 12, 3), L"\"a\"/[12,3]");
  EXPECT_EQ(PropertyPath(L"\"a\"/[1,1]"), L"\"a\"/[1,1]/#");
  EXPECT_TRUE(EndsInProperties(L"\"a\"/#"));
  EXPECT_TRUE(EndsInProperties(L"\"a\"/# "));
  EXPECT_FALSE(EndsInProperties(L"\"a\"/#/[1,3]"));
  EXPECT_FALSE(EndsInProperties(L""));
}

TEST(MatrixPathTest, SpellingsOfAPathShareTheirCanonicalPath) {
  const std::wstring canonical = L"\"a b\"/#/[12,3]/f(1)= 5/[1,1]";
  for (const std::wstring& path :
       {canonical, std::wstring(L" a b / # /[ 012 , 3 ]/f(1)= 5/ [1,1]")}) {
    ErrorCode error;
    const MatrixPath parts = SplitPath(path, nullptr, error);
    ASSERT_EQ(parts.steps.size(), 4U) << "error " << error.value();
    EXPECT_EQ(CanonicalPath(parts, 4), canonical);
    EXPECT_EQ(CanonicalPath(parts, 3), L"\"a b\"/#/[12,3]/f(1)= 5");
    EXPECT_EQ(CanonicalPath(parts, 1), L"\"a b\"/#");
    EXPECT_EQ(CanonicalPath(parts, 0), L"\"a b\"");
  }
}

}  // namespace
}  // namespace orv::storage
