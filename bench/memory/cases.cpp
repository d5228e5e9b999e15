#include "memory/cases.h"

#include <filesystem>

#include "memory/heap.h"
#include "storage/layout.h"
#include "support/cell_loops.h"
#include "support/engine_table.h"
#include "support/floor_map.h"

namespace orv::bench {
namespace {

namespace layout = storage::layout;

constexpr std::int16_t kDictionaryStyle = 11;

/// The table filled at once, made when a case first asks for it.
class LoadedTable {
 public:
  LoadedTable(const BenchFolder& folder, std::int32_t records)
      : folder_(folder), records_(records) {}

  EngineTable Open() {
    EngineTable table(folder_.File("loaded.orv"));
    if (!loaded_) table.Load(records_);
    loaded_ = true;
    table.Close();
    return table;
  }
  /// Of its own, to be changed.
  EngineTable Copy(const std::string& name) {
    Open();
    std::filesystem::copy_file(folder_.File("loaded.orv"), folder_.File(name));
    return EngineTable(folder_.File(name));
  }
  std::int32_t records() const { return records_; }

 private:
  const BenchFolder& folder_;
  std::int32_t records_;
  bool loaded_ = false;
};

/// The check of a pass over all cells by the rule of the table.
std::uint64_t ExpectedOfAll(std::int32_t records) {
  Check check;
  for (std::int32_t record = 1; record <= records; ++record) {
    for (std::int16_t field = 1; field <= kFields; ++field) {
      check.Add(std::string_view(CellText(record, field)));
    }
  }
  return check.sum();
}

void ReadEveryCell(EngineTable& table, std::int32_t records) {
  if (ReadAll(table, records).check != ExpectedOfAll(records)) {
    throw NotMeasured("other texts than expected");
  }
}

/// What the watch has seen, before and after all files are closed.
Usage Finish(const HeapWatch& heap, EngineMatrix& matrix, std::string what, std::string thing,
             std::int64_t things) {
  Usage usage{std::move(what), std::move(thing), things, heap.Now(), heap.Most()};
  matrix.Close();
  usage.closed = heap.Now();
  return usage;
}

/// The blocks of the chain array that begins at `start`, counted in the file itself.
std::int64_t CountBlocks(const FloorMap& map, std::int32_t start) {
  std::int64_t blocks = 0;
  for (std::int64_t at = start; at != 0; ++blocks) {
    const std::int64_t entries = map.Int32At(at);
    at = map.Int32At(at + layout::kChainHeadBytes + entries * layout::kPointerBytes);
  }
  return blocks;
}

/// The blocks of all chain arrays of the root matrix, that of its fields included.
std::int64_t CountBlocks(const std::string& file) {
  const FloorMap map(file);
  const std::int64_t root = map.Int32At(layout::file::kRootPointer);
  const std::int64_t fields =
      map.Int32At(root + layout::matrix::kFieldTable) + layout::field_table::kChain;
  std::int64_t blocks = CountBlocks(map, static_cast<std::int32_t>(fields));
  for (int f = 1; f <= kFields; ++f) {
    const std::int64_t descriptor = map.Int32At(fields + std::int64_t{f} * layout::kPointerBytes);
    blocks += CountBlocks(map, map.Int32At(descriptor + layout::descriptor::kData));
  }
  return blocks;
}

Usage ReadLoaded(LoadedTable& source) {
  constexpr std::int64_t kEightMebibytes = 8 << 20;
  EngineTable table = source.Open();
  const HeapWatch heap;
  ReadEveryCell(table, source.records());
  Usage usage = Finish(heap, table, "all cells read, filled at once", "table", 1);
  usage.bound = kEightMebibytes;
  return usage;
}

Usage ReadGrown(const BenchFolder& folder, std::int32_t records) {
  constexpr std::int64_t kBytesOfBlock = 20;
  const std::string file = folder.File("grown.orv");
  EngineTable table(file);
  table.Grow(records);
  table.Close();
  const std::int64_t blocks = CountBlocks(file);
  const HeapWatch heap;
  ReadEveryCell(table, records);
  Usage usage = Finish(heap, table, "all cells read, grown record by record", "block", blocks);
  usage.bound = kBytesOfBlock;
  return usage;
}

/// A view that shows every other record, so that no two are neighbours.
Usage BuildScatteredView(const BenchFolder& folder, std::int32_t records) {
  EngineTable table(folder.File("view.orv"));
  table.Create(1);
  table.AddRecords(records);
  for (std::int32_t record = 1; record <= records; record += 2) table.PutText(record, 1, "odd");
  const std::int32_t runs = (records + 1) / 2;
  table.Close();
  const HeapWatch heap;
  EngineMatrix view(table.path() + L"/f(1)=odd");
  if (view.Records() != runs) throw NotMeasured("the view shows other records than expected");
  if (view.ReadCell(runs, 1) != L"odd") throw NotMeasured("the view's last cell is another");
  return Finish(heap, view, "view of single records, built and read", "run", runs);
}

Usage ConvertToDictionary(EngineTable& table, std::int32_t values) {
  table.Close();
  const HeapWatch heap;
  table.Convert(1, kDictionaryStyle, 0);
  return Finish(heap, table, "conversion to a dictionary", "value", values);
}

Usage ReadDictionary(EngineTable& table, std::int32_t values) {
  table.Close();
  const HeapWatch heap;
  ReadEveryCell(table, values);
  return Finish(heap, table, "all cells read, one field a dictionary", "value", values);
}

Usage WriteDictionary(EngineTable& table, std::int32_t values) {
  table.Close();
  const HeapWatch heap;
  table.PutText(values, 1, CellText(1, 1));
  return Finish(heap, table, "one cell of that field written", "value", values);
}

Usage Sort(LoadedTable& source) {
  EngineTable table = source.Open();
  std::wstring path = table.path();
  std::int16_t field = kLetters;
  const HeapWatch heap;
  table.engine().SortData(path, field);
  table.CheckError("SortData");
  return Finish(heap, table, "sort by 8 letters", "key", source.records());
}

}  // namespace

std::vector<Case> AllCases(const BenchFolder& folder, std::int32_t records) {
  const auto loaded = std::make_shared<LoadedTable>(folder, records);
  const auto dictionary = std::make_shared<std::optional<EngineTable>>();
  return {[=] { return ReadLoaded(*loaded); },
          [=] { return Sort(*loaded); },
          [=, &folder] { return ReadGrown(folder, records); },
          [=, &folder] { return BuildScatteredView(folder, records); },
          [=] {
            *dictionary = loaded->Copy("dictionary.orv");
            return ConvertToDictionary(**dictionary, records);
          },
          [=] { return ReadDictionary(dictionary->value(), records); },
          [=] { return WriteDictionary(dictionary->value(), records); }};
}

}  // namespace orv::bench
