// What the members cost on container files and dBASE III tables.
//
// Tables have eight fields of short texts. The cost of a cell read must not depend on how the table
// was filled (ThroughSingleEntryChain beside ThroughOneBlock: within 2 times) nor on the number of
// records
// (.../1000000 beside .../10000: within 2 times, cache effects aside).
//
// Reading a cell and overwriting it with a text of the same length make no system call: the
// engine's test SystemCallTest proves it by forbidding them. To count them in a run of one's own:
//
//   strace -f -c build/release/bin/orv_bench --benchmark_filter='^ReadCellAtRandom/10000$'
//
// and again with --benchmark_min_time=5: the counts of the two runs agree, whatever the number of
// reads.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>

#include "orv/engine.h"

namespace orv {
namespace {

constexpr std::int16_t kFields = 8;
constexpr std::int32_t kSmall = 10000;
constexpr std::int32_t kGreat = 1000000;
constexpr std::int32_t kChained = 100000;
constexpr std::int32_t kDbaseRecords = 100000;
constexpr int kDbaseWidth = 12;

/// The folder of all tables of the run.
class BenchFolder {
 public:
  BenchFolder()
      : path_(std::filesystem::temp_directory_path() /
              ("orv-bench-" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directory(path_);
  }
  ~BenchFolder() {
    std::error_code ignored;
    engine_.CloseAll();
    std::filesystem::remove_all(path_, ignored);
  }
  BenchFolder(const BenchFolder&) = delete;
  BenchFolder& operator=(const BenchFolder&) = delete;

  std::filesystem::path Name(const std::string& file) const { return path_ / file; }

 private:
  Engine engine_;  ///< made before the folder, so that it outlives it
  std::filesystem::path path_;
};

/// One table and the members on it.
class Table {
 public:
  explicit Table(const std::filesystem::path& file) : path_(L'"' + file.wstring() + L'"') {}

  std::int32_t records() {
    const std::int32_t count = engine_.Records(path_);
    Check();
    return count;
  }
  void Create() {
    std::wstring title = L"bench";
    std::int16_t count = kFields;
    std::int16_t first = 1;
    engine_.CmdNewOrvDB(path_, title);
    engine_.CmdAddFld(path_, count, first);
    Check();
  }
  void AddRecords(std::int32_t count, std::int32_t row) { engine_.CmdAddRecord(path_, count, row); }
  std::wstring Read(std::int32_t r, std::int16_t f) {
    Boolean isMtx = Boolean::kFalse;
    Boolean frml = Boolean::kFalse;
    return engine_.GetCellValue(path_, r, f, isMtx, frml);
  }
  void Write(std::int32_t r, std::int16_t f, std::wstring& text) {
    engine_.SetCellValue(text, path_, r, f);
  }
  void FillRecord(std::int32_t r) {
    for (std::int16_t f = 1; f <= kFields; ++f) {
      std::wstring text = L"cell " + std::to_wstring(r) + L"," + std::to_wstring(f);
      Write(r, f, text);
    }
  }
  void CloseAll() { engine_.CloseAll(); }
  /// A figure for a member that failed would be worth nothing.
  void Check() {
    const std::int16_t code = *engine_.ErrorCode().Int16();
    if (code != 0) throw std::runtime_error("error code " + std::to_string(code));
  }

