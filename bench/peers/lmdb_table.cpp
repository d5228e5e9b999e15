#include "peers/lmdb_table.h"

#include <filesystem>

#include "support/workload.h"

namespace orv::bench {

void LmdbTable::Fail(int state) { throw NotMeasured(std::string("LMDB: ") + mdb_strerror(state)); }

void LmdbTable::Create() {
  Close();
  std::filesystem::remove(file_);
  std::filesystem::remove(file_ + "-lock");
  Open(0);
}

void LmdbTable::Load(std::int32_t records) {
  Create();
  BeginWriting();
  for (std::int32_t record = 1; record <= records; ++record) {
    for (std::int16_t f = 1; f <= kFields; ++f) Put(record, f, CellText(record, f), MDB_APPEND);
  }
  Commit();
}

void LmdbTable::Open() { Open(MDB_RDONLY); }

void LmdbTable::Open(unsigned firstTransaction) {
  constexpr std::size_t kMapBytes = std::size_t{4} << 30;
  constexpr mdb_mode_t kFileMode = 0600;
  Require(mdb_env_create(&environment_));
  Require(mdb_env_set_mapsize(environment_, kMapBytes));
  Require(mdb_env_open(environment_, file_.c_str(), MDB_NOSUBDIR | MDB_NOSYNC | MDB_WRITEMAP,
                       kFileMode));
  Begin(firstTransaction);
  Require(mdb_dbi_open(transaction_, nullptr, MDB_INTEGERKEY, &database_));
  Commit();
}

void LmdbTable::Commit() {
  MDB_txn* const ending = transaction_;
  transaction_ = nullptr;
  Require(mdb_txn_commit(ending));
}

void LmdbTable::Close() {
  if (transaction_ != nullptr) mdb_txn_abort(transaction_);
  transaction_ = nullptr;
  if (environment_ != nullptr) mdb_env_close(environment_);
  environment_ = nullptr;
}

}  // namespace orv::bench
