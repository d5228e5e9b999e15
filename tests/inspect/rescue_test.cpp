// Rescues: sound files arrive whole, and whatever the engine still reads of a damaged file is in a
// sound copy.
#include "inspect/rescue.h"

#include <chrono>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "all_cells.h"
#include "inspecting.h"
#include "support/container_bytes.h"
#include "support/damage.h"
#include "support/structure_walk.h"
#include "support/styled_file.h"
#include "support/tier.h"

namespace orv {
namespace {

using inspect::Rescued;
using test::CellPlace;
using test::CellReading;
using test::ContainerBytes;
using test::Driver;
namespace styled = test::styled;

/// A rescue in memory.
struct Outcome {
  Rescued rescued;
  std::string copy;

  std::string Remarks() const {
    std::string text;
    for (const inspect::RescueRemark& remark : rescued.remarks) {
      text += (remark.isLoss ? "lost " : "changed ") + remark.matrix + " " +
              std::to_string(remark.field) + " " + std::to_string(remark.record) + ": " +
              remark.what + "\n";
    }
    return text;
  }
};

Outcome RescueBytes(std::string_view bytes) {
  const test::TempFile source(bytes);
  const test::TempFile target;
  Outcome outcome;
  outcome.rescued = inspect::Rescue(*source, *target);
  outcome.copy = target.Bytes();
  EXPECT_EQ(source.Bytes(), bytes) << "a rescue changes nothing";
  return outcome;
}

void ExpectSound(const std::string& copy) {
  EXPECT_EQ(test::FindingText(test::InspectBytes(copy)), "");
  EXPECT_EQ(test::WalkStructures(copy).Text(), "");
}

class RescueTest : public testing::Test {
 protected:
  RescueTest() : whole_(test::RichFile()) {
    test::WriteBytes(db_.file(), whole_.bytes());
    places_ = test::AllPlaces(db_);
    db_.CloseAll();
  }

