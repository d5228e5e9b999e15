// What the order of writes owes to members that were once interrupted at the wrong moment.

#include <gtest/gtest.h>

#include "durability/fault_plan.h"
#include "platform/run_time_error.h"
#include "support/container_bytes.h"
#include "support/structure_walk.h"
#include "support/styled_file.h"

namespace orv {
namespace {

using platform::FileOperation;
using test::ContainerBytes;
using test::Driver;
using test::FaultPlan;
namespace styled = test::styled;

class OrderOfWritesTest : public testing::Test {
 protected:
  template <typename Call>
  static std::size_t StoresOf(Call call) {
    FaultPlan plan;
    call();
    return plan.met(FileOperation::kStore);
  }

  /// Calls with operation `n` failing, and closes everything.
  template <typename Call>
  void FailAt(std::size_t n, Call call) {
    {
      FaultPlan plan;
      plan.FailAt(n, platform::RunTimeError::kDeviceIo, false);
      call();
      ASSERT_TRUE(plan.raised());
    }
    db_.CloseAll();
  }

  /// Makes the call on the present file with each of its operations failing in turn, and has
  /// `check` look at what is left.
  template <typename Call, typename Check>
  void FailEach(Call call, Check check) {
    db_.CloseAll();
    const std::string whole = db_.Bytes();
    std::size_t operations = 0;
    {
      FaultPlan plan;
      call();
      operations = plan.met();
    }
    ASSERT_GT(operations, 0U);
    for (std::size_t n = 1; n <= operations; ++n) {
      SCOPED_TRACE("operation " + std::to_string(n));
      db_.CloseAll();
      test::WriteBytes(db_.file(), whole);
      FailAt(n, call);
      check();
    }
  }

  void MakeNamedFields(int count) {
    db_.Fresh();
    db_.AddFields(L"", count, 1);
    for (int f = 1; f <= count; ++f) db_.Set(L"", 0, f, std::string(1, Letter(f)));
  }
  static char Letter(int f) { return static_cast<char>('A' + f - 1); }
  std::string Names() {
    std::string names;
    for (int f = 1; f <= db_.Fields(); ++f) names += db_.Get(L"", 0, f) + "|";
    return names;
  }

  Driver db_;
};

// Slots were once written one by one and the count last, so that a dead process left fields twice.
TEST_F(OrderOfWritesTest, ADeletedFieldGoesInOneWrite) {
  MakeNamedFields(4);
  EXPECT_EQ(StoresOf([&] { db_.DeleteField(L"", 2); }), 1U);
  EXPECT_EQ(Names(), "A|C|D|");
}

// The fields behind the new ones were hidden until the count was written.
TEST_F(OrderOfWritesTest, FieldsAddedInTheMiddleAreNotSeenBeforeTheLastWrite) {
  MakeNamedFields(4);
  const auto add = [&] { db_.AddFields(L"", 2, 2); };
  FailEach(add, [&] { EXPECT_EQ(Names(), "A|B|C|D|"); });
  add();
  EXPECT_EQ(Names(), "A|||B|C|D|");
}

// A matrix had fields that did not exist (255) until their descriptors were written.
TEST_F(OrderOfWritesTest, TheFirstFieldsOfAMatrixComeWithTheirDescriptors) {
  db_.Fresh();
  FailEach([&] { db_.AddFields(L"", 3, 1); }, [&] { EXPECT_EQ(db_.Fields(), 0); });
}

// A slot behind the count was taken for that of a field to be reset: its descriptor was overwritten
// even when a dead process had left a field there that stood in another slot as well.
TEST_F(OrderOfWritesTest, ASlotBehindTheCountIsNotWrittenThrough) {
  MakeNamedFields(3);
  db_.DeleteField(L"", 3);
  db_.CloseAll();
  ContainerBytes file(db_.Bytes());
  const std::int64_t slots = file.FieldTable(file.Root()) + 10;
  file.PutInt32(slots + 8, file.Int32(slots));
  test::WriteBytes(db_.file(), file.bytes());
  db_.AddFields(L"", 1, 3);
  EXPECT_EQ(Names(), "A|B||");
  db_.CloseAll();
  EXPECT_EQ(test::WalkStructures(db_.Bytes()).Text(), "");
}

// The last records were behind the count, and so lost to every reader, while the others moved.
TEST_F(OrderOfWritesTest, InsertedRecordsAreCountedBeforeTheOthersMove) {
  db_.Fresh();
  db_.AddFields(L"", 2, 1);
  db_.AddRecords(L"", 3, 1);
  for (int r = 1; r <= 3; ++r) {
    db_.Set(L"", r, 1, "left " + std::to_string(r));
    db_.Set(L"", r, 2, "right " + std::to_string(r));
  }
  const auto expectTheLast = [&] {
    std::string left;
    std::string right;
    for (int r = 1; r <= db_.Records(); ++r) {
      left += db_.Get(L"", r, 1) + "|";
      right += db_.Get(L"", r, 2) + "|";
    }
    EXPECT_NE(left.find("left 3"), std::string::npos);
    EXPECT_NE(right.find("right 3"), std::string::npos);
  };
  FailEach([&] { db_.AddRecords(L"", 1, 1); }, expectTheLast);
}

// New entries of a text field were zeros until they were filled; an insertion that died in between
// left records whose text was made of zero bytes.
TEST_F(OrderOfWritesTest, NewFixedTextsAreBlankBeforeAnythingRefersToThem) {
  MakeStyledFile(db_);
  db_.AddRecords(L"", 2, 1);
  const auto add = [&] { db_.AddRecords(L"", 2, 3); };
  FailEach(add, [&] {
    add();
    EXPECT_EQ(db_.Get(L"", 3, styled::kText), "");
    EXPECT_EQ(db_.Get(L"", 4, styled::kText), "");
  });
}

/// A disk on which no file can grow.
class NoRoom : public platform::FaultPoints {
 public:
  NoRoom() { platform::installedFaultPoints = this; }
  ~NoRoom() override { platform::installedFaultPoints = nullptr; }
  bool Before(FileOperation operation) override {
    if (operation == FileOperation::kGrow) platform::Raise(platform::RunTimeError::kDiskFull);
    return true;
  }
};

// The pieces that there were had been rewritten when the room for the rest was missing: the call
// failed and left half a text.
TEST_F(OrderOfWritesTest, AFullDiskLeavesATextOfManyPiecesWhole) {
  db_.Fresh();
  db_.AddFields(L"", 1, 1);
  db_.AddRecords(L"", 1, 1);
  db_.Set(L"", 1, 1, "abcd");
  db_.Set(L"", 1, 1, "abcdefgh");
  db_.Set(L"", 1, 1, "abcdefghijklmnop");
  db_.CloseAll();
  {
    const NoRoom noRoom;
    db_.Set(L"", 1, 1, "ABCDEFGHIJKLMNOPQRST");
    EXPECT_EQ(db_.Error(), 61);
  }
  EXPECT_EQ(db_.Get(L"", 1, 1), "abcdefghijklmnop");
  db_.Set(L"", 1, 1, "ABCDEFGHIJKLMNOPQRST");
  EXPECT_EQ(db_.Get(L"", 1, 1), "ABCDEFGHIJKLMNOPQRST");
}

// The header came first, with a root pointer of four blanks.
TEST_F(OrderOfWritesTest, ANewContainerIsWrittenInOneWrite) {
  EXPECT_EQ(StoresOf([&] { db_.New(); }), 1U);
  EXPECT_EQ(test::WalkStructures(db_.Bytes()).Text(), "");
}

}  // namespace
}  // namespace orv