 private:
  Engine engine_;
  std::wstring path_;
};

const BenchFolder& Folder() {
  static const BenchFolder folder;
  return folder;
}

/// All records inserted at once.
void FillInOneBlock(Table& table, std::int32_t records) {
  table.Create();
  table.AddRecords(records, 1);
  for (std::int32_t r = 1; r <= records; ++r) table.FillRecord(r);
  table.Check();
}

/// One insertion a record: every field's data is a chain of blocks of one entry each.
void FillOneByOne(Table& table, std::int32_t records) {
  table.Create();
  for (std::int32_t r = 1; r <= records; ++r) {
    table.AddRecords(1, r);
    table.FillRecord(r);
  }
  table.Check();
}

void WriteDbaseTable(const std::filesystem::path& file) {
  const auto word = [](int value) {
    return std::string{static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
  };
  constexpr int kHeader = 32 + 32 * kFields + 1;
  std::string bytes("\x03\x7C\x01\x01", 4);
  bytes += word(kDbaseRecords & 0xFFFF) + word(kDbaseRecords >> 16) + word(kHeader) +
           word(1 + kFields * kDbaseWidth) + std::string(20, '\0');
  for (int f = 1; f <= kFields; ++f) {
    std::string name = "FIELD" + std::to_string(f);
    name.resize(11, '\0');
    bytes +=
        name + "C" + std::string(4, '\0') + static_cast<char>(kDbaseWidth) + std::string(15, '\0');
  }
  bytes += '\x0D';
  for (int r = 1; r <= kDbaseRecords; ++r) {
    bytes += ' ';
    for (int f = 1; f <= kFields; ++f) {
      std::string text = std::to_string(r) + "," + std::to_string(f);
      text.resize(kDbaseWidth, ' ');
      bytes += text;
    }
  }
  std::ofstream(file, std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// The tables of the run, each made when it is first asked for.
Table& NamedTable(const std::string& name, const std::function<void(Table&)>& fill) {
  static std::map<std::string, std::unique_ptr<Table>> tables;
  auto& table = tables[name];
  if (!table) {
    table = std::make_unique<Table>(Folder().Name(name));
    fill(*table);
  }
  table->records();  // the table of the benchmark before may be the one resolved last
  return *table;
}

Table& BlockTable(std::int64_t records) {
  const auto count = static_cast<std::int32_t>(records);
  return NamedTable("block" + std::to_string(count),
                    [count](Table& t) { FillInOneBlock(t, count); });
}

Table& ChainTable() {
  return NamedTable("chain", [](Table& table) { FillOneByOne(table, kChained); });
}

Table& DbaseTable() {
  return NamedTable("table.dbf", [](Table&) { WriteDbaseTable(Folder().Name("table.dbf")); });
}

/// Cells at random, the same for every table of one size.
class RandomCells {
 public:
  explicit RandomCells(std::int32_t records) : records_(static_cast<std::uint32_t>(records)) {}
  void Next() {
    const auto drawn = static_cast<std::uint32_t>(random_());
    record_ = static_cast<std::int32_t>(1 + drawn % records_);
    field_ = static_cast<std::int16_t>(1 + (drawn >> 24) % kFields);
  }
  std::int32_t record() const { return record_; }
  std::int16_t field() const { return field_; }

 private:
  std::minstd_rand random_{1};
  std::uint32_t records_;
  std::int32_t record_ = 1;
  std::int16_t field_ = 1;
};

void ReadAtRandom(benchmark::State& state, Table& table) {
  RandomCells cells(table.records());
  for (auto _ : state) {
    cells.Next();
    benchmark::DoNotOptimize(table.Read(cells.record(), cells.field()));
  }
  table.Check();
  state.SetItemsProcessed(state.iterations());
}

void ReadInSequence(benchmark::State& state, Table& table) {
  const std::int32_t records = table.records();
  std::int32_t r = 1;
  std::int16_t f = 0;
  for (auto _ : state) {
    if (++f > kFields) {
      f = 1;
      r = r == records ? 1 : r + 1;
    }
    benchmark::DoNotOptimize(table.Read(r, f));
  }
  table.Check();
  state.SetItemsProcessed(state.iterations());
}

void Overwrite(benchmark::State& state, Table& table, std::wstring text) {
  RandomCells cells(table.records());
  for (auto _ : state) {
    cells.Next();
    table.Write(cells.record(), cells.field(), text);
  }
  table.Check();
  state.SetItemsProcessed(state.iterations());
}

// One cell through GetCellValue, at random.
void ReadCellAtRandom(benchmark::State& state) { ReadAtRandom(state, BlockTable(state.range(0))); }
BENCHMARK(ReadCellAtRandom)->Arg(kSmall)->Arg(kGreat);

// Record by record, field by field.
void ReadCellInSequence(benchmark::State& state) {
  ReadInSequence(state, BlockTable(state.range(0)));
}
BENCHMARK(ReadCellInSequence)->Arg(kSmall)->Arg(kGreat);

// A table of 100,000 records that were inserted at once.
void ReadThroughOneBlock(benchmark::State& state) { ReadAtRandom(state, BlockTable(kChained)); }
BENCHMARK(ReadThroughOneBlock);

// The same table filled by 100,000 insertions of one record.
void ReadThroughSingleEntryChain(benchmark::State& state) { ReadAtRandom(state, ChainTable()); }
BENCHMARK(ReadThroughSingleEntryChain);

void ReadInSequenceThroughOneBlock(benchmark::State& state) {
  ReadInSequence(state, BlockTable(kChained));
}
BENCHMARK(ReadInSequenceThroughOneBlock);

void ReadInSequenceThroughSingleEntryChain(benchmark::State& state) {
  ReadInSequence(state, ChainTable());
}
BENCHMARK(ReadInSequenceThroughSingleEntryChain);

// A text of the length of the shortest cell: every write stays in place.
void OverwriteSameLength(benchmark::State& state) {
  Overwrite(state, BlockTable(state.range(0)), L"over 1,1");
}
BENCHMARK(OverwriteSameLength)->Arg(kSmall)->Arg(kGreat);

// One record with its eight cells at the end of a growing table.
void AppendRecordWithCells(benchmark::State& state) {
  Table& table = NamedTable("append", [](Table& fresh) { fresh.Create(); });
  std::int32_t records = table.records();
  for (auto _ : state) {
    table.AddRecords(1, ++records);
    table.FillRecord(records);
  }
  table.Check();
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(AppendRecordWithCells);

void DbaseReadCell(benchmark::State& state) { ReadAtRandom(state, DbaseTable()); }
BENCHMARK(DbaseReadCell);

void DbaseWriteCell(benchmark::State& state) { Overwrite(state, DbaseTable(), L"overwritten"); }
BENCHMARK(DbaseWriteCell);

// Everything closed, then one cell: the file is opened, mapped and its path walked.
void OpenAndFirstRead(benchmark::State& state) {
  Table& table = BlockTable(state.range(0));
  for (auto _ : state) {
    table.CloseAll();
    benchmark::DoNotOptimize(table.Read(1, 1));
  }
  table.Check();
}
BENCHMARK(OpenAndFirstRead)->Arg(kSmall)->Arg(kGreat);

}  // namespace
}  // namespace orv
