#include "peers/workloads.h"
#include "support/cell_loops.h"

namespace orv::bench {
namespace {

constexpr int kOpenings = 500;

/// Opens, reads one cell of a spread of records and closes, over and over.
template <typename OpenReadClose>
std::function<Pass()> Openings(std::int32_t records, OpenReadClose openReadClose) {
  return [records, openReadClose] {
    Check check;
    for (int n = 0; n < kOpenings; ++n) {
      openReadClose(static_cast<std::int32_t>(std::int64_t{records} * n / kOpenings) + 1, check);
    }
    return Pass{kOpenings, check.sum()};
  };
}

Workload OpenReadClose(Stores& stores, std::string name) {
  stores.floor();
  stores.sqliteDefault();
  stores.lmdb();
  EngineTable& engine = stores.engine();
  const std::int32_t records = stores.records();
  const auto sqlite =
      std::make_shared<SqliteTable>(stores.File("default.sqlite"), SqliteTable::Mode::kDefault);
  LmdbTable& lmdb = stores.lmdb();
  const std::string floorFile = stores.File("floor.orv");
  return {std::move(name),
          "opening",
          {{"engine", Openings(records,
                               [&engine](std::int32_t record, Check& check) {
                                 check.Add(AsView(engine.ReadCell(record, kCity)));
                                 engine.Close();
                               })},
           {"SQLite",
            Openings(records,
                     [sqlite](std::int32_t record, Check& check) {
                       sqlite->OpenFor(kCity);
                       check.Add(sqlite->ReadCell(record, kCity));
                       sqlite->Close();
                     }),
            2},
           {"LMDB", Openings(records,
                             [&lmdb](std::int32_t record, Check& check) {
                               lmdb.Close();
                               lmdb.Open();
                               lmdb.BeginReading();
                               check.Add(lmdb.ReadCell(record, kCity));
                               lmdb.Commit();
                             })},
           {"floor", Openings(records, [floorFile](std::int32_t record, Check& check) {
              check.Add(AsView(FloorTable(floorFile).ReadCell(record, kCity)));
            })}}};
}

}  // namespace

void AddOpeningWorkloads(std::vector<Planned>& plan) {
  plan.push_back({"open, read one cell, close", [](Stores& stores) {
                    return OpenReadClose(stores, "open, read one cell, close");
                  }});
}

}  // namespace orv::bench
