// Damaged container files: whatever is broken, every member answers with a value or an error code,
// soon, and without growing the file or the memory beyond bounds.
#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/container_bytes.h"
#include "support/damage.h"
#include "support/peak_memory.h"
#include "support/structure_walk.h"
#include "support/styled_file.h"
#include "support/tier.h"

namespace orv {
namespace {

using test::ContainerBytes;
using test::Driver;
namespace styled = test::styled;

/// Calls every member that reads or writes with what the file has and a little beyond.
class Exercise {
 public:
  Exercise(Driver& db, bool damaged) : db_(db), damaged_(damaged) {}

  void Everything() {
    for (const auto* steps : {L"", L"/#", L"/#/[2,3]", L"/#/[2,3]/[1,2]", L"/[5,1]",
                              L"/[5,1]/[2,2]", L"/[5,1]/[2,2]/[1,1]", L"/f(1)=\"short\""}) {
      Read(steps);
      ++checks_;
    }
    if (damaged_) Write(L"/#/[2,3]");  // overwrites the name under which the dictionary is found
    for (const auto* steps : {L"/[5,1]/[2,2]", L"/[5,1]", L""}) Write(steps);
    Read(L"");
    db_.InsertTop();
    Code();
    Read(L"/[1,1]");
    db_.CloseAll();
  }

  int checks() const { return checks_; }

 private:
  /// The code that a call left must be one that exists.
  void Code() {
    const int code = db_.Error();
    EXPECT_TRUE(code >= 0 && code <= 255) << code;
  }

  void Read(const std::wstring& steps) {
    db_.Kind();
    const int records = db_.Records(steps);
    const int fields = db_.Fields(steps);
    db_.Title(steps);
    for (int f = 0; f <= std::min(fields + 1, 8); ++f) {
      for (int r = -2; r <= std::min(records + 1, 40); ++r) {
        db_.Get(steps, r, f);
        if (r % 8 == 0) db_.HoldsMatrix(steps, r, f);
        if (r > 3) continue;
        db_.Id(steps, r, f);
        db_.Type(steps, r, f, "type");
        DataType(steps, r, f);
      }
      db_.Get(steps, records, f);
      Style(steps, f);
      FieldSize(steps, f);
    }
    db_.Type(steps, -8, 1, "font");
    Block(steps);
    Find(steps);
    Run(steps);
    Code();
  }

  void DataType(const std::wstring& steps, std::int32_t r, int f) {
    std::wstring path = db_.Path(steps);
    auto field = static_cast<std::int16_t>(f);
    db_.engine.GetCellDataType(path, r, field);
  }
  void Style(const std::wstring& steps, int f) {
    std::wstring path = db_.Path(steps);
    auto field = static_cast<std::int16_t>(f);
    std::int16_t freeSize = 0;
    std::int16_t cellSize = 0;
    std::int16_t dataType = 0;
    Boolean fixedType = Boolean::kFalse;
    Boolean unique = Boolean::kFalse;
    db_.engine.GetFldStyle(path, field, freeSize, cellSize, fixedType, unique, dataType);
  }
  void FieldSize(const std::wstring& steps, int f) {
    std::wstring path = db_.Path(steps);
    auto field = static_cast<std::int16_t>(f);
    db_.engine.dBASEFldSize(path, field);
  }
  void Block(const std::wstring& steps) {
    TextMatrix block({1, 8}, {0, 40});
    std::wstring path = db_.Path(steps);
    std::int32_t first = 0;
    std::int32_t last = 40;
    Boolean frml = Boolean::kFalse;
    db_.engine.ValueMatrix(block, path, first, last, frml);
  }
  void Find(const std::wstring& steps) {
    std::wstring path = db_.Path(steps);
    std::wstring wanted = L"bottom";
    std::int32_t record = 1;
    std::int16_t field = 1;
    std::int16_t region = 0;
    std::int16_t direct = 0;
    Boolean inCell = Boolean::kFalse;
    Boolean exact = Boolean::kFalse;
    db_.engine.MtxFindFirst(path, record, field, wanted, region, inCell, direct, exact);
    db_.engine.MtxFindMin(path, field);
    db_.engine.MtxFindMax(path, field);
  }
  void Run(const std::wstring& steps) {
    std::wstring command = L"=records+fields;";
    std::wstring path = db_.Path(steps);
    std::int32_t record = 3;
    std::int16_t field = 1;
    db_.engine.ExecCmd(command, path, record, field);
    Boolean isMtx = Boolean::kFalse;
    Boolean frml = Boolean::kTrue;
    db_.engine.GetCellValue(path, record, field, isMtx, frml);
  }

  void Write(const std::wstring& steps) {
    for (int f = 1; f <= styled::kFields; ++f) {
      for (const int r : {0, 1, 3, 5, 30}) {
        db_.Set(steps, r, f, std::to_string(r * f));
        db_.Set(steps, r, f, std::string(300, 'w'));
        db_.Set(steps, r, f, "");
        db_.Set(steps, r, f, "new value");
        db_.ReBit(steps, r, f, 1);
        db_.ReBit(steps, r, f, 4);
      }
      Code();
    }
    db_.SetTitle(steps, std::string(100, 't'));
    db_.SetType(steps, 1, 1, "type", "int");
    db_.SetType(steps, -9, 1, "icon", "tree");
    db_.Put(steps, 4, 1, "new");
    db_.AddFields(steps, 1, 2);
    db_.AddRecords(steps, 2, 2);
    db_.Set(steps, 1, 2, "late");
    if (!steps.empty()) db_.Put(steps, -2, 1, "Types");  // the root's hold the dictionary
    db_.DeleteField(steps, 1);
    Code();
  }

  Driver& db_;
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
    Exercise exercise(db, true);
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
  Exercise(db, false).Everything();
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
