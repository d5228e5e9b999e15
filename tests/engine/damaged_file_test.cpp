// Damaged container files: whatever is broken, every member answers with a value or an error code,
// soon, and without growing the file or the memory beyond bounds.
#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/container_bytes.h"
#include "support/damage.h"
#include "support/exercise.h"
#include "support/peak_memory.h"
#include "support/structure_walk.h"
#include "support/styled_file.h"
#include "support/tier.h"

namespace orv {
namespace {

using test::ContainerBytes;
using test::Driver;
namespace styled = test::styled;

/// Calls every member on the rich file's matrices, and on a matrix put above them all.
class WholeExercise {
 public:
  WholeExercise(Driver& db, bool damaged) : db_(db), exercise_(db), damaged_(damaged) {}

  void Everything() {
    for (const auto* steps : {L"", L"/#", L"/#/[2,3]", L"/#/[2,3]/[1,2]", L"/[5,1]",
                              L"/[5,1]/[2,2]", L"/[5,1]/[2,2]/[1,1]", L"/f(1)=\"short\""}) {
      exercise_.Read(steps);
      ++checks_;
    }
    // Overwrites the name under which the dictionary is found.
    if (damaged_) exercise_.Write(L"/#/[2,3]");
    for (const auto* steps : {L"/[5,1]/[2,2]", L"/[5,1]", L""}) exercise_.Write(steps);
    exercise_.Read(L"");
    db_.InsertTop();
    exercise_.Read(L"/[1,1]");
    db_.CloseAll();
    EXPECT_EQ(exercise_.Problems(), "");
  }

  int checks() const { return checks_; }

 private:
  Driver& db_;
  test::Exercise exercise_;
  bool damaged_;
  int checks_ = 0;
};

constexpr unsigned kShards = 8;

class DamagedFileTest : public testing::TestWithParam<unsigned> {};
INSTANTIATE_TEST_SUITE_P(Shard, DamagedFileTest, testing::Range(0U, kShards));

TEST_P(DamagedFileTest, EveryMemberAnswersAndNothingGrowsBeyondBounds) {
  const unsigned corruptions = test::LongTier() ? 5000 : 300;
  constexpr auto kTime = std::chrono::seconds(20);
  constexpr std::size_t kGrowth = std::size_t{64} << 20;
  constexpr std::size_t kMemoryKilobytes = std::size_t{1} << 20;

  const ContainerBytes whole(test::RichFile());
  ASSERT_EQ(test::WalkStructures(whole.bytes()).Text(), "");
  Driver db;
  const std::size_t before = test::PeakKilobytes();
  for (unsigned i = 0; i < corruptions; ++i) {
    const unsigned seed = GetParam() * 1000003U + i;
    test::Damage damage(whole, seed);
    test::WriteBytes(db.file(), damage.Next());
    SCOPED_TRACE("seed " + std::to_string(seed));
    const auto begin = std::chrono::steady_clock::now();
    WholeExercise exercise(db, true);
    exercise.Everything();
    EXPECT_EQ(exercise.checks(), 8);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, kTime);
    EXPECT_LT(db.Bytes().size(), whole.bytes().size() + kGrowth);
    if (HasFailure()) return;
  }
  EXPECT_LT(test::PeakKilobytes() - before, kMemoryKilobytes);
}

TEST(DamagedFileExerciseTest, TheWholeFilePassesTheSameExercise) {
  const std::string whole = test::RichFile();
  Driver db;
  test::WriteBytes(db.file(), whole);
  WholeExercise(db, false).Everything();
  EXPECT_EQ(test::WalkStructures(db.Bytes()).Text(), "");
}

class SingleDamageTest : public testing::Test {
 protected:
  void SetUp() override {
    MakeStyledFile(db_);
    db_.AddRecords(L"", 3, 1);
    db_.Put(L"", 2, 1, "nested");
    db_.CloseAll();
  }
  ContainerBytes Bytes() const { return ContainerBytes(db_.Bytes()); }
  void Store(const ContainerBytes& file) {
    size_ = file.bytes().size();
    test::WriteBytes(db_.file(), file.bytes());
  }
  void ExpectRefused() {
    EXPECT_EQ(db_.Error(), 9);
    db_.CloseAll();
    EXPECT_EQ(db_.Bytes().size(), size_) << "nothing was written";
  }

