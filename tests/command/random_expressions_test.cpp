// The rewriting evaluator beside a recursive-descent one on random expressions.
#include "random_expressions.h"

#include <cstdio>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "command/evaluator.h"
#include "fake_services.h"
#include "model_evaluator.h"
#include "storage/value_types.h"
#include "support/tier.h"

namespace orv::command::test {
namespace {

constexpr int kRecords = 9;

class RandomExpressionsTest : public testing::Test {
 protected:
  RandomExpressionsTest() {
    Table table;
    table.types = {"",         "string", "integer",   "number", "real",
                   "currency", "logic",  "date&time", "path"};
    ExpressionMaker choice(99, kRecords, 1);
    for (int r = 0; r < kRecords; ++r) {
      std::vector<std::string> cells;
      for (std::size_t f = 0; f < table.types.size(); ++f) {
        cells.push_back(HostileText(static_cast<std::size_t>(choice.Pick(kHostileTexts))));
      }
      table.records.push_back(cells);
    }
    services_.tables[path_] = table;
    model_.records = kRecords;
    model_.fields = static_cast<int>(table.types.size());
    model_.path = "\"t.orv\"";
    model_.cell = [this](int r, int f) {
      const Table& t = services_.tables[path_];
      return ModelValue{
          t.records.at(static_cast<std::size_t>(r) - 1).at(static_cast<std::size_t>(f) - 1),
          storage::TypeCode(t.types.at(static_cast<std::size_t>(f) - 1))};
    };
    model_.find = [this](int f, const std::string& value) {
      return services_.FindFirst(path_, static_cast<std::int16_t>(f), value);
    };
  }

  FakeServices services_;
  Evaluator evaluator_{services_};
  const std::wstring path_ = L"\"t.orv\"";
  ModelContext model_;
};

TEST_F(RandomExpressionsTest, AgreeWithTheModel) {
  const int count = orv::test::LongTier() ? 3000000 : 300000;
  ExpressionMaker maker(20240601, kRecords, model_.fields);
  std::map<int, int> types;
  for (int i = 0; i < count; ++i) {
    const std::string expression = maker.Expression(3);
    model_.record = 1 + maker.Pick(kRecords);
    model_.field = 1 + maker.Pick(model_.fields);
    const Context context(path_, model_.record, static_cast<std::int16_t>(model_.field));
    const Value value = evaluator_.Evaluate(expression, context);
    const ModelValue expected = ModelEvaluate(expression, model_);
    ASSERT_EQ(value.text, expected.text) << expression << " at " << model_.record;
    ASSERT_EQ(value.type, expected.type) << expression << " at " << model_.record;
    ++types[value.type];
  }
  // Every kind of value must have come up, or the comparison shows little.
  for (const int typeCode : {0, 1, 3, 4, 7, 10, 255}) {
    EXPECT_GT(types[typeCode], count / 1000) << typeCode;
    std::printf("type %d: %d\n", typeCode, types[typeCode]);
  }
}

}  // namespace
}  // namespace orv::command::test
