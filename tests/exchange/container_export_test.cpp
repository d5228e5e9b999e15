#include "exchange/container_export.h"

#include <functional>
#include <random>

#include "exchange/export_fixture.h"
#include "support/styled_file.h"
#include "support/tier.h"

namespace orv {
namespace {

using test::ContainerBytes;
using test::ExportTest;
using test::kContainerFile;
using Phase = test::RecordingInterface::Phase;
namespace styled = test::styled;

class ContainerExportTest : public ExportTest {
 protected:
  /// A table with a field of every style, a nested matrix with a type table, and long texts.
  void MakeRichTable() {
    test::MakeStyledFile(db_);
    db_.AddRecords(L"", 4, 1);
    for (int r = 1; r <= 4; ++r) {
      db_.Set(L"", r, styled::kFree, std::string(static_cast<std::size_t>(r) * 120, 'a'));
      db_.Set(L"", r, styled::kText, "t" + std::to_string(r));
      db_.Set(L"", r, styled::kPacked, std::to_string(-100 * r));
      db_.Set(L"", r, styled::kInt, std::to_string(100000 * r));
      db_.Set(L"", r, styled::kDictionary, r % 2 == 0 ? "even" : "odd");
    }
    for (int f = 1; f <= styled::kFields; ++f) {
      db_.Set(L"", 0, f, "name " + std::to_string(f));
    }
    db_.Put(L"", 2, styled::kFree, "inner");
    db_.AddFields(L"/[2,1]", 2, 1);
    db_.AddRecords(L"/[2,1]", 2, 1);
    db_.Set(L"/[2,1]", 1, 1, "deep");
    db_.SetType(L"/[2,1]", -2, 2, "type", "image");
    db_.Set(L"/[2,1]", 2, 2, "typed");
    ASSERT_EQ(db_.Error(), 0);
  }

