#include "command/statements.h"

#include <gtest/gtest.h>

#include "language_fixture.h"

namespace orv::command::test {
namespace {

class StatementsTest : public LanguageTest {};

TEST_F(StatementsTest, AFormulaEndsTheCommand) {
  EXPECT_EQ(Run("=1+2;"), "3");
  EXPECT_EQ(Run("=1;2;"), "1");
  EXPECT_EQ(Run("=\"a+b\";"), "a+b");
  EXPECT_EQ(Run("=(2+3)*4;"), "20");
  EXPECT_EQ(Run("=2+3*4;"), "14");
  EXPECT_EQ(Run("=3<>4;"), "3");
  EXPECT_EQ(Run("=\"a\"<>\"b\";"), "true");
  EXPECT_EQ(Run("=-5;"), "-5");
  EXPECT_EQ(Run("=1 2;"), "12");
}

TEST_F(StatementsTest, NothingCountsThatNoSemicolonEnds) {
  EXPECT_EQ(Run("=1+2"), std::nullopt);
  EXPECT_EQ(Run(""), std::nullopt);
  EXPECT_EQ(Run("1"), std::nullopt);
  EXPECT_EQ(Run("1;2"), "1");
  EXPECT_EQ(Run("=(1;"), std::nullopt);
  EXPECT_EQ(Run("=\"a;"), std::nullopt);
}

TEST_F(StatementsTest, EachPlainStatementOverwritesTheResult) {
  EXPECT_EQ(Run("1;2;"), "2");
  EXPECT_EQ(Run("1+1;\"a\"+\"b\";"), "ab");
  EXPECT_EQ(Run("1;;"), "");
  EXPECT_EQ(Run(";"), "");
  EXPECT_EQ(Run("1;=2;3;"), "2");
}

TEST_F(StatementsTest, EveryFurtherEqualsSignStartsANewText) {
  EXPECT_EQ(Run("=1+2=3;"), "3");
  EXPECT_EQ(Run("=1=2=3;"), "3");
  EXPECT_EQ(Run("1+2=3;"), "3");
  EXPECT_EQ(Run("=(1+2=3);"), "true");
  EXPECT_EQ(Run("=if(1=1,\"yes\",\"no\");"), "yes");
  EXPECT_EQ(Run("=\"a=b\";"), "a=b");
  EXPECT_EQ(Run("=(1<=2);"), "[Type mismatch]");
}

TEST_F(StatementsTest, AnAssignmentReturnsItsValue) {
  EXPECT_EQ(Run("set cell(1,1)=5;"), "5");
  EXPECT_EQ(Run("set x=1=2;"), "2");
  EXPECT_EQ(Run("set 7;"), "7");
  EXPECT_EQ(Run("1;set x=5;6;"), "5");
  EXPECT_EQ(ErrorCode(), 0);
}

TEST_F(StatementsTest, AnAssignmentEvaluatesTwice) {
  services_.reads = 0;
  EXPECT_EQ(Run("set x=cell(1,1);"), "alpha");
  EXPECT_EQ(services_.reads, 2);
}

TEST_F(StatementsTest, AnAssignmentThatLeavesAnErrorCodeFails) {
  EXPECT_EQ(Run("set x=1/0;"), "[Error acure]");
  EXPECT_EQ(ErrorCode(), 11);
  services_.reads = 0;
  EXPECT_EQ(Run("set x=cell(-1,1);2;"), "[Error acure]");
  EXPECT_EQ(services_.reads, 1);
  EXPECT_EQ(Run("set x=str(\"a\");"), "[Type mismuch]");
}

TEST_F(StatementsTest, AnAssignmentThatTheStorageRefusesFailsTheSameWay) {
  EXPECT_EQ(Run("set x=" + std::string(1200, '(') + "1" + std::string(1200, ')') + ";"),
            "[Error acure]");
  EXPECT_EQ(ErrorCode(), 28);
}

TEST_F(StatementsTest, TheKeywordIsExact) {
  EXPECT_EQ(Run("SET cell(1,1)=5;"), "5");
  EXPECT_EQ(Run("SET cell(1,1);"), "");  // an unknown function "SETcell"
  EXPECT_EQ(Run(" set x=5;"), "5");
  EXPECT_EQ(Run(" set x=1/0;"), "[Division by zero]");  // no assignment
  EXPECT_EQ(Run("set\tx=1/0;"), "[Division by zero]");
  EXPECT_EQ(Run("se\nt x=1/0;"), "[Error acure]");
}

TEST_F(StatementsTest, TheKeywordInAnyOtherStateIsRefused) {
  EXPECT_EQ(Run("=set x=5;"), "[Expected expression]");
  EXPECT_EQ(ErrorCode(), 255);
  EXPECT_EQ(Run("set set x=5;"), "[Expected expression]");
  EXPECT_EQ(ErrorCode(), 255);
  EXPECT_EQ(Run("set x=set y;"), "[Expected expression]");
  EXPECT_EQ(Run("1;=set "), "[Expected expression]");
}

TEST_F(StatementsTest, InPropertyModeOnlyAssignmentsHaveAnEqualsSign) {
  EXPECT_EQ(Run("=1+2;", kPropertyMode), "[Invalid use of propertie]");
  EXPECT_EQ(ErrorCode(), 255);
  EXPECT_EQ(Run("1+2=3;", 3), "[Invalid use of propertie]");
  EXPECT_EQ(Run("set x=5;", kPropertyMode), "5");
  EXPECT_EQ(Run("1+2;", kPropertyMode), "3");
  EXPECT_EQ(ErrorCode(), 0);
  EXPECT_EQ(Run("(1=1);", kPropertyMode), "true");
  EXPECT_EQ(Run("=1+2;", 0), "3");
}

TEST_F(StatementsTest, LineEndsAreDroppedOutsideStrings) {
  EXPECT_EQ(Run("=1\r\n2\n+1;"), "13");
  EXPECT_EQ(Run("=\"a\r\nb\";"), "a\r\nb");
  EXPECT_EQ(Run("=re\rc;"), "2");
}

TEST_F(StatementsTest, APointBeforeACarriageReturnEndsAStatement) {
  EXPECT_EQ(Run("=1+2.\r\n3;"), "3");
  EXPECT_EQ(Run("1.\r2.\r"), "2");
  EXPECT_EQ(Run("=\"abc\".\r"), "abc");
  EXPECT_EQ(Run("=1.\n5;"), "1.5");
  EXPECT_EQ(Run("=(1.\r5);"), "1.5");
}

TEST_F(StatementsTest, SemicolonsAndEqualsSignsInParenthesesBelongToTheText) {
  EXPECT_EQ(Run("=(\";\");"), ";");
  EXPECT_EQ(Run("=1);"), "1)");
  EXPECT_EQ(Run("=1)=2;"), "2");
}

TEST_F(StatementsTest, MessagesOfTheLanguageAreResults) {
  EXPECT_EQ(Run("=str(\"a\");"), "[Type mismuch]");
  EXPECT_EQ(Run("=\"a\"+1;"), "[Type mismatch]");
  EXPECT_EQ(Run("=\"a\"*\"b\";"), "[Invalid command]");
  EXPECT_EQ(Run("=instr(\"x\",\"abc\",\"c\");"), "[Invalid entering value]");
  EXPECT_EQ(ErrorCode(), 0);
}

}  // namespace
}  // namespace orv::command::test
