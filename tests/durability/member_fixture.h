// A member's call on a file that can be put back as often as needed, and what must hold after it
// was interrupted.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "durability/fault_plan.h"
#include "durability/member_cases.h"
#include "durability/snapshot.h"
#include "support/driver.h"

namespace orv::test {

/// How many interrupted calls left which state behind.
struct Outcomes {
  std::size_t old = 0;      ///< the state before the call
  std::size_t whole = 0;    ///< the state after it
  std::size_t between = 0;  ///< a state that the call's guarantee covers
  std::size_t window = 0;   ///< another one that is stated for the call
  std::size_t Sum() const { return old + whole + between + window; }
};

/// The parameter is the number of the case.
class MemberTest : public testing::TestWithParam<std::size_t> {
 protected:
  void SetUp() override;

  const MemberCase& Case() const { return MemberCases()[GetParam()]; }

  /// How long the driver's file is before the call.
  std::size_t LengthBefore() const { return bytes_.size(); }
  /// Lengthens the file before the call with bytes that belong to nothing, up to a multiple of
  /// `unit`.
  void PadTo(std::size_t unit) { bytes_.resize((bytes_.size() + unit - 1) / unit * unit); }
  /// The files as before the call, nothing open; with `warm` everything has been read already.
  void Restore(bool warm);
  /// Calls the member; returns the error code.
  int Act();
  /// Expects of the files, which are closed first, what must hold after an interruption: they open,
  /// their structures are sound, each value is the old or the new one, or the state is one that is
  /// stated for the case. Returns what the members told.
  Snapshot ExpectRecoverable(Outcomes& outcomes);
  /// Expects that the host can go on: that the call, where it can be made again, now succeeds, and
  /// that the file takes new fields, records and values without changing anything else.
  void ExpectContinuation(const Snapshot& seen);
  /// The same as `seen` with everything open as it is.
  Snapshot Look();

  Driver db_;
  Snapshot before_;
  Snapshot after_;

 private:
  /// Whether the case's guarantee covers the state.
  bool IsGuaranteed(const Comparison& comparison, const Snapshot& seen) const;
  void ExpectUsable(const Snapshot& seen);
  void ExpectSound();
  void ExpectTargetReadable();

  std::string bytes_;
};

/// The case's name as a test name.
std::string CaseName(const testing::TestParamInfo<std::size_t>& info);

}  // namespace orv::test