  void Export(bool withProperties, std::wstring_view steps = {}) {
    db_.SaveAs(steps, L"target", withProperties, kContainerFile);
    ASSERT_EQ(db_.Error(), 0);
  }
};

TEST_F(ContainerExportTest, WithPropertiesIsTheSameInEverything) {
  MakeRichTable();
  const std::string source = Describe();
  Export(true);
  UseTarget();
  EXPECT_EQ(Describe(), source);
  ExpectSound();
  EXPECT_EQ(screen_.LastDialog().phases, (std::vector<Phase>{{0, 4, 4}}));
  EXPECT_EQ(screen_.LastDialog().texts[0].text, L"styled");
}

TEST_F(ContainerExportTest, WithPropertiesTakesEveryKindOfWritingAfterwards) {
  MakeRichTable();
  Export(true);
  UseTarget();
  db_.AddRecords(L"", 3, 2);
  db_.Set(L"", 2, styled::kDictionary, "new value");
  db_.Set(L"", 3, styled::kInt, "7");
  db_.Set(L"", 4, styled::kFree, "free");
  db_.SetStyle(L"", styled::kDictionary, 0);
  EXPECT_EQ(db_.Get(L"", 2, styled::kDictionary), "new value");
  EXPECT_EQ(db_.Get(L"", 5, styled::kDictionary), "even");
  EXPECT_EQ(db_.Get(L"", 3, styled::kInt), "7");
  EXPECT_EQ(db_.Get(L"/[5,1]", 1, 1), "deep");
  ExpectSound();
}

// Other writers of the format may leave a long text in the pieces of a short cell.
TEST_F(ContainerExportTest, WithPropertiesKeepsAShortCellOfSeveralPieces) {
  MakeRichTable();
  db_.CloseAll();
  ContainerBytes file(db_.Bytes());
  const std::int64_t piece = file.Cell(file.Root(), 1, styled::kFree) + 2;
  ASSERT_EQ(file.Byte(piece), 120);
  const std::int64_t next = file.Append('\xC8' + std::string(200, 'b') + std::string(4, '\0'));
  file.PutInt32(piece + 1 + 120, next);
  test::WriteBytes(db_.file(), file.bytes());
  const std::string source = Describe();
  EXPECT_EQ(db_.Get(L"", 1, styled::kFree), std::string(120, 'a') + std::string(200, 'b'));
  Export(true);
  UseTarget();
  EXPECT_EQ(Describe(), source);
  ExpectSound();
}

TEST_F(ContainerExportTest, WithPropertiesLeavesCompressedCellsOut) {
  MakeRichTable();
  db_.CloseAll();
  ContainerBytes file(db_.Bytes());
  file.PutByte(file.Descriptor(file.Root(), styled::kFree) + 8, 7);
  test::WriteBytes(db_.file(), file.bytes());
  const std::string source = Describe();
  Export(true);
  UseTarget();
  EXPECT_EQ(Describe(), source);
}

TEST_F(ContainerExportTest, ShedsDeadSpace) {
  MakeRichTable();
  for (int round = 0; round < 50; ++round) {
    db_.Set(L"", 1, styled::kFree, std::string(static_cast<std::size_t>(300 + round), 'x'));
  }
  db_.SetStyle(L"", styled::kText, 1, 6);
  Export(true);
  db_.CloseAll();
  const std::size_t before = db_.Bytes().size();
  UseTarget();
  const test::StructureWalk walk = test::WalkStructures(db_.Bytes());
  EXPECT_LT(db_.Bytes().size(), before);
  // Nothing but the free ends between the parts of the file header and behind record tables.
  EXPECT_EQ(walk.Text(), "");
  EXPECT_LT(db_.Bytes().size() - walk.liveBytes, 16U);
}

TEST_F(ContainerExportTest, OfValuesHasTextsNamesTypesAndTitles) {
  MakeRichTable();
  db_.SetType(L"", -2, styled::kText, "@width", "77");
  db_.SetType(L"", -2, styled::kFree, "type", "");
  Export(false);
  std::vector<std::string> texts;
  for (int r = 0; r <= 4; ++r) {
    for (int f = 1; f <= styled::kFields; ++f) texts.push_back(db_.Get(L"", r, f));
  }
  UseTarget();
  std::vector<std::string> copied;
  for (int r = 0; r <= 4; ++r) {
    for (int f = 1; f <= styled::kFields; ++f) copied.push_back(db_.Get(L"", r, f));
  }
  EXPECT_EQ(copied, texts);
  EXPECT_EQ(db_.Title(), "styled");
  EXPECT_FALSE(db_.HoldsMatrix(L"", 2, styled::kFree));
  for (int f = 1; f <= styled::kFields; ++f) {
    const bool integer = f == styled::kPacked;
    EXPECT_EQ(db_.Style(L"", f), integer ? "0 0 false false 1" : "0 0 false false 0") << f;
  }
  EXPECT_EQ(db_.Type(L"", -2, styled::kText, "@width"), "77");
  EXPECT_EQ(db_.Type(L"", -2, styled::kInt, "type"), "int");
  EXPECT_EQ(db_.Type(L"", 1, styled::kInt, "type"), "int");
  // No other property goes along, and an empty "type" does not either.
  db_.Type(L"", -2, styled::kDictionary, "dictionary");
  EXPECT_EQ(db_.Error(), 4);
  db_.Type(L"", -2, styled::kFree, "type");
  EXPECT_EQ(db_.Error(), 4);
  ExpectSound();
}

TEST_F(ContainerExportTest, OfAnUntitledMatrixIsCalledFirstMtx) {
  for (const bool withProperties : {false, true}) {
    UseSource();
    Answer({Button::kOk});
    db_.New("");
    db_.AddFields(L"", 1, 1);
    Answer({Button::kOk});
    Export(withProperties);
    UseTarget();
    EXPECT_EQ(db_.Title(), "FIRST MTX");
    EXPECT_EQ(db_.Fields(), 1);
    EXPECT_EQ(db_.Records(), 0);
  }
}

TEST_F(ContainerExportTest, OfAnEmptyMatrixHasNoFields) {
  db_.New("Empty");
  for (const bool withProperties : {false, true}) {
    UseSource();
    Answer({Button::kOk});
    Export(withProperties);
    UseTarget();
    EXPECT_EQ(db_.Title(), "Empty");
    EXPECT_EQ(db_.Fields(), 0);
    ExpectSound();
  }
}

TEST_F(ContainerExportTest, OfANestedMatrixBecomesATopMatrix) {
  MakeRichTable();
  const std::string inner = Describe(L"/[2,1]");
  Export(true, L"/[2,1]");
  UseTarget();
  EXPECT_EQ(Describe(), inner);
  ExpectSound();
}

TEST_F(ContainerExportTest, OfThePropertyMatrixOfAPathMakesNoPropertiesUp) {
  MakeRichTable();
  Export(false, L"/#");
  UseTarget();
  EXPECT_EQ(db_.Fields(), 3);
  EXPECT_EQ(db_.Records(L"/#"), -1) << "there is no type table";
}

TEST_F(ContainerExportTest, OfAPropertyMatrixWorksToo) {
  MakeRichTable();
  const std::string types = Describe(L"/#");
  Export(true, L"/#");
  UseTarget();
  EXPECT_EQ(Describe(), types);
}

TEST_F(ContainerExportTest, OfAViewHasItsRecordsInEveryStyle) {
  MakeRichTable();
  const std::wstring view = L"/f(5)=\"even\"";
  std::vector<std::string> texts;
  for (int r = 1; r <= 2; ++r) {
    for (int f = 1; f <= styled::kFields; ++f) texts.push_back(db_.Get(view, r, f));
  }
  ASSERT_EQ(db_.Records(view), 2);
  for (const bool withProperties : {false, true}) {
    UseSource();
    Answer({Button::kOk});
    Export(withProperties, view);
    UseTarget();
    EXPECT_EQ(db_.Records(), 2);
    std::vector<std::string> copied;
    for (int r = 1; r <= 2; ++r) {
      for (int f = 1; f <= styled::kFields; ++f) copied.push_back(db_.Get(L"", r, f));
    }
    EXPECT_EQ(copied, texts);
    ExpectSound();
  }
  EXPECT_EQ(db_.Style(L"", styled::kDictionary), "11 1 true false 0");
  EXPECT_EQ(db_.Get(L"/[1,1]", 1, 1), "deep");
}

TEST_F(ContainerExportTest, ClosesAllFilesAndLeavesTheSourceAlone) {
  MakeRichTable();
  db_.CloseAll();
  const std::string before = db_.Bytes();
  for (const bool withProperties : {false, true}) {
    Answer({Button::kOk});
    Export(withProperties);
    // A file still open would have room reserved behind its end.
    EXPECT_EQ(test::WalkStructures(Target()).Text(), "");
  }
  db_.CloseAll();
  EXPECT_TRUE(db_.Bytes() == before);
}

TEST_F(ContainerExportTest, CancelledDeletesTheTarget) {
  MakeRichTable();
  const std::string source = Describe();
  for (const bool withProperties : {false, true}) {
    for (const int record : {1, 2, 4}) {
      Answer({Button::kYes});
      screen_.pressCancel = {1, record};
      db_.SaveAs(L"", L"target", withProperties, kContainerFile);
      EXPECT_TRUE(screen_.LastDialog().cancelled);
      EXPECT_EQ(db_.Error(), 0);
      EXPECT_FALSE(TargetExists());
    }
  }
  EXPECT_EQ(Describe(), source);
}

TEST_F(ContainerExportTest, IntoAMissingFolderFails) {
  MakeRichTable();
  db_.SaveAs(L"", L"missing/target", false, kContainerFile);
  EXPECT_EQ(db_.Error(), 76);
  ASSERT_EQ(screen_.messages.size(), 1U);
  EXPECT_EQ(screen_.messages[0].text,
            L"Произошла ошибка во время записи данных. Попробуйте повторить попытку.");
  db_.SaveAs(L"", L"missing/target", true, kContainerFile);
  EXPECT_EQ(db_.Error(), 76);
  EXPECT_EQ(screen_.messages.size(), 1U);
}

// Matrices that contain themselves.

TEST_F(ContainerExportTest, OfAMatrixThatContainsItselfEndsWith28) {
  db_.New("Outer");
  db_.AddFields(L"", 1, 1);
  db_.AddRecords(L"", 1, 1);
  db_.Put(L"", 1, 1, "inner");
  db_.AddFields(L"/[1,1]", 1, 1);
  db_.AddRecords(L"/[1,1]", 1, 1);
  db_.Put(L"/[1,1]", 1, 1, "innermost");
  db_.CloseAll();
  const ContainerBytes sound(db_.Bytes());
  const std::int64_t inner = sound.Cell(sound.Root(), 1, 1);
  const auto expect28 = [&](const std::function<void(ContainerBytes&)>& damage) {
    ContainerBytes file = sound;
    damage(file);
    db_.CloseAll();
    test::WriteBytes(db_.file(), file.bytes());
    db_.SaveAs(L"", L"target", true, kContainerFile);
    EXPECT_EQ(db_.Error(), 28);
    EXPECT_FALSE(TargetExists());
  };
  const auto slotOf = [&](std::int64_t matrix) {
    return sound.Int32(sound.Descriptor(matrix, 1)) + 4;
  };
  expect28([&](ContainerBytes& file) { file.PutInt32(slotOf(inner), inner); });
  expect28([&](ContainerBytes& file) { file.PutInt32(slotOf(inner), sound.Root()); });
  expect28([&](ContainerBytes& file) { file.PutInt32(sound.Root() + 8, sound.Root()); });
  expect28([&](ContainerBytes& file) { file.PutInt32(inner + 8, sound.Root()); });
}

/// The file with matrices of one cell nested in one another below its root.
ContainerBytes Nest(ContainerBytes file, int levels) {
  const auto int16 = [](int v) {
    return std::string{static_cast<char>(v), static_cast<char>(v >> 8)};
  };
  const auto int32 = [&](std::int64_t v) {
    return int16(static_cast<int>(v & 0xFFFF)) + int16(static_cast<int>(v >> 16));
  };
  std::int64_t matrix = file.Root();
  for (int level = 0; level < levels; ++level) {
    const std::int64_t table = file.size() + 1;
    const std::int64_t descriptor = table + 18;
    const std::int64_t block = descriptor + 22;
    const std::int64_t inner = block + 12;
    file.Append(int32(1) + int16(1) + int32(1) + int32(descriptor) + int32(0));
    file.Append(int32(block) + int32(0) + "\1" + int16(0) + int16(0) + int16(1) + int16(1) +
                std::string(5, '\0'));
    file.Append(int32(1) + int32(inner) + int32(0));
    file.Append(int16(-1) + int32(inner + 16) + int16(1) + int32(0) + int32(0) + int32(0) +
                int32(0));
    file.PutInt32(matrix + 12, table);
    matrix = inner;
  }
  return file;
}

TEST_F(ContainerExportTest, OfNestingTooDeepEndsWith28) {
  db_.New("Outer");
  db_.CloseAll();
  const ContainerBytes outer(db_.Bytes());
  test::WriteBytes(db_.file(), Nest(outer, 200).bytes());
  Export(true);
  EXPECT_EQ(Target().size(), Nest(outer, 200).bytes().size());
  test::WriteBytes(db_.file(), Nest(outer, 1100).bytes());
  Answer({Button::kOk});
  db_.SaveAs(L"", L"target", true, kContainerFile);
  EXPECT_EQ(db_.Error(), 28);
  EXPECT_FALSE(TargetExists());
}

// Random trees and damaged ones.

class RandomTree : public ContainerExportTest {
 protected:
  int Below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