  Driver db_;
  ContainerBytes whole_;
  std::vector<CellPlace> places_;
};

TEST_F(RescueTest, ASoundFileArrivesWholeWithItsStyles) {
  const Outcome outcome = RescueBytes(whole_.bytes());
  EXPECT_EQ(outcome.Remarks(), "");
  EXPECT_FALSE(outcome.rescued.lost);
  ExpectSound(outcome.copy);
  EXPECT_EQ(test::InspectBytes(outcome.copy).matrices, test::InspectBytes(whole_.bytes()).matrices);
  EXPECT_EQ(test::InspectBytes(outcome.copy).cells, outcome.rescued.cells);

  std::vector<std::string> styles;
  for (int f = 1; f <= styled::kFields; ++f) styles.push_back(db_.Style(L"", f));
  const std::vector<CellReading> before = test::ReadPlaces(db_, whole_.bytes(), places_);
  EXPECT_EQ(test::ReadPlaces(db_, outcome.copy, places_), before);
  for (int f = 1; f <= styled::kFields; ++f) {
    EXPECT_EQ(db_.Style(L"", f), styles[static_cast<std::size_t>(f - 1)]);
  }
  EXPECT_EQ(db_.Type(L"", -8, 1, "font"), "bold");
}

TEST_F(RescueTest, RecordsBehindACountThatIsTooSmallComeBack) {
  ContainerBytes damaged = whole_;
  damaged.PutInt32(damaged.FieldTable(damaged.Root()), 4);
  const Outcome outcome = RescueBytes(damaged.bytes());
  EXPECT_FALSE(outcome.rescued.lost) << outcome.Remarks();
  ExpectSound(outcome.copy);
  EXPECT_EQ(test::ReadPlaces(db_, outcome.copy, places_),
            test::ReadPlaces(db_, whole_.bytes(), places_));
}

TEST_F(RescueTest, ALostCellIsToldAndTheOthersArrive) {
  ContainerBytes damaged = whole_;
  const std::int64_t slot = damaged.Entry(damaged.Int32(damaged.Descriptor(52, 1)), 7, 4);
  damaged.PutInt32(slot, 1 << 30);
  const Outcome outcome = RescueBytes(damaged.bytes());
  EXPECT_TRUE(outcome.rescued.lost);
  EXPECT_EQ(outcome.Remarks(), "lost / 1 7: the cell's pointer leads to 1073741824\n");
  ExpectSound(outcome.copy);
  test::WriteBytes(db_.file(), outcome.copy);
  EXPECT_EQ(db_.Get(L"", 7, 1), "");
  EXPECT_EQ(db_.Get(L"", 8, 1), std::string(64, 'f'));
}

TEST_F(RescueTest, AMatrixInsideItselfArrivesAsItsTitle) {
  ContainerBytes damaged = whole_;
  const std::int64_t slot = damaged.Entry(damaged.Int32(damaged.Descriptor(52, 1)), 9, 4);
  damaged.PutInt32(slot, 52);
  const Outcome outcome = RescueBytes(damaged.bytes());
  EXPECT_THAT(outcome.Remarks(), testing::HasSubstr("it contains itself"));
  ExpectSound(outcome.copy);
  test::WriteBytes(db_.file(), outcome.copy);
  EXPECT_EQ(db_.Get(L"", 9, 1), "styled");
  EXPECT_FALSE(db_.HoldsMatrix(L"", 9, 1));
}

TEST_F(RescueTest, AFieldWhoseDictionaryIsGoneArrivesInTheFreeStyle) {
  ContainerBytes damaged = whole_;
  damaged.PutInt32(damaged.Root() + 8, 0);
  const Outcome outcome = RescueBytes(damaged.bytes());
  EXPECT_TRUE(outcome.rescued.lost);
  EXPECT_THAT(outcome.Remarks(), testing::HasSubstr("changed / 5 -1: the field arrives in the free "
                                                    "style: its dictionary is not to be had"));
  EXPECT_THAT(outcome.Remarks(), testing::HasSubstr("30 cells have an index and no value"));
  ExpectSound(outcome.copy);
}

TEST_F(RescueTest, FieldsThatNobodyCanReadAreToldAndTheOthersArrive) {
  ContainerBytes damaged = whole_;
  const std::int64_t root = damaged.Root();
  damaged.PutInt16(damaged.Descriptor(root, styled::kText) + 9, 0);
  damaged.PutByte(damaged.Descriptor(root, styled::kPacked) + 8, 7);
  damaged.PutInt16(damaged.Descriptor(root, styled::kDictionary) + 9, 3);
  const Outcome outcome = RescueBytes(damaged.bytes());
  EXPECT_EQ(outcome.Remarks(),
            "changed / 2 -1: the style code 5 with the cell size 0 became the free style\n"
            "changed / 5 -1: the style code 11 with the cell size 3 became the free style\n"
            "lost / 2 -1: cells of 0 bytes cannot be read\n"
            "lost / 3 -1: the cells of a compressed field cannot be read\n"
            "lost / 5 -1: index entries of 3 bytes cannot be read\n");
  ExpectSound(outcome.copy);
  test::WriteBytes(db_.file(), outcome.copy);
  EXPECT_EQ(db_.Fields(), styled::kFields);
  EXPECT_EQ(db_.Get(L"", 8, styled::kFree), std::string(64, 'f'));
  EXPECT_EQ(db_.Get(L"", 8, styled::kInt), "8000000");
  for (const int f : {styled::kText, styled::kPacked, styled::kDictionary}) {
    EXPECT_EQ(db_.Get(L"", 8, f), "");
    EXPECT_EQ(db_.Get(L"", 0, f), "field " + std::to_string(f));
  }
}

TEST_F(RescueTest, AWrongRootPointerLeadsToTheUsualRoot) {
  ContainerBytes damaged = whole_;
  damaged.PutInt32(4, 0);
  const Outcome outcome = RescueBytes(damaged.bytes());
  EXPECT_TRUE(outcome.rescued.lost);
  ExpectSound(outcome.copy);
  EXPECT_EQ(test::ReadPlaces(db_, outcome.copy, places_),
            test::ReadPlaces(db_, whole_.bytes(), places_));
}

TEST_F(RescueTest, AFileWithoutAnyRootGivesAnEmptyCopy) {
  const Outcome outcome = RescueBytes(whole_.bytes().substr(0, 50));
  EXPECT_TRUE(outcome.rescued.lost);
  ExpectSound(outcome.copy);
  EXPECT_EQ(outcome.rescued.matrices, 0);
}

/// Where the cells of a damaged file lead, read without the engine, to tell a matrix that lies
/// inside itself.
class MatrixTrail {
 public:
  explicit MatrixTrail(const ContainerBytes& file) : file_(file) {}

