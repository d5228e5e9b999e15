#include "peers/workloads.h"
#include "support/cell_loops.h"

namespace orv::bench {
namespace {

constexpr std::size_t kRandomCells = 200000;

/// The three stores in the order of the table, each doing `work`.
template <typename Work>
Workload OnDbase(Stores& stores, std::string name, double mustReach, Work work) {
  const auto entrant = [work](std::string who, auto& store, double ratio) {
    return Entrant{std::move(who), [&store, work] { return work(store); }, ratio};
  };
  return {std::move(name),
          "cell",
          {entrant("engine", stores.dbase(), 0), entrant("shapelib", stores.shapelib(), mustReach),
           entrant("floor", stores.floorDbase(), 0)}};
}

}  // namespace

void AddDbaseWorkloads(std::vector<Planned>& plan) {
  plan.push_back({"dBASE: read one cell at random", [](Stores& stores) {
                    const auto cells = std::make_shared<std::vector<CellAt>>(
                        RandomCells(kRandomCells, stores.dbaseRecords(), 3));
                    return OnDbase(stores, "dBASE: read one cell at random", 5,
                                   [cells](auto& store) { return ReadList(store, *cells); });
                  }});
  plan.push_back({"dBASE: read record by record", [](Stores& stores) {
                    return OnDbase(stores, "dBASE: read record by record", 1,
                                   [records = stores.dbaseRecords()](auto& store) {
                                     return ReadAll(store, records);
                                   });
                  }});
  plan.push_back({"dBASE: read one column", [](Stores& stores) {
                    return OnDbase(stores, "dBASE: read one column", 5,
                                   [records = stores.dbaseRecords()](auto& store) {
                                     return ReadColumn(store, records, kCity);
                                   });
                  }});
  plan.push_back({"dBASE: overwrite one cell at random", [](Stores& stores) {
                    const auto cells = std::make_shared<std::vector<CellAt>>(
                        RandomCells(kRandomCells, stores.dbaseRecords(), 4));
                    const auto texts = std::make_shared<std::vector<Text>>(OtherLetters(1000));
                    return OnDbase(
                        stores, "dBASE: overwrite one cell at random", 6,
                        [cells, texts](auto& store) { return Overwrite(store, *cells, *texts); });
                  }});
}

}  // namespace orv::bench