  std::string Text() {
    std::string text(static_cast<std::size_t>(Below(10) == 0 ? Below(600) : Below(20)), ' ');
    for (char& c : text) c = static_cast<char>(33 + Below(200));
    return text;
  }

  void Grow(const std::wstring& steps, int depth) {
    const int fields = 1 + Below(4);
    const int records = Below(6);
    db_.AddFields(steps, fields, 1);
    db_.AddRecords(steps, records, 1);
    for (int f = 1; f <= fields; ++f) {
      db_.Set(steps, 0, f, Text());
      if (Below(3) == 0) db_.SetType(steps, -2, f, Below(2) == 0 ? "@width" : "note", Text());
      for (int r = 1; r <= records; ++r) {
        if (Below(4) == 0) continue;
        db_.Set(steps, r, f, Text());
        if (Below(12) == 0) db_.SetType(steps, r, f, "note", Text());
        if (depth > 0 && Below(6) == 0) {
          db_.Put(steps, r, f, Text());
          Grow(Nested(steps, r, f), depth - 1);
        }
      }
      constexpr int kStyles[] = {0, 0, 1, 11};
      const int style = kStyles[Below(4)];
      bool nested = false;
      for (int r = 1; r <= records; ++r) nested = nested || db_.HoldsMatrix(steps, r, f);
      if (!nested && style != 0) db_.SetStyle(steps, f, style, 1 + Below(30));
      ASSERT_EQ(db_.Error(), 0);
    }
  }

