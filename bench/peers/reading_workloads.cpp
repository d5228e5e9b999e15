#include <algorithm>

#include "peers/workloads.h"
#include "support/cell_loops.h"

namespace orv::bench {
namespace {

constexpr std::size_t kRandomReads = 500000;
constexpr std::int32_t kHotRecords = 1000;
constexpr std::int32_t kBlockRecords = 1000;

template <typename Store>
Entrant Reader(std::string name, Store& store, CellList cells, double mustReach = 0) {
  return {std::move(name), [&store, cells] { return ReadList(store, *cells); }, mustReach};
}

Entrant LmdbReader(LmdbTable& lmdb, std::function<Pass()> read, double mustReach) {
  return {"LMDB",
          [&lmdb, read = std::move(read)] {
            lmdb.BeginReading();
            const Pass pass = read();
            lmdb.Commit();
            return pass;
          },
          mustReach};
}

Workload ReadRandom(Stores& stores, std::string name, std::int32_t records, double sqlite,
                    double lmdb) {
  const auto cells = std::make_shared<std::vector<CellAt>>(RandomCells(kRandomReads, records, 1));
  LmdbTable& lmdbTable = stores.lmdb();
  return {
      std::move(name),
      "cell",
      {Reader("engine", stores.engine(), cells), Reader("SQLite", stores.sqliteDefault(), cells),
       Reader("SQLite tuned", stores.sqliteTuned(), cells, sqlite),
       LmdbReader(
           lmdbTable, [&lmdbTable, cells] { return ReadList(lmdbTable, *cells); }, lmdb),
       Reader("floor", stores.floor(), cells)}};
}

Workload ReadEveryCell(Stores& stores, std::string name) {
  const std::int32_t records = stores.records();
  const auto reader = [records](auto& store) {
    return [&store, records] { return ReadAll(store, records); };
  };
  return {std::move(name),
          "cell",
          {{"engine", reader(stores.engine())},
           {"SQLite tuned", reader(stores.sqliteTuned()), 6},
           LmdbReader(stores.lmdb(), reader(stores.lmdb()), 1.3),
           {"floor", reader(stores.floor())}}};
}

Pass ReadBlocks(EngineTable& table, std::int32_t records) {
  Check check;
  TextMatrix block({1, kFields}, {1, kBlockRecords});
  for (std::int32_t first = 1; first <= records; first += kBlockRecords) {
    const std::int32_t last = std::min(first + kBlockRecords - 1, records);
    block.StartRecordsAt(first);
    table.ReadBlock(block, last);
    for (std::int32_t record = first; record <= last; ++record) {
      for (std::int32_t field = 1; field <= kFields; ++field) {
        check.Add(std::wstring_view(block.At(field, record)));
      }
    }
  }
  return {std::int64_t{records} * kFields, check.sum()};
}

Pass StepThrough(SqliteTable& table) {
  Check check;
  std::int64_t rows = 0;
  const SqliteStatement all = table.Prepare("SELECT * FROM t");
  while (table.Step(all.get())) {
    for (int column = 0; column < kFields; ++column) {
      check.Add(SqliteTable::Column(all.get(), column));
    }
    ++rows;
  }
  return {rows * kFields, check.sum()};
}

Workload ReadInBlocks(Stores& stores, std::string name) {
  EngineTable& engine = stores.engine();
  SqliteTable& sqlite = stores.sqliteTuned();
  FloorTable& floor = stores.floor();
  const std::int32_t records = stores.records();
  return {std::move(name),
          "cell",
          {{"engine", [&engine, records] { return ReadBlocks(engine, records); }},
           {"SQLite tuned, stepping", [&sqlite] { return StepThrough(sqlite); }, 1},
           {"floor", [&floor, records] { return ReadAll(floor, records); }}}};
}

}  // namespace

void AddReadingWorkloads(std::vector<Planned>& plan) {
  plan.push_back({"read one cell at random", [](Stores& stores) {
                    return ReadRandom(stores, "read one cell at random", stores.records(), 3.5,
                                      2.5);
                  }});
  plan.push_back({"read one cell of 1,000 hot records", [](Stores& stores) {
                    return ReadRandom(stores, "read one cell of 1,000 hot records",
                                      std::min(kHotRecords, stores.records()), 7, 1.8);
                  }});
  plan.push_back({"read all cells, one call each", [](Stores& stores) {
                    return ReadEveryCell(stores, "read all cells, one call each");
                  }});
  plan.push_back({"read all cells in blocks",
                  [](Stores& stores) { return ReadInBlocks(stores, "read all cells in blocks"); }});
}

}  // namespace orv::bench
