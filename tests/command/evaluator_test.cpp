#include "command/evaluator.h"

#include <string>

#include <gtest/gtest.h>

#ifdef __linux__
#include <pthread.h>
#endif

#include "language_fixture.h"

namespace orv::command::test {
namespace {

class EvaluatorTest : public LanguageTest {};

TEST_F(EvaluatorTest, MultiplicativeOperatorsBindTighter) {
  EXPECT_EQ(Text("2+3*4"), "14");
  EXPECT_EQ(Text("2*3+4"), "10");
  EXPECT_EQ(Text("1+2=3"), "true");
  EXPECT_EQ(Text("1+2*3=7"), "true");
  EXPECT_EQ(Text("20-2*3*2-1"), "7");
}

TEST_F(EvaluatorTest, ALevelIsReducedFromLeftToRight) {
  EXPECT_EQ(Text("10-2*3-4"), "0");
  EXPECT_EQ(Text("10-4-3"), "3");
  EXPECT_EQ(Text("2^3*2"), "16");
  EXPECT_EQ(Text("2*3^2"), "36");
  EXPECT_EQ(Text("2^3^2"), "64");
  EXPECT_EQ(Text("100/10/5"), "2");
  EXPECT_EQ(Text("1+2>2"), "true");
}

TEST_F(EvaluatorTest, ComparisonsStandOnTheLevelOfTheSum) {
  EXPECT_EQ(Text("3=1+2"), "[Type mismatch]");  // (3=1) is a logic value
  EXPECT_EQ(Text("3=(1+2)"), "true");
  EXPECT_EQ(Text("6=2*3"), "true");
}

TEST_F(EvaluatorTest, ParenthesesAreEvaluatedFirst) {
  EXPECT_EQ(Text("(2+3)*4"), "20");
  EXPECT_EQ(Text("4*(2+3)"), "20");
  EXPECT_EQ(Text("((1+2)*(3+4))"), "21");
  EXPECT_EQ(Text("2-(3-(4-5))"), "-2");
  EXPECT_EQ(Text("(\"a\")+\"b\""), "ab");
  EXPECT_EQ(Text("(\")\")+\"b\""), ")b");
}

TEST_F(EvaluatorTest, AMissingClosingParenthesisStandsAtTheEnd) {
  EXPECT_EQ(Text("2*(3+4"), "14");
  EXPECT_EQ(Text("str(5"), "5");
}

TEST_F(EvaluatorTest, BlanksOutsideStringsAreIgnoredEvenInsideTokens) {
  EXPECT_EQ(Text(" 1 + 2 "), "3");
  EXPECT_EQ(Text("1 2"), "12");
  EXPECT_EQ(Text("re c"), "2");
  EXPECT_EQ(Text("\"a b\" + \" c\""), "a b c");
  EXPECT_EQ(Text("s t r (5)"), "5");
  EXPECT_EQ(Text("\t1"), "\t1");
}

TEST_F(EvaluatorTest, OperatorsInsideStringsAreText) {
  EXPECT_EQ(Text("\"a+b\""), "a+b");
  EXPECT_EQ(Text("\"a\"+\"*\"+\"(b\""), "a*(b");
  EXPECT_EQ(Text("\"1+2*3\"=\"1+2*3\""), "true");
}

TEST_F(EvaluatorTest, LiteralTypes) {
  EXPECT_EQ(Type("12"), type::kInteger);
  EXPECT_EQ(Type("2.5"), type::kReal);
  EXPECT_EQ(Type("5."), type::kReal);
  EXPECT_EQ(Type(".5"), type::kReal);
  EXPECT_EQ(Type("1E5"), type::kInteger);
  EXPECT_EQ(Type("\"a\""), type::kString);
  EXPECT_EQ(Type("true"), type::kLogic);
  EXPECT_EQ(Type("abc"), type::kVariant);
  EXPECT_EQ(Type("1.2.3"), type::kVariant);
  EXPECT_EQ(Type("."), type::kVariant);
  EXPECT_EQ(Type("E5"), type::kVariant);
  EXPECT_EQ(Type(""), type::kVariant);
}

TEST_F(EvaluatorTest, TheEmptyExpressionIsEmpty) {
  EXPECT_EQ(Text(""), "");
  EXPECT_EQ(Text("   "), "");
  EXPECT_EQ(Text("()"), "");
  EXPECT_EQ(Text("\"\""), "");
  EXPECT_EQ(Type("\"\""), type::kString);
}

TEST_F(EvaluatorTest, AMinusBeforeADigitBelongsToTheNumberWhereAnOperandBegins) {
  EXPECT_EQ(Text("-5"), "-5");
  EXPECT_EQ(Text("- 5"), "-5");
  EXPECT_EQ(Text("-.5+1"), "0.5");
  EXPECT_EQ(Text("1-2*(2-5)"), "7");
  EXPECT_EQ(Text("3--2"), "5");
  EXPECT_EQ(Text("2*-3"), "-6");
  EXPECT_EQ(Text("2^-1"), "0.5");
  EXPECT_EQ(Text("5-3"), "2");
  EXPECT_EQ(Text("(2)-3"), "-1");
  EXPECT_EQ(Text("-pi"), "[Invalid command]");
}

TEST_F(EvaluatorTest, ThereIsNoLessOrEqual) {
  EXPECT_EQ(Text("1<=2"), "[Type mismatch]");
  EXPECT_EQ(Text("1>=2"), "[Type mismatch]");
  EXPECT_EQ(Text("1=<2"), "[Type mismatch]");
}

TEST_F(EvaluatorTest, UnequalIsOneOperatorOnlyWithoutABlankInside) {
  EXPECT_EQ(Text("\"a\"<>\"b\""), "true");
  EXPECT_EQ(Text("\"a\"< >\"b\""), "[Type mismatch]");
}

TEST_F(EvaluatorTest, UntypedOperandsAreRefused) {
  EXPECT_EQ(Text("abc+1"), "[Invalid command]");
  EXPECT_EQ(Text("abc=abc"), "[Invalid command]");
  EXPECT_EQ(Text("1+abc"), "1");
  EXPECT_EQ(Text("*2"), "[Invalid command]");
}

TEST_F(EvaluatorTest, MissingOperandsAreEmpty) {
  EXPECT_EQ(Text("1+"), "1");
  EXPECT_EQ(Text("1+2*"), "1");
  EXPECT_EQ(Text("1+*2"), "1");
  EXPECT_EQ(Text("1++2"), "3");
}

TEST_F(EvaluatorTest, BracketsAndCommasEndTokensWithoutAnOperation) {
  EXPECT_EQ(Text("a,b"), "a,b");
  EXPECT_EQ(Text("[abc]"), "[abc]");
  EXPECT_EQ(Text("1,2*3"), "1,6");
  EXPECT_EQ(Text("1)"), "1)");
}

TEST_F(EvaluatorTest, ANewScanReadsTypesFromTheText) {
  // 0.5*2 is the real 1; in the rewritten text 123456789+1 it is an integer, so the sum is exact.
  EXPECT_EQ(Text("123456789+0.5*2"), "123456790");
  // Without a new scan the real stays what it is.
  EXPECT_EQ(Text("0.5*2+123456789"), "1.234568E+08");
  // 10/3 has a point in the rewritten text: a real, though an integer division made it.
  EXPECT_EQ(Text("1+10/3"), "4.333333");
  EXPECT_EQ(Text("10/3+1"), "4.33333333333333");
}

TEST_F(EvaluatorTest, FinishedValuesAreNotTornByANewScan) {
  EXPECT_EQ(Text("cell(2,1)+\"x\""), "be\"tax");
  EXPECT_EQ(Text("\"<\"+cell(2,1)+\">\""), "<be\"ta>");
  EXPECT_EQ(Text("1-2*3"), "-5");
  EXPECT_EQ(Text("1+2*-3*-1"), "7");
  EXPECT_EQ(Text("0+10^20*1"), "1E+20");
  EXPECT_EQ(Text("0+cell(4,4)*1"), "1E+15");
  EXPECT_EQ(Text("\"a\"*\"b\"+2*3"), "[Type mismatch]");
  EXPECT_EQ(Text("cell(1,2)+2*3"), "11");
}

TEST_F(EvaluatorTest, AValueInParenthesesCanBeContinuedAsText) {
  EXPECT_EQ(Text("(1)2"), "12");
  EXPECT_EQ(Text("(re)c"), "2");
}

TEST_F(EvaluatorTest, CharactersOfCodeZeroEndTokens) {
  EXPECT_EQ(Text(std::string("a\0b", 3)), std::string("a\0b", 3));
  EXPECT_EQ(Text(std::string("1\0+2", 4)), "3");
}

TEST_F(EvaluatorTest, AStringWithoutItsClosingQuoteRunsToTheEnd) {
  EXPECT_EQ(Text("\"abc+1"), "\"abc+1");
  EXPECT_EQ(Type("\"abc+1"), type::kString);
}

TEST_F(EvaluatorTest, LongSumsAndProducts) {
  std::string sum = "0";
  std::string mixed = "0";
  for (int i = 0; i < 5000; ++i) {
    sum += "+1";
    mixed += "+2*3";
  }
  EXPECT_EQ(Text(sum), "5000");
  EXPECT_EQ(Text(mixed), "30000");
}

class NestingTest : public LanguageTest {
 protected:
  int RaisedBy(const std::string& expression) {
    try {
      evaluator_.Evaluate(expression, context_);
    } catch (const platform::RunTimeFailure& failure) {
      return static_cast<int>(failure.number());
    }
    return 0;
  }
  static std::string Nested(const std::string& open, const std::string& close, int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) text += open;
    text += "1";
    for (int i = 0; i < depth; ++i) text += close;
    return text;
  }
};

TEST_F(NestingTest, ReasonableDepthsWork) {
  EXPECT_EQ(Text(Nested("(", ")", 300)), "1");
  EXPECT_EQ(Text(Nested("val(", ")", 300)), "1");
}

TEST_F(NestingTest, TenThousandParenthesesAreErrorTwentyEight) {
  EXPECT_EQ(RaisedBy(Nested("(", ")", 10000)), 28);
  EXPECT_EQ(RaisedBy(Nested("(", "", 10000)), 28);
}

TEST_F(NestingTest, TenThousandCallsAreErrorTwentyEight) {
  EXPECT_EQ(RaisedBy(Nested("val(", ")", 10000)), 28);
  EXPECT_EQ(RaisedBy(Nested("if(1=1,", ",2)", 10000)), 28);
}

TEST_F(NestingTest, TheEvaluatorGoesOnAfterwards) {
  EXPECT_EQ(RaisedBy(Nested("(", ")", 10000)), 28);
  EXPECT_EQ(Text("(1+2)*3"), "9");
}

#ifdef __linux__
struct SmallStackRun {
  Evaluator* evaluator;
  const Context* context;
  std::string expression;
  int raised = 0;
};

void* EvaluateOnSmallStack(void* argument) {
  auto& run = *static_cast<SmallStackRun*>(argument);
  try {
    run.evaluator->Evaluate(run.expression, *run.context);
  } catch (const platform::RunTimeFailure& failure) {
    run.raised = static_cast<int>(failure.number());
  }
  return nullptr;
}

TEST_F(NestingTest, ASmallStackIsErrorTwentyEightBeforeItIsOverrun) {
  SmallStackRun run{&evaluator_, &context_, Nested("val(", ")", 900)};
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
  pthread_t thread{};
  ASSERT_EQ(pthread_create(&thread, &attributes, EvaluateOnSmallStack, &run), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  EXPECT_EQ(run.raised, 28);
}
#endif

// A formula runs the language again from inside a cell read.
class FormulaServices : public FakeServices {
 public:
  void ReadCell(const std::wstring& path, std::int32_t record, std::int16_t field, bool formula,
                std::string& text) override {
    if (!formula) return FakeServices::ReadCell(path, record, field, formula, text);
    const Context context(path, record, field);
    text = RunCommand(command, kCommandMode, context, *evaluator).value_or("");
  }
  std::string command;
  Evaluator* evaluator = nullptr;
};

TEST(FormulaNestingTest, FormulasMayReadFormulas) {
  FormulaServices services;
  Evaluator evaluator(services);
  services.evaluator = &evaluator;
  const std::wstring path = L"\"t\"";
  services.tables[path] = {{"integer"}, {{"1"}, {"2"}, {"3"}, {"4"}, {"5"}}};
  // A running sum: each record adds its own value to the formula of the record before.
  services.command = "=val(cell(rec,1))+if(rec=1,0,val(matrix_cell(\"t\",rec-1,1,true)));";
  const Context context(path, 5, 1);
  EXPECT_EQ(evaluator.Evaluate("matrix_cell(\"t\",5,1,true)", context).text, "15");
}

TEST(FormulaNestingTest, AFormulaThatReadsItselfIsErrorTwentyEight) {
  FormulaServices services;
  Evaluator evaluator(services);
  services.evaluator = &evaluator;
  const std::wstring path = L"\"t\"";
  services.tables[path] = {{"integer"}, {{"1"}}};
  services.command = "=matrix_cell(\"t\",1,1,true);";
  const Context context(path, 1, 1);
  try {
    evaluator.Evaluate("matrix_cell(\"t\",1,1,true)", context);
    FAIL() << "nothing was raised";
  } catch (const platform::RunTimeFailure& failure) {
    EXPECT_EQ(failure.number(), platform::RunTimeError::kOutOfStack);
  }
  EXPECT_EQ(evaluator.Evaluate("1+1", context).text, "2");
}

}  // namespace
}  // namespace orv::command::test
