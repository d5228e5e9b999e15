// A host that works at full speed, and a plain model of what its table must then hold.
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "support/driver.h"

namespace orv::test {

/// One call of the host.
struct WorkloadCall {
  enum class Kind {
    kSet,      ///< SetCellValue of cell (r, f)
    kAppend,   ///< CmdAddRecord of one record behind the last
    kInsert,   ///< CmdAddRecord of one record at r
    kConvert,  ///< SetFldStyle of the last field, to the next style
  };
  Kind kind = Kind::kSet;
  int r = 0;
  int f = 0;
  std::string text;
};

/// The table's texts, record by record; a record has one text a field.
using WorkloadTable = std::vector<std::vector<std::string>>;

/// A sequence of calls that depends on the seed and on the table only, so that two processes come
/// to the same one.
class Workload {
 public:
  /// A free field, a fixed text, a packed number, an int, a dictionary field and one that is
  /// converted from style to style.
  static constexpr int kFields = 6;

  /// Makes the driver's file anew, without records.
  static void MakeFile(Driver& db);

  Workload(unsigned seed, WorkloadTable table, int style)
      : random_(seed), table_(std::move(table)), style_(style) {}

  WorkloadCall Next();
  /// Makes the call on the file.
  void Call(const WorkloadCall& call, Driver& db) const;
  /// Does to the model what the call does to the file.
  void Apply(const WorkloadCall& call);

  const WorkloadTable& table() const { return table_; }
  int style() const { return style_; }

 private:
  unsigned Below(unsigned end) { return static_cast<unsigned>(random_()) % end; }
  std::string TextFor(int f);

  std::mt19937 random_;
  WorkloadTable table_;
  int style_ = 0;
};

}  // namespace orv::test
