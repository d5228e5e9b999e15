// The calls that change files, each on a small file that has everything, and how a file may look
// when such a call was interrupted.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "durability/snapshot.h"
#include "support/driver.h"

namespace orv::test {

/// What the same call brings when it is made again after a failure.
enum class Again {
  kNothing,    ///< something else: it inserts once more
  kSameTexts,  ///< the same cells; types, dictionaries and cell codes bear traces of the failure
  kSame,       ///< the state of a call that succeeded at once
};

/// What an interrupted call leaves, beside the old state and the new one.
enum class Guarantee {
  kWhole,      ///< nothing else
  kTexts,      ///< all texts old or all new; types, dictionaries and cell codes each old or new
  kEachValue,  ///< each value old or new
};

/// Returns what is wrong with a state that is neither the old nor the new one, or nothing.
using StateCheck =
    std::function<std::string(const Snapshot& before, const Snapshot& after, const Snapshot& seen)>;

/// One call of a member.
struct MemberCase {
  std::string name;
  std::function<void(Driver&)> act;
  /// Changes the rich file beforehand, or makes another one the driver's file.
  std::function<void(Driver&)> prepare = {};
  Again again = Again::kSame;
  Guarantee guarantee = Guarantee::kWhole;
  /// A state that the guarantee does not cover and that is stated for this call.
  StateCheck window = {};
  /// What else holds in a state that the guarantee covers.
  StateCheck also = {};
  /// Problems that a walk over the structures may find after an interruption.
  std::vector<std::string> problems = {};
  /// Name of a second file that the call makes; the driver's file must stay as it was.
  std::wstring target = {};
  /// Whether the call stores nothing into any table.
  bool writesNothing = false;
};

/// Nested matrices, every style, properties, texts of several pieces, chains of several blocks:
/// five records, the last one empty.
void MakeRichFile(Driver& db);

const std::vector<MemberCase>& MemberCases();

}  // namespace orv::test
