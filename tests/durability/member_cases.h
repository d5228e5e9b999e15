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

/// One call of a member.
struct MemberCase {
  std::string name;
  std::function<void(Driver&)> act;
  /// Changes the rich file beforehand, or makes another one the driver's file.
  std::function<void(Driver&)> prepare = {};
  Again again = Again::kSame;
  /// The states between the old and the new one that are stated for this call, beyond those where
  /// each value is the old or the new one: returns what is wrong with such a state, or nothing.
  std::function<std::string(const Snapshot& before, const Snapshot& after, const Snapshot& seen)>
      window = {};
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
