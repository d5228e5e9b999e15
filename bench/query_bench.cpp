// Search, views and sorting over 1,000,000 records, through the members that a host calls. Times
// are for a whole call: a millisecond is a nanosecond a record.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include <benchmark/benchmark.h>

#include "orv/engine.h"

#include "engine/component.h"
#include "platform/code_page.h"
#include "storage/chain_array.h"
#include "storage/field_style.h"
#include "support/random_texts.h"

namespace orv::bench {
namespace {

constexpr std::int32_t kRecords = 1'000'000;

/// The fields of the table.
enum Field : std::int16_t {
  kText = 1,         ///< 20 to 60 characters
  kKey = 2,          ///< 8 letters
  kFixedKey = 3,     ///< the same in a fixed field
  kMark = 4,         ///< "hit" in one record of a hundred
  kMarkIndexed = 5,  ///< the same in a dictionary field
  kNumber = 6,
  kCity = 7,  ///< one of 300 names in a dictionary field
  kWord = 8,  ///< one of 12 words
  kFields = 8
};

std::wstring CellText(Random& random, std::int16_t field, const std::wstring& key) {
  switch (field) {
    case kText:
      return Letters(random, 20 + random.Below(41));
    case kKey:
    case kFixedKey:
      return key;
    case kMark:
    case kMarkIndexed:
      return L"miss";
    case kNumber:
      return std::to_wstring(random.Below(1'000'000));
    case kCity:
      return L"city number " + std::to_wstring(random.Below(300));
    default:
      return L"word" + std::to_wstring(random.Below(12));
  }
}

/// The table, made once a run in the temporary folder and deleted at the end.
class Table {
 public:
  static Table& Instance() {
    static Table table;
    return table;
  }

  Engine engine;
  std::wstring path;

  bool HasStyle(std::int16_t field, std::int16_t style) {
    std::int16_t freeSize = 0;
    std::int16_t cellSize = 0;
    std::int16_t dataType = 0;
    Boolean fixedType{};
    Boolean unique{};
    engine.GetFldStyle(path, field, freeSize, cellSize, fixedType, unique, dataType);
    return freeSize == style;
  }

 private:
  Table() {
    file_ = std::filesystem::temp_directory_path() /
            ("orv_query_bench_" + std::to_string(std::rand()) + ".orv");
    std::filesystem::remove(file_);
    std::wstring name = file_.wstring();
    path = L'"' + name + L'"';
    std::wstring title = L"Bench";
    engine.CmdNewOrvDB(name, title);
    std::int16_t fields = kFields;
    std::int16_t first = 1;
    engine.CmdAddFld(path, fields, first);
    std::int32_t records = kRecords;
    std::int32_t row = 1;
    engine.CmdAddRecord(path, records, row);
    Fill();
    SetStyle(kFixedKey, storage::free_size::kFixed, 8);
    for (const std::int16_t field : {kMarkIndexed, kCity})
      SetStyle(field, storage::free_size::kDictionary, 0);
  }
  ~Table() {
    engine.CloseAll();
    std::filesystem::remove(file_);
  }

  void Fill() {
    Random random;
    for (std::int32_t r = 1; r <= kRecords; ++r) {
      const std::wstring key = Letters(random, 8);
      for (std::int16_t f = 1; f <= kFields; ++f) {
        std::wstring text = CellText(random, f, key);
        if (text == L"miss" && r % 100 == 37) text = L"hit";
        engine.SetCellValue(text, path, r, f);
      }
    }
  }

  void SetStyle(std::int16_t field, std::int16_t style, std::int16_t cellSize) {
    std::int16_t dataType = 0;
    Boolean fixedType = Boolean::kTrue;
    Boolean unique = Boolean::kFalse;
    std::int16_t number = field;
    engine.SetFldStyle(path, number, style, cellSize, fixedType, unique, dataType);
  }