  std::mt19937 random_{1};
};

TEST_F(RandomTree, ComesBackWhole) {
  const unsigned trees = test::LongTier() ? 300 : 12;
  for (unsigned seed = 1; seed <= trees; ++seed) {
    SCOPED_TRACE(seed);
    random_.seed(seed);
    db_.CloseAll();
    db_.Use(L"tree" + std::to_wstring(seed));
    db_.New(Text() + "T");
    Grow(L"", 3);
    const std::string source = Describe();
    Answer({Button::kOk});
    Export(true);
    UseTarget();
    ASSERT_EQ(Describe(), source);
    ExpectSound();
  }
}

TEST_F(RandomTree, DamagedNeverDoesMoreThanFail) {
  const int rounds = test::LongTier() ? 20'000 : 300;
  db_.New("Tree");
  Grow(L"", 3);
  db_.CloseAll();
  const std::string sound = db_.Bytes();
  int failures = 0;
  for (int round = 0; round < rounds; ++round) {
    std::string damaged = sound;
    for (int hit = 0; hit <= Below(4); ++hit) {
      damaged[51 + static_cast<std::size_t>(Below(static_cast<int>(damaged.size()) - 51))] =
          static_cast<char>(Below(256));
    }
    if (Below(5) == 0) damaged.resize(52 + static_cast<std::size_t>(Below(4000)) % damaged.size());
    db_.CloseAll();
    test::WriteBytes(db_.file(), damaged);
    Answer({Button::kOk});
    db_.SaveAs(L"", L"target", Below(2) == 0, Below(2));
    failures += db_.Error() != 0 ? 1 : 0;
    ASSERT_TRUE(screen_.AllClosed());
  }
  EXPECT_GT(failures, 0);
  EXPECT_LT(failures, rounds);
}

}  // namespace
}  // namespace orv
