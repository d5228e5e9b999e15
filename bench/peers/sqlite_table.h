// The table in SQLite, with prepared statements.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include <sqlite3.h>

#include "support/table_data.h"

namespace orv::bench {

struct SqliteClose {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using SqliteStatement = std::unique_ptr<sqlite3_stmt, SqliteClose>;

class SqliteTable {
 public:
  /// As it comes, or tuned: no journal, no synchronizing, one process only, mapped into memory.
  enum class Mode { kDefault, kTuned };

  SqliteTable(std::string file, Mode mode) : file_(std::move(file)), mode_(mode) {}

  /// Deletes the file and makes an empty table.
  void Create();
  /// The same, filled in one transaction.
  void Load(std::int32_t records);
  void Open();
  /// Opens the database for reading one field's cells, and prepares nothing else.
  void OpenFor(std::int16_t field);
  void Close();

  void Begin() { Execute("BEGIN"); }
  void Commit() { Execute("COMMIT"); }

  /// Good until the next call.
  std::string_view ReadCell(std::int32_t record, std::int16_t field) {
    sqlite3_stmt* select = select_[static_cast<std::size_t>(field)].get();
    sqlite3_reset(select);
    sqlite3_bind_int(select, 1, record);
    if (sqlite3_step(select) != SQLITE_ROW) Fail();
    return Column(select, 0);
  }
  void WriteCell(std::int32_t record, std::int16_t field, const Text& text) {
    sqlite3_stmt* update = update_[static_cast<std::size_t>(field)].get();
    sqlite3_bind_text(update, 1, text.bytes.data(), static_cast<int>(text.bytes.size()),
                      SQLITE_STATIC);
    sqlite3_bind_int(update, 2, record);
    Finish(update);
  }
  void AppendRecord(const Text* cells) {
    for (int f = 0; f < kFields; ++f) {
      sqlite3_bind_text(insert_.get(), f + 1, cells[f].bytes.data(),
                        static_cast<int>(cells[f].bytes.size()), SQLITE_STATIC);
    }
    Finish(insert_.get());
  }

  SqliteStatement Prepare(const std::string& sql) const;
  static std::string_view Column(sqlite3_stmt* row, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
    return {text == nullptr ? "" : text,
            static_cast<std::size_t>(sqlite3_column_bytes(row, column))};
  }
  /// True for a further row, false at the end.
  bool Step(sqlite3_stmt* statement) const {
    const int state = sqlite3_step(statement);
    if (state != SQLITE_ROW && state != SQLITE_DONE) Fail();
    return state == SQLITE_ROW;
  }

 private:
  void Execute(const char* sql) const;
  void Finish(sqlite3_stmt* statement) const {
    if (sqlite3_step(statement) != SQLITE_DONE) Fail();
    sqlite3_reset(statement);
  }
  void OpenDatabase();
  void PrepareSelect(int field);
  void PrepareAll();
  [[noreturn]] void Fail() const;

  std::string file_;
  Mode mode_;
  std::unique_ptr<sqlite3, SqliteClose> database_;
  std::array<SqliteStatement, kFields + 1> select_;  ///< by field number
  std::array<SqliteStatement, kFields + 1> update_;
  SqliteStatement insert_;
};

}  // namespace orv::bench
