// Analysis, storage conversion and export of a table at 100,000 and 1,000,000 records: the cost of
// a record must not grow with their number. The table has the fields of bench/peers.
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "orv/engine.h"

#include "convert/storage_analysis.h"
#include "engine/component.h"
#include "platform/code_page.h"
#include "support/bench_folder.h"
#include "support/random_texts.h"

namespace orv::bench {
namespace {

/// The fields of the table.
enum Field : std::int16_t {
  kId = 1,      ///< every value once
  kLetters,     ///< 8 letters
  kCity,        ///< one of 300 names
  kNumber,      ///< below 1,000,000
  kDate,        ///< dd.mm.yyyy
  kText,        ///< 20 to 60 characters
  kRemark,      ///< mostly empty
  kWord,        ///< one of 12 words
  kManyValues,  ///< one of 200,000 numbers
  kFields = kManyValues
};

constexpr std::int16_t kFree = 0;
constexpr std::int16_t kFixed = 1;
constexpr std::int16_t kDictionary = 11;

std::wstring CellText(Random& random, std::int32_t record, std::int16_t field) {
  switch (field) {
    case kId:
      return std::to_wstring(record);
    case kLetters:
      return Letters(random, 8);
    case kCity:
      return L"city number " + std::to_wstring(random.Below(300));
    case kNumber:
      return std::to_wstring(random.Below(1'000'000));
    case kDate:
      return L"17.05." + std::to_wstring(1950 + random.Below(70));
    case kText:
      return Letters(random, 20 + random.Below(41));
    case kRemark:
      return random.Below(20) == 0 ? L"a remark" : std::wstring();
    case kWord:
      return L"word" + std::to_wstring(random.Below(12));
    default:
      return std::to_wstring(random.Below(200'000));
  }
}

/// A table of so many records in the temporary folder, made on first use.
class Table {
 public:
  static Table& Of(std::int64_t records) {
    static std::map<std::int64_t, std::unique_ptr<Table>> tables;
    auto& table = tables[records];
    if (!table) table = std::make_unique<Table>(static_cast<std::int32_t>(records));
    return *table;
  }

  explicit Table(std::int32_t records) : records_(records) {
    std::wstring file = name_;
    std::wstring title = L"Bench";
    std::int16_t fields = kFields;
    std::int16_t first = 1;
    std::int32_t row = 1;
    engine.CmdNewOrvDB(file, title);
    engine.CmdAddFld(path, fields, first);
    engine.CmdAddRecord(path, records, row);
    Random random;
    for (std::int32_t r = 1; r <= records; ++r) {
      for (std::int16_t f = 1; f <= kFields; ++f) {
        std::wstring text = CellText(random, r, f);
        if (!text.empty()) engine.SetCellValue(text, path, r, f);
      }
    }
  }

  std::int32_t records() const { return records_; }
  std::wstring Target() const { return Name("target"); }

  void SetStyle(std::int16_t field, std::int16_t freeSize, std::int16_t cellSize,
                std::int16_t dataType) {
    Boolean no = Boolean::kFalse;
    engine.SetFldStyle(path, field, freeSize, cellSize, no, no, dataType);
  }

  void SaveAs(std::int16_t fileType, bool withProperties) {
    std::wstring target = Target();
    Boolean properties = ToBoolean(withProperties);
    engine.SaveMtxAs(path, target, properties, fileType);
  }

  Engine engine;

 private:
  std::wstring Name(const std::string& file) const {
    return std::filesystem::path(folder_.File(file)).wstring();
  }

  BenchFolder folder_{""};
  std::wstring name_ = Name("table");
  std::int32_t records_;

 public:
  std::wstring path = L'"' + name_ + L'"';
};

bool Failed(benchmark::State& state, Table& table) {
  const std::int16_t code = *table.engine.ErrorCode().Int16();
  if (code != 0) state.SkipWithError(("error code " + std::to_string(code)).c_str());
  return code != 0;
}

/// The time of a record beside the time of the whole.
void CountRecords(benchmark::State& state, const Table& table) {
  state.counters["record"] = benchmark::Counter(
      static_cast<double>(table.records()),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void Analyse(benchmark::State& state, Field field) {
  Table& table = Table::Of(state.range(0));
  storage::Storage& storage = engine::Component::Instance().storage;
  const storage::Location at = storage.resolver.ResolvePath(table.path);
  const std::int32_t descriptor = storage.fields.GetFieldPos(at.position, field, *at.file);
  std::int32_t distinct = 0;
  for (auto _ : state) {
    dialogs::CompressForm form([](dialogs::CompressForm&) {});
    storage::FieldReader reader(*at.file, at.position, descriptor, &storage.types);
    convert::Analysis analysis;
    convert::AnalyseField(form, reader, table.records(), analysis);
    distinct = analysis.values.size();
  }
  state.counters["distinct"] = distinct;
  CountRecords(state, table);
}

/// Converts a field there, timed, and back, not timed.
void Convert(benchmark::State& state, Field field, std::int16_t from, std::int16_t to) {
  constexpr std::int16_t kCellSize = 64;
  Table& table = Table::Of(state.range(0));
  if (from != kFree) table.SetStyle(field, from, kCellSize, 0);
  for (auto _ : state) {
    table.SetStyle(field, to, kCellSize, 0);
    if (Failed(state, table)) break;
    state.PauseTiming();
    table.SetStyle(field, from, kCellSize, 0);
    state.ResumeTiming();
  }
  if (from != kFree) table.SetStyle(field, kFree, 0, 0);
  CountRecords(state, table);
}

void Export(benchmark::State& state, std::int16_t fileType, bool withProperties) {
  Table& table = Table::Of(state.range(0));
  for (auto _ : state) {
    table.SaveAs(fileType, withProperties);
    if (Failed(state, table)) break;
    state.PauseTiming();
    std::filesystem::remove(table.Target());
    state.ResumeTiming();
  }
  CountRecords(state, table);
  state.counters["cells/s"] =
      benchmark::Counter(static_cast<double>(std::int64_t{table.records()} * kFields),
                         benchmark::Counter::kIsIterationInvariantRate);
}

void AtBothSizes(benchmark::internal::Benchmark* workload) {
  workload->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->Iterations(3);
}

BENCHMARK_CAPTURE(Analyse, 12_values, kWord)->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Analyse, 300_values, kCity)->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Analyse, 200000_values, kManyValues)->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Analyse, every_value_once, kId)->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Convert, free_to_fixed, kText, kFree, kFixed)->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Convert, fixed_to_free, kText, kFixed, kFree)->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Convert, free_to_dictionary_of_12, kWord, kFree, kDictionary)->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Convert, free_to_dictionary_of_300, kCity, kFree, kDictionary)
    ->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Convert, free_to_dictionary_of_200000, kManyValues, kFree, kDictionary)
    ->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Convert, free_to_dictionary_of_ids, kId, kFree, kDictionary)->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Convert, dictionary_to_free, kCity, kDictionary, kFree)->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Convert, fixed_to_dictionary, kCity, kFixed, kDictionary)->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Export, to_text, 0, false)->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Export, values_to_container, 1, false)->Apply(AtBothSizes);
BENCHMARK_CAPTURE(Export, everything_to_container, 1, true)->Apply(AtBothSizes);

}  // namespace
}  // namespace orv::bench
