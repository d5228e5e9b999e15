// Compiled expressions beside the rewriting evaluator.
#include "command/condition.h"

#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "fake_services.h"
#include "language_fixture.h"
#include "random_expressions.h"
#include "support/tier.h"

namespace orv::command::test {
namespace {

class ConditionTest : public LanguageTest {
 protected:
  bool IsCompiled(const std::string& expression) {
    return Condition(expression, path_, 1, evaluator_).IsCompiled();
  }
  std::string HoldingRecords(const std::string& expression) {
    Condition condition(expression, path_, 1, evaluator_);
    std::string records;
    for (std::int32_t r = 1; r <= 4; ++r) {
      if (condition.Holds(r)) records += std::to_string(r);
    }
    return records;
  }
};

TEST_F(ConditionTest, HoldsWhereTheTextIsExactlyTrue) {
  EXPECT_EQ(HoldingRecords("cell(rec,1)=\"alpha\""), "14");
  EXPECT_EQ(HoldingRecords("(cell(rec,2)>0)"), "13");
  EXPECT_EQ(HoldingRecords("cell(rec,6)"), "1");
  EXPECT_EQ(HoldingRecords("1=1"), "1234");
  EXPECT_EQ(HoldingRecords("True"), "");
  EXPECT_EQ(HoldingRecords(""), "");
  EXPECT_EQ(HoldingRecords("if(instr(1,cell(rec,1),\"ph\")>0,val(cell(rec,2))=5,1=2)"), "1");
}

TEST_F(ConditionTest, OrdinaryConditionsAreCompiled) {
  for (const char* expression :
       {"cell(rec,8)=\"x\"", "val(cell(rec,4))>500000", "if(cell(rec,1)=\"a\",1=1,1=2)",
        "instr(1,cell(rec,1),\"a\")>0", "cell(rec-1,1)<>cell( REC , 1 )", "(1+2*3=7)", "rec>10",
        "field(1,\"a\")=rec", "title=\"x\"", "matrix_cell(mtx,1,1,true)=\"a\"", "fld=records"}) {
    EXPECT_TRUE(IsCompiled(expression)) << expression;
  }
}

TEST_F(ConditionTest, UncoveredShapesAreLeftToRewriting) {
  for (const char* expression :
       {"1,2", "[a]", "1+", "1++2", "(1)2", "(1", "1)", "\"a", "a\"b\"", "\"a\"\"b\"",
        "cell(1,2).x", "rec(1)", "1+*2", "-pi", "*", "\"a\"(1)"}) {
    EXPECT_FALSE(IsCompiled(expression)) << expression;
  }
  EXPECT_FALSE(IsCompiled(std::string(100, '(') + "1" + std::string(100, ')')));
}

TEST_F(ConditionTest, AnUncoveredShapeHoldsAllTheSame) {
  EXPECT_EQ(HoldingRecords("(cell(rec,1)=\"alpha\""), "14");
}

TEST_F(ConditionTest, WithoutColumnsTheCellsAreReadOneByOne) {
  services_.givesColumns = false;
  EXPECT_EQ(HoldingRecords("cell(rec,1)=\"alpha\""), "14");
  EXPECT_TRUE(IsCompiled("cell(rec,1)=\"alpha\""));
}

TEST_F(ConditionTest, FailuresOfTheStorageAreRaised) {
  Condition condition("cell(rec,1)=\"alpha\"", path_, 1, evaluator_);
  EXPECT_THROW(condition.Holds(99), platform::RunTimeFailure);
  EXPECT_TRUE(condition.Holds(1));
}

// A raised failure as a value, so that it can be compared.
template <typename Evaluation>
Value Outcome(FakeServices& services, Evaluation evaluation) {
  services.error.Clear();
  Value value;
  try {
    evaluation(value);
  } catch (const platform::RunTimeFailure& failure) {
    value.text = "raised " + std::to_string(static_cast<int>(failure.number()));
    value.type = -1;
  }
  return value;
}

// All shapes at hand: whole expressions, and now and then a character put in or taken out.
std::string MaybeDamaged(std::string expression, ExpressionMaker& maker) {
  static const std::string kCharacters = "()[],\"+-. x=";
  if (expression.empty() || maker.Pick(20) != 0) return expression;
  const auto at = static_cast<std::size_t>(maker.Pick(static_cast<int>(expression.size())));
  if (maker.Pick(2) == 0) {
    expression.erase(at, 1);
  } else {
    const auto c = static_cast<std::size_t>(maker.Pick(static_cast<int>(kCharacters.size())));
    expression.insert(at, 1, kCharacters[c]);
  }
  return expression;
}

// More than a million of them are of a covered shape. Sanitizers are too slow for that many.
int ConditionCount() {
  if (orv::test::LongTier()) return 11000000;
#ifdef __SANITIZE_ADDRESS__
  return 100000;
#else
  return 1100000;
#endif
}

TEST(CompiledExpressionTest, GivesWhatRewritingGivesOnRandomConditions) {
  constexpr int kRecords = 12;
  const int count = ConditionCount();
  FakeServices services;
  Evaluator evaluator(services);
  const std::wstring path = L"\"t.orv\"";
  ExpressionMaker maker(4711, kRecords + 1, 10);  // one record and one field too many
  maker.AllowStrangeRecords();
  Table table;
  table.types = {"",         "string", "integer",   "number", "real",
                 "currency", "logic",  "date&time", "int"};
  for (int r = 0; r < kRecords; ++r) {
    std::vector<std::string> cells;
    for (std::size_t f = 0; f < table.types.size(); ++f) {
      cells.push_back(HostileText(static_cast<std::size_t>(maker.Pick(kHostileTexts))));
    }
    table.records.push_back(cells);
  }
  services.tables[path] = table;

  int compiled = 0;
  int held = 0;
  for (int i = 0; i < count; ++i) {
    const std::string expression = MaybeDamaged(maker.Condition(1 + maker.Pick(3)), maker);
    services.givesColumns = maker.Pick(4) != 0;
    const auto fast = CompiledExpression::Compile(expression, path, evaluator);
    if (fast == nullptr) continue;
    ++compiled;
    const Context context(path, 1 + maker.Pick(kRecords),
                          static_cast<std::int16_t>(1 + maker.Pick(9)));
    const Value expected =
        Outcome(services, [&](Value& value) { evaluator.Evaluate(expression, context, value); });
    const int expectedCode = services.error.value();
    const int expectedReads = std::exchange(services.reads, 0);
    const Value value = Outcome(services, [&](Value& result) { fast->Evaluate(context, result); });
    ASSERT_EQ(value.text, expected.text) << expression << " at " << context.record;
    ASSERT_EQ(value.type, expected.type) << expression << " at " << context.record;
    ASSERT_EQ(services.error.value(), expectedCode) << expression << " at " << context.record;
    ASSERT_EQ(std::exchange(services.reads, 0), expectedReads) << expression;
    if (expected.type == -1) continue;
    const bool holds = fast->IsTrueFor(context);
    ASSERT_EQ(holds, expected.text == "true") << expression << " at " << context.record;
    services.reads = 0;
    held += holds ? 1 : 0;
  }
  std::printf("%d of %d random conditions were compiled (%.1f %%), %d held\n", compiled, count,
              100.0 * compiled / count, held);
  EXPECT_GT(compiled, count / 2);
  EXPECT_GT(held, count / 50);
}

// Numbers on the edges of single precision, where reading a double's text could round differently.
TEST(CompiledExpressionTest, NumbersPassThroughTheirTexts) {
  FakeServices services;
  Evaluator evaluator(services);
  const std::wstring path = L"\"t\"";
  services.tables[path] = {{"string"}, {{""}}};
  ExpressionMaker maker(815, 1, 1);
  const auto compiled = CompiledExpression::Compile(
      "val(cell(rec,1))+0.1*val(cell(rec,1))-val(cell(rec,1))/3", path, evaluator);
  ASSERT_NE(compiled, nullptr);
  const Context context(path, 1, 1);
  for (int i = 0; i < 200000; ++i) {
    // The middle between two singles, a few digits off.
    const float low =
        static_cast<float>(1 + maker.Pick(1 << 24)) / static_cast<float>(1 << maker.Pick(30));
    const double middle =
        (static_cast<double>(low) + static_cast<double>(std::nextafter(low, 1e30F))) / 2;
    char text[64];
    std::snprintf(text, sizeof text, "%.*g", 8 + maker.Pick(16), middle);
    services.tables[path].records[0][0] = text;
    Value value;
    compiled->Evaluate(context, value);
    ASSERT_EQ(
        value.text,
        evaluator.Evaluate("val(cell(rec,1))+0.1*val(cell(rec,1))-val(cell(rec,1))/3", context)
            .text)
        << text;
  }
}

}  // namespace
}  // namespace orv::command::test
