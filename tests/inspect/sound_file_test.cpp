// Sound files: the inspection finds nothing and counts what the tests' own walk counts.
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "inspecting.h"
#include "support/damage.h"
#include "support/driver.h"
#include "support/structure_walk.h"
#include "support/styled_file.h"

namespace orv {
namespace {

using test::Driver;
using test::FindingText;
using test::InspectBytes;

/// What both walks say must be the same; the tests' walk is the judge.
void ExpectAgreement(const std::string& bytes) {
  const test::StructureWalk walk = test::WalkStructures(bytes);
  const inspect::Inspection inspection = InspectBytes(bytes);
  EXPECT_EQ(walk.Text(), "");
  EXPECT_EQ(FindingText(inspection), "");
  EXPECT_EQ(static_cast<std::size_t>(inspection.matrices), walk.matrices);
  EXPECT_EQ(static_cast<std::size_t>(inspection.fields), walk.fields);
  EXPECT_EQ(static_cast<std::size_t>(inspection.liveBytes), walk.liveBytes);
  EXPECT_EQ(static_cast<std::size_t>(inspection.bytes), bytes.size());
}

TEST(SoundFileTest, ANewFileIsCleanAndHasNoDeadBytes) {
  Driver db;
  db.New("title");
  db.CloseAll();
  ExpectAgreement(db.Bytes());
  const inspect::Inspection inspection = InspectBytes(db.Bytes());
  EXPECT_EQ(inspection.kind, inspect::FileKind::kContainer);
  EXPECT_EQ(inspection.matrices, 1);
  EXPECT_EQ(inspection.DeadBytes(), 0);
}

TEST(SoundFileTest, ARichFileIsCleanAndItsCellsAreCounted) {
  const std::string bytes = test::RichFile();
  ExpectAgreement(bytes);
  const inspect::Inspection inspection = InspectBytes(bytes);
  EXPECT_GT(inspection.cells, 150);
  EXPECT_GT(inspection.DeadBytes(), 0);
}

TEST(SoundFileTest, DeadBytesAreWhatAChangeLeavesBehind) {
  Driver db;
  db.New("title");
  db.AddFields(L"", 1, 1);
  db.AddRecords(L"", 1, 1);
  db.Set(L"", 1, 1, "a long text");
  db.CloseAll();
  EXPECT_EQ(InspectBytes(db.Bytes()).DeadBytes(), 0);
  db.Set(L"", 1, 1, "a");
  db.CloseAll();
  EXPECT_EQ(InspectBytes(db.Bytes()).DeadBytes(), 10);
}

/// A tree grown by random operations on random places, styles and conversions included.
class RandomTree {
 public:
  RandomTree() { MakeStyledFile(db_); }

  void Step() {
    const std::wstring steps = Place();
    const int records = db_.Records(steps);
    const int fields = db_.Fields(steps);
    const int r = Below(records + 2);
    const int f = Below(fields + 2);
    switch (Below(10)) {
      case 0:
        return db_.AddFields(steps, 1 + Below(3), f);
      case 1:
        return db_.AddRecords(steps, 1 + Below(4), r);
      case 2:
        return db_.Put(steps, r, f, Text());
      case 3:
        return db_.DeleteField(steps, f);
      case 4:
        return db_.SetType(steps, r, f, "unit", Text());
      case 5:
        return db_.ReBit(steps, r, f, Below(2) == 0 ? 1 : 4);
      case 6:
        return db_.SetTitle(steps, Text());
      case 7:
        return Below(4) == 0 ? db_.InsertTop() : db_.CloseAll();
      default:
        return db_.Set(steps, r, f, Text());
    }
  }

  std::string Bytes() {
    db_.CloseAll();
    return db_.Bytes();
  }

 private:
  int Below(int end) { return *rc::gen::inRange(0, std::max(end, 1)); }

  std::string Text() {
    static constexpr std::size_t kLengths[] = {0, 1, 4, 30, 255, 256, 700};
    return std::string(kLengths[Below(7)], static_cast<char>('a' + Below(26)));
  }

  std::wstring Place() {
    std::wstring steps;
    for (int depth = Below(4); depth > 0; --depth) {
      const int r = 1 + Below(std::max(db_.Records(steps), 1));
      const int f = 1 + Below(std::max(db_.Fields(steps), 1));
      if (!db_.HoldsMatrix(steps, r, f)) break;
      steps += L"/[" + std::to_wstring(r) + L"," + std::to_wstring(f) + L"]";
    }
    return steps;
  }

  Driver db_;
};

RC_GTEST_PROP(SoundFileTest, WhateverTheEngineWritesIsCleanToBothWalks, ()) {
  RandomTree tree;
  const int steps = *rc::gen::inRange(1, 60);
  for (int i = 0; i < steps; ++i) tree.Step();
  const std::string bytes = tree.Bytes();
  const test::StructureWalk walk = test::WalkStructures(bytes);
  RC_ASSERT(walk.Text() == "");
  const inspect::Inspection inspection = InspectBytes(bytes);
  RC_ASSERT(FindingText(inspection) == "");
  RC_ASSERT(static_cast<std::size_t>(inspection.liveBytes) == walk.liveBytes);
  RC_ASSERT(static_cast<std::size_t>(inspection.matrices) == walk.matrices);
}

/// Copies and converted files are files of the engine's like any other.
TEST(SoundFileTest, CopiesAndConvertedFilesAreClean) {
  Driver db;
  test::WriteBytes(db.file(), test::RichFile());
  db.SaveAs(L"", L"copy.orv", true, 1);
  db.SaveAs(L"", L"values.orv", false, 1);
  EXPECT_EQ(db.Error(), 0);
  db.SetStyle(L"", test::styled::kText, 11);
  db.SetStyle(L"", test::styled::kDictionary, 0);
  EXPECT_EQ(db.Error(), 0);
  db.CloseAll();
  ExpectAgreement(db.Bytes());
  for (const auto* name : {L"copy.orv", L"values.orv"}) {
    ExpectAgreement(test::ReadBytes(db.folder().Name(name)));
  }
}

}  // namespace
}  // namespace orv
