// The calls that change files, each on a small file that has everything, and how a file may look
// when such a call was interrupted.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "durability/snapshot.h"
#include "support/driver.h"

namespace orv::test {

/// One call of a member.
struct MemberCase {
  std::string name;
  std::function<void(Driver&)> act;
  /// Changes the rich file beforehand, or makes another one the driver's file.
  std::function<void(Driver&)> prepare = {};
  /// Whether the same call made again after a failure brings the same state as one that succeeded.
  bool repeats = true;
  /// The states between the old and the new one that are stated for this call, beyond those where
  /// each value is the old or the new one: returns what is wrong with such a state, or nothing.
  std::function<std::string(const Snapshot& before, const Snapshot& after, const Snapshot& seen)>
      window = {};
  /// Problems that a walk over the structures may find in such a state.
  std::vector<std::string> windowProblems = {};
  /// Name of a second file that the call makes; the driver's file must stay as it was.
  std::wstring target = {};
};

/// Nested matrices, every style, properties, texts of several pieces, chains of several blocks:
/// five records, the last one empty.
void MakeRichFile(Driver& db);

const std::vector<MemberCase>& MemberCases();

}  // namespace orv::test
