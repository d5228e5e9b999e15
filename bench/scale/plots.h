// The plots. Each keeps what its points run on.
#pragma once

#include "scale/plot.h"
#include "scale/tables.h"

namespace orv::bench {

/// One cell at random, over the number of records.
Plot CellReads(const SizedTables& tables);
/// Opening a file, reading one cell and closing it, over the number of records.
Plot Openings(const SizedTables& tables);
/// One cell of a nested matrix, over the number of steps of its path.
Plot PathDepths(const BenchFolder& folder);
/// One cell of each of several paths in turn, over their number.
Plot PathsInTurn(const BenchFolder& folder);

}  // namespace orv::bench
