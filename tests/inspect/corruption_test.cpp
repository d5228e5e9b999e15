// Thousands of damaged files: the inspection ends, and damage to the structure that changes what
// readers get is seen but for a measured rest.
#include <chrono>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "all_cells.h"
#include "inspecting.h"
#include "support/container_bytes.h"
#include "support/damage.h"
#include "support/peak_memory.h"
#include "support/structure_walk.h"
#include "support/tier.h"

namespace orv {
namespace {

using test::ByteUse;
using test::CellReading;
using test::ContainerBytes;
using test::Driver;

constexpr unsigned kShards = 16;

unsigned CorruptionsPerShard() { return test::LongTier() ? 625 : 25; }

/// What became of the damaged files.
struct Tally {
  int harmful =
      0;           ///< files in which damage to the structure changed a text or made it unreachable
  int unseen = 0;  ///< those of them that the inspection calls clean
  int harmless = 0;  ///< files whose damage to the structure changed no text
  int noticed = 0;   ///< those of them in which something was found all the same
  std::map<std::string, int> harmfulUses;  ///< what the harmful damage was done to
  std::map<std::string, int> unseenUses;   ///< likewise, of what nobody saw

  double UnseenShare() const { return harmful == 0 ? 0 : double(unseen) / harmful; }

  void Print() const {
    std::cout << "harmful " << harmful << ", unseen " << unseen << "; harmless " << harmless
              << ", noticed " << noticed << "\n";
    for (const auto& [uses, count] : unseenUses) {
      std::cout << "  unseen, " << uses << ": " << count << " of " << harmfulUses.at(uses) << "\n";
    }
  }
};

class CorruptedFileTest : public testing::Test {
 protected:
  CorruptedFileTest() : whole_(test::RichFile()), walk_(test::WalkStructures(whole_.bytes())) {
    test::WriteBytes(db_.file(), whole_.bytes());
    places_ = test::AllPlaces(db_);
  }

  /// The sound file with what was done to contents and not what was done to the structure.
  std::string WithChangedContents(const std::string& damaged) const {
    std::string bytes = whole_.bytes();
    for (std::size_t i = 0; i < damaged.size(); ++i) {
      if (test::IsContent(walk_.uses[i])) bytes[i] = damaged[i];
    }
    return bytes;
  }

  /// What the damage to the structure was done to: "pointer", "count code", "cut".
  std::string DamagedUses(const std::string& damaged) const {
    std::map<std::string, int> uses;
    if (damaged.size() < walk_.uses.size()) ++uses["cut"];
    for (std::size_t i = 0; i < damaged.size(); ++i) {
      if (damaged[i] == whole_.bytes()[i] || test::IsContent(walk_.uses[i])) continue;
      ++uses[std::string(test::UseName(walk_.uses[i]))];
    }
    std::string text;
    for (const auto& [use, count] : uses) text += (text.empty() ? "" : " ") + use;
    return text;
  }

  /// Inspects a damaged file and tallies what came of it.
  void Judge(const std::string& damaged, Tally& tally) {
    constexpr auto kTime = std::chrono::seconds(20);
    const auto begin = std::chrono::steady_clock::now();
    const inspect::Inspection inspection = test::InspectBytes(damaged);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, kTime);
    const bool seen = !inspection.IsClean() || inspection.kind != inspect::FileKind::kContainer;
    const test::StructureWalk judge = test::WalkStructures(damaged);
    EXPECT_TRUE(seen || judge.problems.empty()) << judge.Text();

    const std::string uses = DamagedUses(damaged);
    if (uses.empty()) {
      EXPECT_EQ(!judge.problems.empty(), seen) << test::FindingText(inspection);
      return;
    }
    const std::vector<CellReading> expected =
        test::ReadPlaces(db_, WithChangedContents(damaged), places_);
    const bool harmful = test::ReadPlaces(db_, damaged, places_) != expected;
    ++(harmful ? tally.harmful : tally.harmless);
    if (!harmful && seen) ++tally.noticed;
    if (!harmful) return;
    ++tally.harmfulUses[uses];
    if (seen) return;
    ++tally.unseen;
    ++tally.unseenUses[uses];
  }

  Driver db_;
  ContainerBytes whole_;
  test::StructureWalk walk_;
  std::vector<test::CellPlace> places_;
};

class CorruptionTest : public CorruptedFileTest, public testing::WithParamInterface<unsigned> {};
INSTANTIATE_TEST_SUITE_P(Shard, CorruptionTest, testing::Range(0U, kShards));

TEST_P(CorruptionTest, RandomDamageToTheStructureIsSeen) {
  constexpr std::size_t kMemoryKilobytes = std::size_t{1} << 20;
  ASSERT_EQ(walk_.Text(), "");
  ASSERT_GT(places_.size(), 200U);
  const std::size_t before = test::PeakKilobytes();
  Tally tally;
  for (unsigned i = 0; i < CorruptionsPerShard(); ++i) {
    const unsigned seed = GetParam() * 1000003U + i;
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::Damage damage(whole_, seed);
    const std::string damaged = damage.Next();
    if (!damaged.empty()) Judge(damaged, tally);
  }
  EXPECT_LT(test::PeakKilobytes() - before, kMemoryKilobytes);
  tally.Print();
  EXPECT_GT(tally.harmful, static_cast<int>(CorruptionsPerShard() / 2));
  EXPECT_LE(tally.unseen, tally.harmful / 200);
}

/// Every bit of the structure, or in the short tier one in many of them.
TEST_P(CorruptionTest, EveryBitOfTheStructureFlipped) {
  const std::size_t step = kShards * (test::LongTier() ? 1 : 61);
  Tally tally;
  for (std::size_t bit = GetParam(); bit < walk_.uses.size() * 8; bit += step) {
    const std::size_t at = bit / 8;
    if (test::IsContent(walk_.uses[at])) continue;
    SCOPED_TRACE("bit " + std::to_string(bit % 8) + " at " + std::to_string(at + 1));
    std::string damaged = whole_.bytes();
    damaged[at] = static_cast<char>(damaged[at] ^ (1 << bit % 8));
    Judge(damaged, tally);
  }
  tally.Print();
  EXPECT_GT(tally.harmful, test::LongTier() ? 1000 : 10);
  EXPECT_LE(tally.unseen, 1 + tally.harmful / 200);
}

/// A pointer of 0 means none, which is what a cell that was never written has: most of this cannot
/// be seen. What has no right to be missing is.
TEST_F(CorruptedFileTest, EveryPointerSetToNone) {
  const std::size_t step = test::LongTier() ? 1 : 7;
  Tally tally;
  std::size_t pointer = 0;
  for (std::int64_t at = 1; at <= whole_.size(); ++at) {
    if (walk_.uses[static_cast<std::size_t>(at - 1)] != ByteUse::kPointer) continue;
    ContainerBytes damaged = whole_;
    damaged.PutInt32(at, 0);
    SCOPED_TRACE("pointer at " + std::to_string(at));
    if (pointer++ % step == 0 && whole_.Int32(at) != 0) Judge(damaged.bytes(), tally);
    at += 3;
  }
  tally.Print();
  EXPECT_GT(tally.harmful, test::LongTier() ? 250 : 30);
  EXPECT_LT(tally.UnseenShare(), 0.9);
}

}  // namespace
}  // namespace orv
