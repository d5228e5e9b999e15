// The table in LMDB: one entry a cell, keyed by an integer of record and field.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <lmdb.h>

#include "support/table_data.h"

namespace orv::bench {

/// Without synchronizing, as the engine's files are: what is written survives the process, not the
/// machine.
class LmdbTable {
 public:
  explicit LmdbTable(std::string file) : file_(std::move(file)) {}
  ~LmdbTable() { Close(); }
  LmdbTable(const LmdbTable&) = delete;
  LmdbTable& operator=(const LmdbTable&) = delete;

  /// Deletes the file and makes an empty table.
  void Create();
  /// The same, filled in one transaction.
  void Load(std::int32_t records);
  void Open();
  void Close();

  void BeginReading() { Begin(MDB_RDONLY); }
  void BeginWriting() { Begin(0); }
  void Commit();

  /// Good until the transaction's next change or end.
  std::string_view ReadCell(std::int32_t record, std::int16_t field) {
    std::uint32_t number = KeyOf(record, field);
    MDB_val key{sizeof number, &number};
    MDB_val value{};
    Require(mdb_get(transaction_, database_, &key, &value));
    return {static_cast<const char*>(value.mv_data), value.mv_size};
  }
  void WriteCell(std::int32_t record, std::int16_t field, const Text& text) {
    Put(record, field, text.bytes, 0);
  }
  void AppendRecord(std::int32_t record, const Text* cells) {
    for (std::int16_t f = 1; f <= kFields; ++f) Put(record, f, cells[f - 1].bytes, MDB_APPEND);
  }

 private:
  static std::uint32_t KeyOf(std::int32_t record, std::int16_t field) {
    return static_cast<std::uint32_t>(record) * kFields + static_cast<std::uint32_t>(field - 1);
  }
  void Open(unsigned firstTransaction);
  void Put(std::int32_t record, std::int16_t field, const std::string& text, unsigned flags) {
    std::uint32_t number = KeyOf(record, field);
    MDB_val key{sizeof number, &number};
    MDB_val value{text.size(), const_cast<char*>(text.data())};
    Require(mdb_put(transaction_, database_, &key, &value, flags));
  }
  void Begin(unsigned flags) {
    Require(mdb_txn_begin(environment_, nullptr, flags, &transaction_));
  }
  static void Require(int state) {
    if (state != MDB_SUCCESS) Fail(state);
  }
  [[noreturn]] static void Fail(int state);

  std::string file_;
  MDB_env* environment_ = nullptr;
  MDB_txn* transaction_ = nullptr;
  MDB_dbi database_ = 0;
};

}  // namespace orv::bench
