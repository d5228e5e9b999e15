#include "peers/workloads.h"
#include "support/cell_loops.h"

namespace orv::bench {
namespace {

constexpr std::size_t kOverwrites = 200000;
constexpr std::int32_t kAppended = 100000;
constexpr std::int32_t kRows = 1000;  ///< different rows; the appended ones repeat them

using Texts = std::shared_ptr<std::vector<Text>>;

/// Overwriting by one store, with what it does around the pass.
template <typename Store>
Entrant Overwriter(std::string name, Store& store, CellList cells, Texts texts, double mustReach,
                   std::function<void()> before = {}, std::function<void()> after = {}) {
  return {std::move(name),
          [&store, cells, texts, before = std::move(before), after = std::move(after)] {
            if (before) before();
            const Pass pass = Overwrite(store, *cells, *texts);
            if (after) after();
            return pass;
          },
          mustReach};
}

Workload OverwriteRandom(Stores& stores, std::string name) {
  const auto cells =
      std::make_shared<std::vector<CellAt>>(RandomCells(kOverwrites, stores.records(), 2));
  const auto texts = std::make_shared<std::vector<Text>>(OtherLetters(kRows));
  SqliteTable& sqlite = stores.sqliteTuned();
  LmdbTable& lmdb = stores.lmdb();
  FloorTable& floor = stores.floor();
  return {std::move(name),
          "cell",
          {Overwriter("engine", stores.engine(), cells, texts, 0),
           Overwriter(
               "SQLite tuned, one transaction", sqlite, cells, texts, 2,
               [&sqlite] { sqlite.Begin(); }, [&sqlite] { sqlite.Commit(); }),
           Overwriter("SQLite tuned, each alone", sqlite, cells, texts, 0),
           Overwriter(
               "LMDB, one transaction", lmdb, cells, texts, 1.3, [&lmdb] { lmdb.BeginWriting(); },
               [&lmdb] { lmdb.Commit(); }),
           Overwriter("floor", floor, cells, texts, 0)}};
}

const Text* RowAt(const std::vector<Text>& rows, std::int32_t record) {
  return rows.data() + static_cast<std::size_t>((record - 1) % kRows * kFields);
}

Pass AppendToEngine(EngineTable& table, std::vector<Text>& rows) {
  for (std::int32_t record = 1; record <= kAppended; ++record) {
    table.AppendRecord(record);
    const auto first = static_cast<std::size_t>((record - 1) % kRows * kFields);
    for (std::int16_t field = 1; field <= kFields; ++field) {
      table.WriteCell(record, field, rows[first + static_cast<std::size_t>(field - 1)]);
    }
  }
  return {kAppended, 0};
}

template <typename Append>
Pass AppendRows(const std::vector<Text>& rows, Append append) {
  for (std::int32_t record = 1; record <= kAppended; ++record) append(record, RowAt(rows, record));
  return {kAppended, 0};
}

/// The stores that the appending passes make anew each time.
struct Fresh {
  explicit Fresh(const Stores& stores)
      : engine(stores.File("append.orv")),
        sqlite(stores.File("append.sqlite"), SqliteTable::Mode::kTuned),
        alone(stores.File("alone.sqlite"), SqliteTable::Mode::kTuned),
        lmdb(stores.File("append.lmdb")),
        floorFile(stores.File("append.floor")),
        rows(Rows(kRows)) {}

  EngineTable engine;
  SqliteTable sqlite;
  SqliteTable alone;
  LmdbTable lmdb;
  std::string floorFile;
  std::unique_ptr<FloorAppender> floor;
  std::vector<Text> rows;
};

Workload AppendRecords(Stores& stores, std::string name) {
  const auto fresh = std::make_shared<Fresh>(stores);
  Entrant engine{"engine", [fresh] {
                   const Pass pass = AppendToEngine(fresh->engine, fresh->rows);
                   fresh->engine.CheckError("SetCellValue");
                   return pass;
                 }};
  engine.prepare = [fresh] { fresh->engine.Create(); };

  Entrant sqlite{"SQLite tuned, one transaction",
                 [fresh] {
                   fresh->sqlite.Begin();
                   const Pass pass = AppendRows(fresh->rows, [&](std::int32_t, const Text* row) {
                     fresh->sqlite.AppendRecord(row);
                   });
                   fresh->sqlite.Commit();
                   return pass;
                 },
                 1};
  sqlite.prepare = [fresh] { fresh->sqlite.Create(); };

  Entrant alone{"SQLite tuned, each alone",
                [fresh] {
                  return AppendRows(fresh->rows, [&](std::int32_t, const Text* row) {
                    fresh->alone.AppendRecord(row);
                  });
                },
                2.5};
  alone.prepare = [fresh] { fresh->alone.Create(); };

  Entrant lmdb{"LMDB, one transaction", [fresh] {
                 fresh->lmdb.BeginWriting();
                 const Pass pass =
                     AppendRows(fresh->rows, [&](std::int32_t record, const Text* row) {
                       fresh->lmdb.AppendRecord(record, row);
                     });
                 fresh->lmdb.Commit();
                 return pass;
               }};
  lmdb.prepare = [fresh] { fresh->lmdb.Create(); };

  Entrant floor{"floor", [fresh] {
                  return AppendRows(fresh->rows, [&](std::int32_t, const Text* row) {
                    fresh->floor->AppendRecord(row);
                  });
                }};
  floor.prepare = [fresh] {
    fresh->floor.reset();
    fresh->floor = std::make_unique<FloorAppender>(fresh->floorFile, kAppended);
  };
  return {std::move(name), "record", {engine, sqlite, alone, lmdb, floor}};
}

}  // namespace

void AddWritingWorkloads(std::vector<Planned>& plan) {
  plan.push_back({"overwrite one cell at random", [](Stores& stores) {
                    return OverwriteRandom(stores, "overwrite one cell at random");
                  }});
  plan.push_back({"append records with 8 cells each", [](Stores& stores) {
                    return AppendRecords(stores, "append records with 8 cells each");
                  }});
}

}  // namespace orv::bench
