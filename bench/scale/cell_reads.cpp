#include "scale/plots.h"
#include "support/cell_loops.h"
#include "support/floor_table.h"

namespace orv::bench {
namespace {

constexpr std::size_t kReads = 300000;

/// What the list's texts come to by the rule of the table.
std::uint64_t ExpectedCheck(const std::vector<CellAt>& cells) {
  Check check;
  for (const CellAt& cell : cells) {
    check.Add(std::string_view(CellText(cell.record, cell.field)));
  }
  return check.sum();
}

}  // namespace

Plot CellReads(const SizedTables& tables) {
  Plot plot{"cell-reads", "Reading one cell at random", {"records", true}, {"ns a cell"}, 1, {}};
  std::vector<Point> loaded;
  std::vector<Point> grown;
  std::vector<Point> bare;
  for (const auto& pair : tables.pairs()) {
    const auto cells = std::make_shared<std::vector<CellAt>>(
        RandomCells(kReads, pair->records, static_cast<std::uint64_t>(pair->records)));
    const std::uint64_t expected = ExpectedCheck(*cells);
    const double x = pair->records;
    TablePair& both = *pair;
    const auto floor = std::make_shared<FloorTable>(both.loadedFile);
    loaded.push_back(
        {"filled at once", x, [&both, cells] { return ReadList(both.loaded, *cells); }, expected});
    grown.push_back({"grown record by record", x,
                     [&both, cells] { return ReadList(both.grown, *cells); }, expected});
    bare.push_back({"bare loop over the same bytes", x,
                    [floor, cells] { return ReadList(*floor, *cells); }, expected});
  }
  for (auto* curve : {&loaded, &grown, &bare}) {
    plot.points.insert(plot.points.end(), curve->begin(), curve->end());
  }
  return plot;
}

}  // namespace orv::bench
