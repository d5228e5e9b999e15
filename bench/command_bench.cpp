// What a condition costs per record, without the cell read: the cells come out of memory.
#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>

#include "command/condition.h"
#include "command/evaluator.h"

namespace orv::command {
namespace {

constexpr std::int32_t kRecords = 1024;

// A table in memory whose cells cost next to nothing to read.
class BenchServices : public Services {
 public:
  BenchServices() {
    for (std::int32_t r = 0; r < kRecords; ++r) {
      words_[r % 2 == 0 ? 0 : 1] = r % 2 == 0 ? "x" : "another";
      numbers_[r] = std::to_string(499000 + r * 2);
    }
  }
  std::int32_t Records(const std::wstring&) override { return kRecords; }
  std::int32_t Fields(const std::wstring&) override { return 8; }
  void ReadCell(const std::wstring&, std::int32_t record, std::int16_t field, bool,
                std::string& text) override {
    text = Cell(record, field);
  }
  std::string_view CellTypeName(const std::wstring&, std::int32_t, std::int16_t) override {
    return {};
  }
  std::int32_t FindFirst(const std::wstring&, std::int16_t, std::string_view) override {
    return -1;
  }
  storage::ErrorCode& Error() override { return error_; }
  std::unique_ptr<Column> OpenColumn(const std::wstring&, std::int16_t field) override {
    return std::make_unique<BenchColumn>(*this, field);
  }

  const std::string& Cell(std::int32_t record, std::int16_t field) const {
    return field == 4 ? numbers_[record % kRecords] : words_[record % 2];
  }

 private:
  class BenchColumn : public Column {
   public:
    BenchColumn(const BenchServices& services, std::int16_t field)
        : services_(services), field_(field) {}
    std::string_view Text(std::int32_t record, std::string&) override {
      return services_.Cell(record, field_);
    }
    std::string_view TypeName(std::int32_t) override { return {}; }

   private:
    const BenchServices& services_;
    std::int16_t field_;
  };

  std::string words_[2];
  std::string numbers_[kRecords];
  storage::ErrorCode error_;
};

constexpr const char* kConditions[] = {
    "cell(rec,8)=\"x\"",
    "val(cell(rec,4))>500000",
    "if(cell(rec,8)=\"x\",val(cell(rec,4))>500000,1=2)",
    "instr(1,cell(rec,8),\"oth\")>0",
    "val(cell(rec,4))*2+1>1000000",
};

void BM_ConditionByRewriting(benchmark::State& state) {
  BenchServices services;
  Evaluator evaluator(services);
  const std::wstring path = L"\"bench\"";
  const std::string condition = kConditions[state.range(0)];
  Value value;
  const auto holds = [&](std::int32_t record) {
    evaluator.Evaluate(condition, Context(path, record, 1), value);
    return value.text == "true";
  };
  int held = 0;
  for (std::int32_t r = 1; r <= kRecords; ++r) held += holds(r) ? 1 : 0;
  if (held == 0 || held == kRecords) state.SkipWithError("the condition does not discriminate");
  std::int32_t record = 1;
  for (auto _ : state) {
    benchmark::DoNotOptimize(holds(record));
    record = record % kRecords + 1;
  }
  state.SetLabel(condition);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ConditionByRewriting)->DenseRange(0, 4);

void BM_ConditionCompiled(benchmark::State& state) {
  BenchServices services;
  Evaluator evaluator(services);
  Condition condition(kConditions[state.range(0)], L"\"bench\"", 1, evaluator);
  if (!condition.IsCompiled()) state.SkipWithError("the condition is not compiled");
  std::int32_t record = 1;
  for (auto _ : state) {
    benchmark::DoNotOptimize(condition.Holds(record));
    record = record % kRecords + 1;
  }
  state.SetLabel(kConditions[state.range(0)]);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ConditionCompiled)->DenseRange(0, 4);

}  // namespace
}  // namespace orv::command
