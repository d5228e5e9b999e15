// The tables of the curves over size.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "support/bench_folder.h"
#include "support/engine_table.h"

namespace orv::bench {

/// The same table twice.
struct TablePair {
  std::int32_t records;
  std::string loadedFile;
  std::string grownFile;
  EngineTable loaded;  ///< all records inserted at once
  EngineTable grown;   ///< one insertion a record

  TablePair(const BenchFolder& folder, std::int32_t count);
};

/// Tables of 1,000 records, ten times as many and so on, up to `greatest`. All eight fields; a file
/// ends at 2 GiB, and a grown table takes some 240 bytes a record.
class SizedTables {
 public:
  static constexpr std::int32_t kLeast = 1000;
  static constexpr std::int32_t kGreatest = 8000000;

  SizedTables(const BenchFolder& folder, std::int32_t greatest);

  const std::vector<std::unique_ptr<TablePair>>& pairs() const { return pairs_; }

 private:
  std::vector<std::unique_ptr<TablePair>> pairs_;
};

}  // namespace orv::bench
