#include "command/operators.h"

#include <gtest/gtest.h>

#include "language_fixture.h"

namespace orv::command::test {
namespace {

class OperatorsTest : public LanguageTest {};

TEST_F(OperatorsTest, IntegersAreComputedInDoublePrecision) {
  EXPECT_EQ(Text("7/2"), "3.5");
  EXPECT_EQ(Type("7/2"), type::kInteger);
  EXPECT_EQ(Text("16777217+1"), "16777218");
  EXPECT_EQ(Text("2^40"), "1099511627776");
  EXPECT_EQ(Text("2^0-1"), "0");
  EXPECT_EQ(Text("10/3"), "3.33333333333333");
}

TEST_F(OperatorsTest, RealsAreComputedInSinglePrecision) {
  EXPECT_EQ(Text("7.0/2"), "3.5");
  EXPECT_EQ(Text("16777217.0+1"), "1.677722E+07");
  EXPECT_EQ(Text("10.0/3"), "3.333333");
  EXPECT_EQ(Text("0.1+0.2"), "0.3");
  EXPECT_EQ(Text("0.1+0.2=0.3"), "true");
  EXPECT_EQ(Text("16777217.0=16777216"), "true");
  EXPECT_EQ(Text("16777217=16777216"), "false");
}

TEST_F(OperatorsTest, AnIntegerBesideARealBecomesReal) {
  EXPECT_EQ(Type("1+1.5"), type::kReal);
  EXPECT_EQ(Text("16777217=16777216.0"), "true");
  EXPECT_EQ(Text("1+1.5"), "2.5");
}

TEST_F(OperatorsTest, ComparisonsAreLogic) {
  EXPECT_EQ(Text("1=1"), "true");
  EXPECT_EQ(Text("1=2"), "false");
  EXPECT_EQ(Text("1<2"), "true");
  EXPECT_EQ(Text("2>1"), "true");
  EXPECT_EQ(Text("1.5<1.25"), "false");
  EXPECT_EQ(Type("1<2"), type::kLogic);
  EXPECT_EQ(Type("\"a\"<>\"b\""), type::kLogic);
}

TEST_F(OperatorsTest, UnequalBetweenNumbersYieldsTheFirst) {
  EXPECT_EQ(Text("3<>4"), "3");
  EXPECT_EQ(Text("2.50<>1"), "2.50");
  EXPECT_EQ(Type("3<>4"), type::kInteger);
  EXPECT_EQ(Text("3<>4+1"), "4");
}

TEST_F(OperatorsTest, WholeDivisionRoundsHalvesToEvenAndCutsTowardsZero) {
  EXPECT_EQ(Text("7\\2"), "3");
  EXPECT_EQ(Text("-7\\2"), "-3");
  EXPECT_EQ(Text("7\\-2"), "-3");
  EXPECT_EQ(Text("2.5\\1"), "2");
  EXPECT_EQ(Text("3.5\\1"), "4");
  EXPECT_EQ(Text("10\\2.5"), "5");
}

TEST_F(OperatorsTest, DivisionByZeroIsErrorElevenAndAMessage) {
  for (const char* expression : {"1/0", "1\\0", "1.5/0", "1.5\\0", "0/0", "1\\0.5", "0^-1"}) {
    EXPECT_EQ(Text(expression), "[Division by zero]") << expression;
    EXPECT_EQ(ErrorCode(), 11) << expression;
    EXPECT_EQ(Type(expression), type::kError) << expression;
  }
}

TEST_F(OperatorsTest, ResultsBeyondTheRangeAreErrorSixAndAMessage) {
  for (const char* expression : {"10^400", "1E308*10", "1.0*10^30*1E30", "3000000000\\1",
                                 "1\\3000000000", "1E400+1", "-2147483648\\-1"}) {
    EXPECT_EQ(Text(expression), "[Overflow]") << expression;
    EXPECT_EQ(ErrorCode(), 6) << expression;
  }
}

TEST_F(OperatorsTest, APowerWithoutARealValueIsErrorFive) {
  EXPECT_EQ(Text("(0-8)^0.5"), "[Invalid command]");
  EXPECT_EQ(ErrorCode(), 5);
}

TEST_F(OperatorsTest, StringsAreComparedByTheirBytes) {
  EXPECT_EQ(Text("\"a\"=\"a\""), "true");
  EXPECT_EQ(Text("\"a\"=\"A\""), "false");
  EXPECT_EQ(Text("\"a\"<\"b\""), "true");
  EXPECT_EQ(Text("\"a\">\"B\""), "true");
  EXPECT_EQ(Text("\"a\"<>\"a\""), "false");
  EXPECT_EQ(Text("\"a\"<\"a b\""), "true");
  EXPECT_EQ(Text("\"\xFF\">\"a\""), "true");
}

TEST_F(OperatorsTest, StringsAreJoined) {
  EXPECT_EQ(Text("\"ab\"+\"cd\""), "abcd");
  EXPECT_EQ(Type("\"ab\"+\"cd\""), type::kString);
  EXPECT_EQ(Text("\"a\"+\"b\"+\"c\"=\"abc\""), "true");
  EXPECT_EQ(Text("\"\"+\"\""), "");
}

TEST_F(OperatorsTest, StringsKnowNoOtherOperator) {
  for (const char* expression :
       {"\"a\"*\"b\"", "\"a\"-\"b\"", "\"a\"/\"b\"", "\"a\"\\\"b\"", "\"a\"^\"b\""}) {
    EXPECT_EQ(Text(expression), "[Invalid command]") << expression;
    EXPECT_EQ(Type(expression), type::kError) << expression;
  }
}

TEST_F(OperatorsTest, OnlyTrueWithACapitalCountsAsTrue) {
  EXPECT_EQ(Text("True=True"), "true");
  EXPECT_EQ(Text("True=true"), "false");
  EXPECT_EQ(Text("true=false"), "true");
  EXPECT_EQ(Text("TRUE=False"), "true");
  EXPECT_EQ(Text("True<>false"), "true");
  EXPECT_EQ(Text("(1=1)=(1=2)"), "true");
  EXPECT_EQ(Text("true+true"), "[Invalid command]");
  EXPECT_EQ(Text("cell(2,6)=True"), "true");
}

TEST_F(OperatorsTest, DifferentTypesDoNotMatchUnlessTheFirstIsANumber) {
  EXPECT_EQ(Text("\"a\"+1"), "[Type mismatch]");
  EXPECT_EQ(Text("true=1"), "[Type mismatch]");
  EXPECT_EQ(Text("\"a\"=true"), "[Type mismatch]");
  EXPECT_EQ(Text("cell(1,5)+1"), "[Type mismatch]");
  EXPECT_EQ(Type("\"a\"+1"), type::kError);
  EXPECT_EQ(Text("1+\"5\""), "6");
  EXPECT_EQ(Text("1+\"a\""), "1");
}

TEST_F(OperatorsTest, ErrorsInOperations) {
  EXPECT_EQ(Text("str(\"a\")+1"), "[Type mismatch]");
  EXPECT_EQ(Text("1+str(\"a\")"), "1");
  EXPECT_EQ(Text("str(\"a\")+str(\"b\")"), "[Type mismuch]");
  EXPECT_EQ(Text("\"a\"*\"b\"+str(\"c\")"), "[Invalid command]");
  EXPECT_EQ(Text("\"a\"+str(\"b\")"), "[Type mismatch]");
  EXPECT_EQ(Text("1/str(\"a\")"), "[Division by zero]");
}

TEST_F(OperatorsTest, CurrencyComputesLikeReal) {
  EXPECT_EQ(Text("cell(1,5)+cell(2,5)"), "30.5");
  EXPECT_EQ(Type("cell(1,5)+cell(2,5)"), type::kCurrency);
  EXPECT_EQ(Text("cell(1,5)<cell(2,5)"), "true");
  EXPECT_EQ(Text("1+cell(1,5)"), "11");
  EXPECT_EQ(Text("cell(1,5)+cell(2,5)*cell(1,5)"), "215");
}

TEST_F(OperatorsTest, OtherTypesKnowNoOperators) {
  EXPECT_EQ(Text("cell(1,7)=cell(2,7)"), "[Invalid command]");
  EXPECT_EQ(Text("cell(1,7)=\"01.02.2024\""), "[Type mismatch]");
}

TEST_F(OperatorsTest, ACommaInACellIsTheDecimalSign) {
  EXPECT_EQ(Text("cell(2,4)*2"), "6.5");
  EXPECT_EQ(Text("0+cell(2,4)"), "3.25");
}

}  // namespace
}  // namespace orv::command::test
