#include "peers/sqlite_table.h"

#include <filesystem>

#include "support/workload.h"

namespace orv::bench {
namespace {

std::string FieldName(int field) { return "f" + std::to_string(field); }

}  // namespace

void SqliteTable::Fail() const {
  throw NotMeasured(std::string("SQLite: ") +
                    (database_ ? sqlite3_errmsg(database_.get()) : "out of memory"));
}

void SqliteTable::Execute(const char* sql) const {
  if (sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail();
}

SqliteStatement SqliteTable::Prepare(const std::string& sql) const {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
    Fail();
  }
  return SqliteStatement(statement);
}

void SqliteTable::OpenDatabase() {
  sqlite3* database = nullptr;
  const int state = sqlite3_open(file_.c_str(), &database);
  database_.reset(database);
  if (state != SQLITE_OK) Fail();
  if (mode_ == Mode::kDefault) return;
  Execute("PRAGMA journal_mode=OFF");
  Execute("PRAGMA synchronous=OFF");
  Execute("PRAGMA locking_mode=EXCLUSIVE");
  Execute("PRAGMA mmap_size=2147418112");
}

void SqliteTable::PrepareSelect(int field) {
  select_[static_cast<std::size_t>(field)] =
      Prepare("SELECT " + FieldName(field) + " FROM t WHERE rowid=?1");
}

void SqliteTable::PrepareAll() {
  std::string parameters;
  for (int f = 1; f <= kFields; ++f) {
    const auto slot = static_cast<std::size_t>(f);
    PrepareSelect(f);
    update_[slot] = Prepare("UPDATE t SET " + FieldName(f) + "=?1 WHERE rowid=?2");
    parameters += f == 1 ? "?" : ",?";
  }
  insert_ = Prepare("INSERT INTO t VALUES(" + parameters + ")");
}

void SqliteTable::Create() {
  Close();
  std::filesystem::remove(file_);
  OpenDatabase();
  std::string columns;
  for (int f = 1; f <= kFields; ++f) columns += (f == 1 ? "" : ",") + FieldName(f) + " TEXT";
  Execute(("CREATE TABLE t(" + columns + ")").c_str());
  PrepareAll();
}

void SqliteTable::Load(std::int32_t records) {
  Create();
  Begin();
  std::array<Text, kFields> cells;
  for (std::int32_t record = 1; record <= records; ++record) {
    for (std::int16_t f = 1; f <= kFields; ++f) {
      cells[static_cast<std::size_t>(f - 1)].bytes = CellText(record, f);
    }
    AppendRecord(cells.data());
  }
  Commit();
}

void SqliteTable::Open() {
  OpenDatabase();
  PrepareAll();
}

void SqliteTable::OpenFor(std::int16_t field) {
  OpenDatabase();
  PrepareSelect(field);
}

void SqliteTable::Close() {
  select_ = {};
  update_ = {};
  insert_.reset();
  database_.reset();
}

}  // namespace orv::bench
