#include <filesystem>

#include "peers/workloads.h"

namespace orv::bench {

EngineTable& Stores::engine() {
  if (engine_) return *engine_;
  engine_ = std::make_unique<EngineTable>(File("table.orv"));
  engine_->Load(records_);
  engine_->Close();
  folder_.Renew("table.orv");
  return *engine_;
}

std::string Stores::Copy(const std::string& name) {
  engine().Close();
  std::filesystem::copy_file(File("table.orv"), File(name),
                             std::filesystem::copy_options::overwrite_existing);
  return File(name);
}

SqliteTable& Stores::Sqlite(std::unique_ptr<SqliteTable>& slot, const char* file,
                            SqliteTable::Mode mode) {
  if (slot) return *slot;
  slot = std::make_unique<SqliteTable>(File(file), mode);
  slot->Load(records_);
  slot->Close();
  folder_.Renew(file);
  slot->Open();
  return *slot;
}

SqliteTable& Stores::sqliteDefault() {
  return Sqlite(sqliteDefault_, "default.sqlite", SqliteTable::Mode::kDefault);
}

SqliteTable& Stores::sqliteTuned() {
  return Sqlite(sqliteTuned_, "tuned.sqlite", SqliteTable::Mode::kTuned);
}

LmdbTable& Stores::lmdb() {
  if (lmdb_) return *lmdb_;
  lmdb_ = std::make_unique<LmdbTable>(File("table.lmdb"));
  lmdb_->Load(records_);
  lmdb_->Close();
  folder_.Renew("table.lmdb");
  lmdb_->Open();
  return *lmdb_;
}

FloorTable& Stores::floor() {
  if (floor_) return *floor_;
  floor_ = std::make_unique<FloorTable>(Copy("floor.orv"));
  return *floor_;
}

EngineTable& Stores::styled() {
  if (styled_) return *styled_;
  auto styled = std::make_unique<EngineTable>(Copy("styled.orv"));
  ConvertStyles(*styled);
  for (const CellAt& cell : RandomCells(1000, records_, 5)) {
    if (styled->ReadCell(cell.record, cell.field) != engine().ReadCell(cell.record, cell.field)) {
      throw NotMeasured("the converted table reads differently");
    }
  }
  styled->Close();
  folder_.Renew("styled.orv");
  styled_ = std::move(styled);
  return *styled_;
}

ShapelibTable& Stores::shapelib() {
  if (shapelib_) return *shapelib_;
  shapelib_ = std::make_unique<ShapelibTable>(File("shapelib.dbf"));
  shapelib_->Load(dbaseRecords_);
  shapelib_->Close();
  folder_.Renew("shapelib.dbf");
  shapelib_->Open();
  return *shapelib_;
}

EngineTable& Stores::dbase() {
  if (dbase_) return *dbase_;
  shapelib();
  std::filesystem::copy_file(File("shapelib.dbf"), File("table.dbf"));
  dbase_ = std::make_unique<EngineTable>(File("table.dbf"));
  return *dbase_;
}

FloorDbase& Stores::floorDbase() {
  if (floorDbase_) return *floorDbase_;
  shapelib();
  std::filesystem::copy_file(File("shapelib.dbf"), File("floor.dbf"));
  floorDbase_ = std::make_unique<FloorDbase>(File("floor.dbf"));
  return *floorDbase_;
}

}  // namespace orv::bench