  Driver db_;
  std::size_t size_ = 0;
};

TEST_F(SingleDamageTest, ATitleFarBehindTheEndIsNotWrittenThere) {
  ContainerBytes file = Bytes();
  file.PutInt32(file.Root() + 2, 1 << 30);
  file.PutInt32(file.Cell(file.Root(), 2, 1) + 2, 1 << 30);
  Store(file);
  db_.SetTitle(L"", "title");
  ExpectRefused();
  db_.Set(L"", 2, 1, "title");
  ExpectRefused();
}

// The file once grew as far as the pointer led.
TEST_F(SingleDamageTest, ACellFarBehindTheEndTakesNoType) {
  ContainerBytes file = Bytes();
  const std::int64_t cells = file.Int32(file.Descriptor(file.Root(), 1));
  file.PutInt32(file.Entry(cells, 2, 4), 1 << 30);
  Store(file);
  db_.SetType(L"", 2, 1, "unit", "km");
  EXPECT_EQ(db_.Error(), 9);
  db_.CloseAll();
  EXPECT_LT(db_.Bytes().size(), size_ + 4096) << "the new type is there, the cell does not have it";
}

// A field's number once came from such a count, and slots were stored in front of their buffer.
TEST_F(SingleDamageTest, ANegativeFieldCountTakesNoFields) {
  ContainerBytes file = Bytes();
  file.PutInt16(file.FieldTable(file.Root()) + 4, -300);
  Store(file);
  db_.AddFields(L"", 2, 1);
  ExpectRefused();
}

TEST_F(SingleDamageTest, ADescriptorOutsideTheFileIsNotWritten) {
  ContainerBytes file = Bytes();
  file.PutInt32(file.FieldTable(file.Root()) + 6 + 4, 1 << 30);
  Store(file);
  db_.Set(L"", 0, 1, "name");
  ExpectRefused();
  db_.Set(L"", 1, 1, "text");
  ExpectRefused();
  db_.AddRecords(L"", 1, 1);
  ExpectRefused();
}

TEST_F(SingleDamageTest, ARecordCountThatTheFileCannotHoldIsNoCount) {
  for (const std::int64_t count :
       {std::int64_t{INT32_MAX}, std::int64_t{1000001}, std::int64_t{-1}}) {
    ContainerBytes file = Bytes();
    file.PutInt32(file.FieldTable(file.Root()), count);
    Store(file);
    EXPECT_EQ(db_.Records(), -1) << count;
    ExpectRefused();
  }
}

TEST_F(SingleDamageTest, ATypeTableWithAHugeCountIsReadInNoTime) {
  ContainerBytes file = Bytes();
  file.PutInt32(file.FieldTable(file.Int32(file.Root() + 8)), INT32_MAX);
  Store(file);
  EXPECT_EQ(db_.Type(L"", -2, styled::kInt, "type"), "int");
  db_.SetType(L"", 1, 1, "unit", "km");
  ExpectRefused();
}

// Each list was once read as far as a damaged count could be believed, a million records a type.
TEST(DamagedTypesTest, AThousandTypesWhoseListsClaimAMillionRecordsAreReadInNoTime) {
  constexpr int kTypes = 1000;
  constexpr auto kTime = std::chrono::seconds(20);
  Driver db;
  db.New();
  db.AddFields(L"", 1, 1);
  db.AddRecords(L"", kTypes, 1);
  for (int r = 1; r <= kTypes; ++r) db.SetType(L"", r, 1, "unit", "km");
  ASSERT_EQ(db.Error(), 0);
  db.CloseAll();
  ContainerBytes file(db.Bytes());
  const std::int64_t types = file.Int32(file.Root() + 8);
  for (int r = 1; r <= kTypes; ++r) {
    file.PutInt32(file.FieldTable(file.Cell(types, r, 3)), 1000000);
  }
  test::WriteBytes(db.file(), file.bytes());
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(db.Type(L"", kTypes, 1, "unit"), "km");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, kTime);
}

TEST(DamagedFileExerciseTest, AFileCutAtEveryByteOfItsBeginning) {
  const std::string whole = test::RichFile();
  Driver db;
  for (std::size_t length = 0; length < 400; ++length) {
    test::WriteBytes(db.file(), whole.substr(0, length));
    db.Get(L"", 1, 1);
    db.Set(L"", 1, 1, "x");
    db.AddRecords(L"", 1, 1);
    db.AddFields(L"", 1, 1);
    db.SetTitle(L"", "cut");
    db.InsertTop();
    db.CloseAll();
  }
  EXPECT_TRUE(db.Error() == 0 || db.Error() == 53 || db.Error() == 255);
}

}  // namespace
}  // namespace orv
