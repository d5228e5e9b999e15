// All workloads, over one set of stores.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "peers/lmdb_table.h"
#include "peers/runner.h"
#include "peers/shapelib_table.h"
#include "peers/sqlite_table.h"
#include "support/bench_folder.h"
#include "support/engine_table.h"
#include "support/floor_table.h"
#include "support/workload.h"

namespace orv::bench {

/// The stores of a run, each holding the same table. Made when a workload first asks, so that a run
/// of few workloads builds little; all files lie in the run's own folder. Each file is a copy of
/// the one that was filled, so that what is measured is a file as it arrives and not the state in
/// which its builder left the system's cache.
class Stores {
 public:
  Stores(const BenchFolder& folder, std::int32_t records, TimeKind timeKind)
      : folder_(folder),
        records_(records),
        dbaseRecords_(std::max(records / 5, 1)),
        timeKind_(timeKind) {}

  std::int32_t records() const { return records_; }
  std::int32_t dbaseRecords() const { return dbaseRecords_; }
  std::string File(const std::string& name) const { return folder_.File(name); }

  TimeKind timeKind() const { return timeKind_; }
  /// Makes a further copy of the engine's table and returns its file.
  std::string Copy(const std::string& name);

  EngineTable& engine();
  SqliteTable& sqliteDefault();
  SqliteTable& sqliteTuned();
  LmdbTable& lmdb();
  FloorTable& floor();
  /// A copy of the table with letters in fixed cells and cities and words in dictionaries.
  EngineTable& styled();
  ShapelibTable& shapelib();
  EngineTable& dbase();
  FloorDbase& floorDbase();

 private:
  SqliteTable& Sqlite(std::unique_ptr<SqliteTable>& slot, const char* file, SqliteTable::Mode mode);

  const BenchFolder& folder_;
  std::int32_t records_;
  std::int32_t dbaseRecords_;
  TimeKind timeKind_;
  std::unique_ptr<EngineTable> engine_;
  std::unique_ptr<SqliteTable> sqliteDefault_;
  std::unique_ptr<SqliteTable> sqliteTuned_;
  std::unique_ptr<LmdbTable> lmdb_;
  std::unique_ptr<FloorTable> floor_;
  std::unique_ptr<EngineTable> styled_;
  std::unique_ptr<ShapelibTable> shapelib_;
  std::unique_ptr<EngineTable> dbase_;
  std::unique_ptr<FloorDbase> floorDbase_;
};

/// A workload that is made when it is its turn.
struct Planned {
  std::string name;
  std::function<Workload(Stores&)> make;
};

/// Gives letters fixed cells and cities and words dictionaries.
void ConvertStyles(EngineTable& table);

void AddReadingWorkloads(std::vector<Planned>& plan);
void AddWritingWorkloads(std::vector<Planned>& plan);
void AddQueryWorkloads(std::vector<Planned>& plan);
void AddOpeningWorkloads(std::vector<Planned>& plan);
void AddDbaseWorkloads(std::vector<Planned>& plan);

}  // namespace orv::bench