  std::filesystem::path file_;
};

void Report(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * kRecords); }

bool NeedsStyle(benchmark::State& state, std::int16_t field, std::int16_t style) {
  if (Table::Instance().HasStyle(field, style)) return true;
  state.SkipWithError("the field has not got its storage style");
  return false;
}

void Find(benchmark::State& state, std::int16_t field, const wchar_t* value, bool inCell,
          bool caseMatters) {
  Table& table = Table::Instance();
  for (auto _ : state) {
    std::wstring text = value;
    std::int32_t record = 1;
    std::int16_t searched = field;
    std::int16_t region = 0;
    std::int16_t direct = 0;
    Boolean in = ToBoolean(inCell);
    Boolean matters = ToBoolean(caseMatters);
    const std::int32_t found =
        table.engine.MtxFindFirst(table.path, record, searched, text, region, in, direct, matters);
    if (found != -1) state.SkipWithError("the value was found");
  }
  Report(state);
}

void BM_SubstringWithoutHit(benchmark::State& state) { Find(state, kText, L"Needle", true, true); }
void BM_SubstringIgnoringCaseWithoutHit(benchmark::State& state) {
  Find(state, kText, L"NEEDle0", true, false);
}
void BM_ShortSubstringIgnoringCaseWithoutHit(benchmark::State& state) {
  Find(state, kText, L"Q0", true, false);
}
void BM_ExactInFreeFieldWithoutHit(benchmark::State& state) {
  Find(state, kKey, L"abcdefgA", false, true);
}
void BM_ExactInFixedFieldWithoutHit(benchmark::State& state) {
  if (NeedsStyle(state, kFixedKey, storage::free_size::kFixed))
    Find(state, kFixedKey, L"abcdefgA", false, true);
}
void BM_ExactInDictionaryFieldWithoutHit(benchmark::State& state) {
  if (NeedsStyle(state, kCity, storage::free_size::kDictionary))
    Find(state, kCity, L"no city", false, true);
}

void BM_SubstringInDictionaryFieldWithoutHit(benchmark::State& state) {
  if (NeedsStyle(state, kCity, storage::free_size::kDictionary))
    Find(state, kCity, L"no city", true, false);
}

/// What a scan cannot do without: a bare loop over the pointers that touches the cells.
void BM_FloorPointerChase(benchmark::State& state, std::int16_t field, bool wholeText) {
  Table& table = Table::Instance();
  storage::Storage& storage = engine::Component::Instance().storage;
  const storage::Location at = storage.resolver.ResolvePath(table.path);
  const std::int32_t descriptor = storage.fields.GetFieldPos(at.position, field, *at.file);
  const storage::ChainRun run = storage::FindChainRun(*at.file, at.file->Int32At(descriptor), 1, 4);
  if (run.count < kRecords) return state.SkipWithError("the field does not stand in one block");
  const char* const bytes = at.file->View(1, at.file->Length()).data();
  for (auto _ : state) {
    std::uint64_t sum = 0;
    for (std::int32_t r = 0; r < kRecords; ++r) {
      std::int32_t position = 0;
      std::memcpy(&position, bytes + run.position - 1 + std::ptrdiff_t{r} * 4, sizeof position);
      const char* const cell = bytes + position - 1;
      const auto size = static_cast<unsigned char>(cell[2]);
      sum += size;
      if (wholeText) {
        for (int i = 0; i < size; ++i) sum += static_cast<unsigned char>(cell[3 + i]);
      } else {
        sum += static_cast<unsigned char>(cell[3]);
      }
    }
    benchmark::DoNotOptimize(sum);
  }
  Report(state);
}

/// Builds a view, with all views forgotten before.
void Build(benchmark::State& state, const std::wstring& condition, std::int32_t least,
           std::int32_t most) {
  Table& table = Table::Instance();
  std::wstring view = table.path + L"/" + condition;
  std::wstring path = table.path;
  query::FilterClass& filters = engine::Component::Instance().filters;
  for (auto _ : state) {
    filters.EraseCash();
    table.engine.Records(path);
    const std::int32_t shown = table.engine.Records(view);
    if (shown < least || shown > most)
      state.SkipWithError("the view shows another number of records");
  }
  Report(state);
}

constexpr std::int32_t kHits = kRecords / 100;

void BM_DirectViewOfFreeField(benchmark::State& state) { Build(state, L"f(4)=hit", kHits, kHits); }
void BM_DirectViewOfDictionaryField(benchmark::State& state) {
  if (NeedsStyle(state, kMarkIndexed, storage::free_size::kDictionary))
    Build(state, L"f(5)=hit", kHits, kHits);
}
void BM_ViewByComparison(benchmark::State& state) {
  Build(state, L"cell(rec,8)=\"word3\"", 1, kRecords / 2);
}
void BM_ViewByNumber(benchmark::State& state) {
  Build(state, L"val(cell(rec,6))>500000", 1, kRecords);
}
void BM_ViewByPart(benchmark::State& state) {
  Build(state, L"instr(1,cell(rec,1),\"ab\")>0", 1, kRecords);
}
void BM_ViewByChoice(benchmark::State& state) {
  Build(state, L"if(cell(rec,8)=\"word3\",val(cell(rec,6))>500000,false)", 1, kRecords / 2);
}
void BM_ViewOnView(benchmark::State& state) {
  Table& table = Table::Instance();
  std::wstring base = table.path + L"/f(8)=\"word3\"";
  const std::int32_t records = table.engine.Records(base);
  query::FilterClass& filters = engine::Component::Instance().filters;
  const std::wstring view = base + L"/cell(rec,6)=\"7\"";
  for (auto _ : state) {
    const std::int16_t slot = filters.GetFilterID(view);
    if (slot > 0) filters.ClearFilter(slot);
    std::wstring path = view;
    table.engine.Records(path);
  }
  state.SetItemsProcessed(state.iterations() * records);
}

/// Reads every record of a view that consists of single records.
void BM_ReadThroughView(benchmark::State& state) {
  Table& table = Table::Instance();
  std::wstring view = table.path + L"/f(8)=\"word3\"";
  const std::int32_t records = table.engine.Records(view);
  Boolean isMtx{};
  Boolean formula = Boolean::kFalse;
  for (auto _ : state) {
    for (std::int32_t r = 1; r <= records; ++r) {
      std::int16_t field = kKey;
      benchmark::DoNotOptimize(table.engine.GetCellValue(view, r, field, isMtx, formula));
    }
  }
  state.SetItemsProcessed(state.iterations() * records);
}

void BM_Sort(benchmark::State& state, std::int16_t field) {
  Table& table = Table::Instance();
  for (auto _ : state) table.engine.SortData(table.path, field);
  Report(state);
}

BENCHMARK_CAPTURE(BM_FloorPointerChase, lengths_of_the_texts, kText, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_FloorPointerChase, whole_texts, kText, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_FloorPointerChase, lengths_of_the_keys, kKey, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SubstringWithoutHit)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SubstringIgnoringCaseWithoutHit)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ShortSubstringIgnoringCaseWithoutHit)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ExactInFreeFieldWithoutHit)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ExactInFixedFieldWithoutHit)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ExactInDictionaryFieldWithoutHit)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SubstringInDictionaryFieldWithoutHit)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DirectViewOfFreeField)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DirectViewOfDictionaryField)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViewByComparison)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViewByNumber)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViewByPart)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViewByChoice)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ViewOnView)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadThroughView)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Sort, letters, kKey)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Sort, long_texts, kText)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Sort, twelve_words, kWord)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orv::bench