  /// Whether the steps lead through one position twice.
  bool Repeats(const CellPlace& place) const {
    try {
      std::set<std::int64_t> met;
      std::int64_t at = file_.Root();
      met.insert(at);
      std::wstring rest = place.steps;
      if (place.field > 0 && place.record > 0) {
        rest += L"/[" + std::to_wstring(place.record) + L"," + std::to_wstring(place.field) + L"]";
      }
      for (std::size_t i = 0; i < rest.size();) {
        const std::size_t next = std::min(rest.find(L'/', i + 1), rest.size());
        at = Step(at, rest.substr(i, next - i));
        if (!met.insert(at).second) return true;
        i = next;
      }
    } catch (const std::out_of_range&) {
      return false;
    }
    return false;
  }

 private:
  std::int64_t Step(std::int64_t matrix, const std::wstring& step) const {
    if (step == L"/#") return file_.Int32(matrix + 8);
    const std::size_t comma = step.find(L',');
    return file_.Cell(matrix, std::stol(step.substr(2, comma - 2)),
                      std::stol(step.substr(comma + 1)));
  }

  const ContainerBytes& file_;
};

constexpr unsigned kShards = 16;

class DamagedRescueTest : public RescueTest, public testing::WithParamInterface<unsigned> {};
INSTANTIATE_TEST_SUITE_P(Shard, DamagedRescueTest, testing::Range(0U, kShards));

TEST_P(DamagedRescueTest, EveryReadableCellIsInASoundCopy) {
  const unsigned corruptions = test::LongTier() ? 625 : 25;
  constexpr auto kTime = std::chrono::seconds(20);
  std::size_t compared = 0;
  std::size_t repeated = 0;
  for (unsigned i = 0; i < corruptions; ++i) {
    const unsigned seed = 77 + GetParam() * 1000003U + i;
    SCOPED_TRACE("seed " + std::to_string(seed));
    test::Damage damage(whole_, seed);
    const std::string damaged = damage.Next();
    if (damaged.empty()) continue;
    const auto begin = std::chrono::steady_clock::now();
    const Outcome outcome = RescueBytes(damaged);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, kTime);
    ExpectSound(outcome.copy);

    const std::vector<CellReading> before = test::ReadPlaces(db_, damaged, places_);
    const std::vector<CellReading> after = test::ReadPlaces(db_, outcome.copy, places_);
    const ContainerBytes file(damaged);
    const MatrixTrail trail(file);
    for (std::size_t k = 0; k < places_.size(); ++k) {
      if (before[k].error != 0) continue;
      const bool same =
          before[k].text == after[k].text && (after[k].isMatrix || !before[k].isMatrix);
      if (!same && trail.Repeats(places_[k])) {
        ++repeated;
        EXPECT_TRUE(outcome.rescued.lost);
        continue;
      }
      ++compared;
      EXPECT_TRUE(same) << testing::PrintToString(places_[k].steps) << " " << places_[k].record
                        << " " << places_[k].field << "\n"
                        << before[k].text.substr(0, 60) << "\n"
                        << after[k].text.substr(0, 60) << "\n"
                        << outcome.Remarks();
    }
    if (HasFailure()) return;
  }
  EXPECT_GT(compared, corruptions * 50);
  EXPECT_LT(repeated, compared / 100);
}

}  // namespace
}  // namespace orv
