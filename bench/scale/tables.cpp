#include "scale/tables.h"

#include <algorithm>

namespace orv::bench {

TablePair::TablePair(const BenchFolder& folder, std::int32_t count)
    : records(count),
      loadedFile(folder.File("loaded-" + std::to_string(count) + ".orv")),
      grownFile(folder.File("grown-" + std::to_string(count) + ".orv")),
      loaded(loadedFile),
      grown(grownFile) {
  loaded.Load(count);
  grown.Grow(count);
  loaded.Close();
  folder.Renew(loadedFile);
  folder.Renew(grownFile);
}

SizedTables::SizedTables(const BenchFolder& folder, std::int32_t greatest) {
  constexpr std::int32_t kStep = 10;
  for (std::int32_t count = kLeast; count < greatest; count *= kStep) {
    pairs_.push_back(std::make_unique<TablePair>(folder, count));
  }
  pairs_.push_back(std::make_unique<TablePair>(folder, greatest));
}

}  // namespace orv::bench
