#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "exchange/dbase.h"
#include "storage/cell_primitives.h"
#include "storage/matrix.h"
#include "storage/nested_matrix.h"
#include "storage/records.h"
#include "storage/storage.h"
#include "support/hex_text.h"
#include "support/temp_folder.h"

namespace orv::storage {
namespace {

class MockFilters : public testing::NiceMock<FilterPort> {
 public:
  MOCK_METHOD(std::int16_t, GetFilterID, (const std::wstring&), (const, override));
  MOCK_METHOD(void, CreateFilter, (const std::wstring&, const std::wstring&), (override));
  MOCK_METHOD(std::int32_t, GetFilterValue, (std::int16_t, std::int32_t), (const, override));
  MOCK_METHOD(std::int16_t, GetCashFld, (std::int16_t, std::int32_t), (const, override));
  MOCK_METHOD(std::int32_t, RecordCount, (std::int16_t), (const, override));
  MOCK_METHOD(std::int16_t, FieldCount, (std::int16_t), (const, override));
  MOCK_METHOD(void, EraseCash, (), (override));
  MOCK_METHOD(void, DropFile, (const std::wstring&), (override));
};

constexpr std::string_view kDbaseTable =
    "03 7c 01 01  01 00 00 00  41 00  03 00  00*20 \"NAME\" 00*7  \"C\" 00*4  02  00*15  0d  20 "
    "\"ab\"";

class PathResolverTest : public testing::Test {
 protected:
  void SetUp() override {
    storage_.ports.dbase = &dbase_;
    Make(L"a");
  }

  /// A container with two fields and three records, a matrix in cell (2, 1) and one in a cell of
  /// that.
  std::wstring Make(std::wstring_view name) {
    const std::wstring full = folder_.Name(name);
    {
      platform::File file(platform::MapFile(full));
      CreateContainer(file, "root");
    }
    const std::wstring path = test::Quoted(full);
    AddTable(path);
    std::string title = "nested";
    PutMatrix(storage_, path, 2, 1, title);
    AddTable(path + L"/[2,1]");
    title = "deep";
    PutMatrix(storage_, path + L"/[2,1]", 3, 2, title);
    EXPECT_FALSE(storage_.error.IsSet());
    return full;
  }
  void AddTable(const std::wstring& path) {
    storage_.fields.SvrCmdAddFields(path, 2, 1);
    const Location at = storage_.resolver.ResolvePath(path);
    InsertRecords(at.position, 3, 1, *at.file, storage_.types, storage_.error);
  }

  std::wstring Path(std::wstring_view steps = {}) const {
    return test::Quoted(folder_.Name(L"a")) + std::wstring(steps);
  }
  Location Resolve(std::wstring_view steps = {}) {
    return storage_.resolver.ResolvePath(Path(steps));
  }
  int Error() const { return storage_.error.value(); }
  std::string TitleAt(const Location& at) {
    bool isMtx = false;
    (void)isMtx;
    std::string buffer;
    std::int16_t code = 0;
    return std::string(GetCell(at.position, *at.file, code, buffer));
  }

  test::TempFolder folder_;
  exchange::DbaseTables dbase_;
  Storage storage_;
};

TEST_F(PathResolverTest, TheRootAndNestedMatrices) {
  EXPECT_EQ(Resolve().position, 52);
  EXPECT_EQ(TitleAt(Resolve()), "root");
  EXPECT_EQ(TitleAt(Resolve(L"/[2,1]")), "nested");
  EXPECT_EQ(TitleAt(Resolve(L"/[2,1]/[3,2]")), "deep");
  EXPECT_EQ(Error(), 0);
  EXPECT_EQ(Resolve().number, 1);
  EXPECT_FALSE(Resolve().IsView());
}

TEST_F(PathResolverTest, CellsThatHoldNoMatrixAre19) {
  for (const auto* steps : {L"/[1,1]", L"/[2,2]", L"/[2,1]/[1,1]", L"/[2,1]/[3,2]/[1,1]"}) {
    EXPECT_EQ(Resolve(steps).position, -1);
    EXPECT_NE(Error(), 0);
  }
  EXPECT_EQ(Resolve(L"/[1,1]").position, -1);
  EXPECT_EQ(Error(), 19);
  storage_.cells.SvrSetCellValue("text", Path(), 1, 1);
  EXPECT_EQ(Resolve(L"/[1,1]").position, -1);
  EXPECT_EQ(Error(), 19);
}

TEST_F(PathResolverTest, CellsOutsideTheMatrixAre9) {
  EXPECT_EQ(Resolve(L"/[4,1]").position, -1);
  EXPECT_EQ(Error(), 9);
  EXPECT_EQ(Resolve(L"/[1,3]").position, -1);
  EXPECT_EQ(Error(), 9);
}

TEST_F(PathResolverTest, APropertyMatrixThatIsMissingIsPositionZeroWithoutACode) {
  EXPECT_EQ(Resolve(L"/#").position, 0);
  EXPECT_EQ(Error(), 0);
  EXPECT_EQ(Resolve(L"/#").position, 0)
      << "position 0 is not remembered as a hit, and resolves alike";
  EXPECT_EQ(Resolve(L"/#/[1,1]").position, -1);
  EXPECT_EQ(Error(), 19) << "no step leads on from there";
}

TEST_F(PathResolverTest, APropertyMatrix) {
  std::string title = "Types";
  PutMatrix(storage_, Path(), kTypeTableRecord, 1, title);
  const Location at = Resolve(L"/#");
  EXPECT_EQ(TitleAt(at), "Types");
  EXPECT_TRUE(at.endsInProperties);
  EXPECT_TRUE(at.throughProperties);
  EXPECT_FALSE(Resolve().throughProperties);
}

TEST_F(PathResolverTest, SyntaxAndNumbers) {
  EXPECT_EQ(Resolve(L"/[0,1]").position, -1);
  EXPECT_EQ(Error(), 20);
  EXPECT_EQ(Resolve(L"/[1,0]").position, -1);
  EXPECT_EQ(Error(), 21);
  EXPECT_EQ(Resolve(L"/x[1,1]").position, -1);
  EXPECT_EQ(Error(), 10);
  EXPECT_EQ(storage_.resolver.ResolvePath(L"").position, -1);
  EXPECT_EQ(Error(), 10);
}

TEST_F(PathResolverTest, TheErrorCodeIsClearedFirst) {
  Resolve(L"/[1,1]");
  EXPECT_EQ(Error(), 19);
  Resolve();
  EXPECT_EQ(Error(), 0);
}

TEST_F(PathResolverTest, ADbaseTableIsMinusThreeAndHasNoSteps) {
  const std::wstring table = folder_.Name(L"t.dbf");
  test::WriteBytes(table, test::FromHex(kDbaseTable));
  EXPECT_EQ(storage_.resolver.ResolvePath(test::Quoted(table)).position, -3);
  EXPECT_EQ(Error(), 0);
  EXPECT_EQ(storage_.resolver.ResolvePath(test::Quoted(table) + L"/[1,1]").position, -1);
  EXPECT_EQ(Error(), 19);
  EXPECT_EQ(storage_.resolver.ResolvePath(test::Quoted(table) + L"/#").position, 0);
  EXPECT_EQ(Error(), 0);
}

TEST_F(PathResolverTest, AFileOfNeitherFormatIsPositionZeroWithItsFile) {
  const std::wstring text = folder_.Name(L"text");
  test::WriteBytes(text, "neither");
  const Location at = storage_.resolver.ResolvePath(test::Quoted(text));
  EXPECT_EQ(at.position, 0);
  EXPECT_EQ(Error(), 0);
  ASSERT_NE(at.file, nullptr);
  EXPECT_EQ(at.file->View(1, 7), "neither");
}

TEST_F(PathResolverTest, ARootPointerOutsideTheFileIsNoLocation) {
  for (const std::int32_t root : {0, -1, -3, INT32_MIN, INT32_MAX, 100000}) {
    Resolve().file->WriteInt32(4, root);
    storage_.ResetCaches(4);
    EXPECT_EQ(Resolve().position, 0) << root;
  }
}

TEST_F(PathResolverTest, ARepeatedPathIsNotWalkedAgain) {
  const Location at = Resolve(L"/[2,1]");
  at.file->WriteInt32(at.file->Int32At(52 + 12) + 6 + 4, 0);  // the root's first field is gone
  EXPECT_EQ(Resolve(L"/[2,1]").position, at.position);
  EXPECT_EQ(storage_.resolver.ResolvePath(Path(L"/[2,1]")).position, at.position);
}

TEST_F(PathResolverTest, AnotherPathInBetweenMakesItAfresh) {
  const Location at = Resolve(L"/[2,1]");
  Resolve();
  const std::int32_t chain = at.file->Int32At(52 + 12) + 6;
  const std::int32_t descriptor = at.file->Int32At(chain + 4);
  at.file->WriteInt32(at.file->Int32At(descriptor) + 8, 0);  // cell (2, 1) is emptied
  EXPECT_EQ(Resolve(L"/[2,1]").position, -1);
  EXPECT_EQ(Error(), 19);
}

TEST_F(PathResolverTest, AFailedResolutionLeavesTheRememberedPathAlone) {
  const Location at = Resolve(L"/[2,1]");
  Resolve(L"/[1,1]");
  at.file->WriteInt32(at.file->Int32At(52 + 12) + 6 + 4, 0);
  EXPECT_EQ(Resolve(L"/[2,1]").position, at.position);
}

TEST_F(PathResolverTest, TheSamePathInAnotherLetterCaseIsAHit) {
  const Location at = Resolve(L"/[2,1]");
  at.file->WriteInt32(at.file->Int32At(52 + 12) + 6 + 4, 0);
  EXPECT_EQ(storage_.resolver.ResolvePath(test::Quoted(folder_.Name(L"A")) + L"/[2,1]").position,
            at.position);
}

TEST_F(PathResolverTest, ANameThatDiffersInCaseOnlyAndIsAnotherFileIsNoHit) {
  if (test::Exists(folder_.Name(L"A"))) GTEST_SKIP() << "this file system tells no cases apart";
  Make(L"A");
  Resolve().file->WriteInt32(54, 68);
  storage_.resolver.ForgetLast();
  const Location small = Resolve();
  const Location capital = storage_.resolver.ResolvePath(test::Quoted(folder_.Name(L"A")));
  EXPECT_NE(small.number, capital.number);
}

TEST_F(PathResolverTest, AfterClosingEverythingTheRememberedPathOpensItsFileAgainUnderItsNumber) {
  Make(L"b");
  const std::wstring b = test::Quoted(folder_.Name(L"b")) + L"/[2,1]";
  const Location before = storage_.resolver.ResolvePath(b);
  EXPECT_EQ(before.number, 2);
  storage_.CloseAll();
  EXPECT_EQ(storage_.files.Find(2), nullptr);
  const Location after = storage_.resolver.ResolvePath(b);
  EXPECT_EQ(after.number, 2);
  EXPECT_EQ(after.position, before.position);
  EXPECT_EQ(TitleAt(after), "nested");
  EXPECT_EQ(Error(), 0);
}

TEST_F(PathResolverTest, TheFileOfTheRememberedPathIsNotCreatedWhenItIsGone) {
  Resolve();
  storage_.CloseAll();
  std::filesystem::remove(folder_.path() / "a");
  EXPECT_EQ(Resolve().position, -1);
  EXPECT_EQ(Error(), 53);
  EXPECT_FALSE(test::Exists(folder_.Name(L"a")));
  EXPECT_EQ(storage_.resolver.ResolvePath(test::Quoted(folder_.Name(L"A"))).position, -1);
  EXPECT_EQ(Error(), 53) << "nor in another letter case";
  EXPECT_FALSE(test::Exists(folder_.Name(L"A")));
}

TEST_F(PathResolverTest, AnotherFileInItsPlaceIsResolvedAnew) {
  Resolve(L"/[2,1]");
  storage_.CloseAll();
  {
    platform::File file(platform::MapFile(folder_.Name(L"new")));
    CreateContainer(file, "the new one");
  }
  std::filesystem::rename(folder_.path() / "new", folder_.path() / "a");
  EXPECT_EQ(Resolve(L"/[2,1]").position, -1) << "the new file has no such cell";
  EXPECT_EQ(TitleAt(Resolve()), "the new one");
}

TEST_F(PathResolverTest, AnEleventhFileClosesNumberOneAndTheNextCallOpensItAgain) {
  for (int i = 2; i <= 10; ++i) {
    const std::wstring name = folder_.Name(std::to_wstring(i));
    test::WriteBytes(name, "x");
    EXPECT_EQ(storage_.resolver.ResolvePath(test::Quoted(name)).number, i);
  }
  EXPECT_EQ(Resolve().number, 1);
  test::WriteBytes(folder_.Name(L"11"), "x");
  EXPECT_EQ(storage_.resolver.ResolvePath(test::Quoted(folder_.Name(L"11"))).position, -1);
  EXPECT_EQ(Error(), 9);
  EXPECT_EQ(storage_.files.Find(1), nullptr);
  const Location at = Resolve();
  EXPECT_EQ(Error(), 0);
  EXPECT_EQ(at.number, 1);
  EXPECT_EQ(TitleAt(at), "root");
}

TEST_F(PathResolverTest, DroppingAFileForgetsThePathIntoIt) {
  Resolve(L"/[2,1]");
  storage_.DropFile(folder_.Name(L"a"));
  std::filesystem::remove(folder_.path() / "a");
  {
    platform::File file(platform::MapFile(folder_.Name(L"a")));
    CreateContainer(file, "anew");
  }
  EXPECT_EQ(TitleAt(Resolve()), "anew");
}

TEST_F(PathResolverTest, FilterStepsWithoutFiltersAre5) {
  EXPECT_EQ(Resolve(L"/f(1)=2").position, -1);
  EXPECT_EQ(Error(), 5);
}

class FilteredPathTest : public PathResolverTest {
 protected:
  void SetUp() override {
    PathResolverTest::SetUp();
    storage_.ports.filters = &filters_;
  }
  MockFilters filters_;
};

TEST_F(FilteredPathTest, AFilterIsFoundByItsCanonicalPath) {
  EXPECT_CALL(filters_, GetFilterID(Path(L"/f(1)=2")))
      .WillRepeatedly(testing::Return(std::int16_t{4}));
  const std::wstring unquoted = folder_.Name(L"a") + L"/f(1)=2";
  storage_.resolver.ForgetLast();
  for (const std::wstring& spelling : {Path(L"/f(1)=2"), Path(L" /f(1)=2")}) {
    const Location at = storage_.resolver.ResolvePath(spelling);
    EXPECT_EQ(at.filter, 4);
    EXPECT_EQ(at.position, 52);
    EXPECT_EQ(Error(), 0);
  }
  (void)unquoted;
}

TEST_F(FilteredPathTest, AMissingFilterIsBuiltOnce) {
  testing::InSequence inOrder;
  EXPECT_CALL(filters_, GetFilterID(Path(L"/[2,1]/f(1)=2")))
      .WillOnce(testing::Return(std::int16_t{-1}));
  EXPECT_CALL(filters_, CreateFilter(Path(L"/[2,1]/f(1)=2"), std::wstring(L"f(1)=2")));
  EXPECT_CALL(filters_, GetFilterID(Path(L"/[2,1]/f(1)=2")))
      .WillOnce(testing::Return(std::int16_t{1}));
  EXPECT_EQ(Resolve(L"/[02,1]/f(1)=2").filter, 1) << "subscripts are plain decimals in the key";
}

TEST_F(FilteredPathTest, ABuildThatFailsKeepsItsCode) {
  EXPECT_CALL(filters_, GetFilterID).WillRepeatedly(testing::Return(std::int16_t{-1}));
  EXPECT_CALL(filters_, CreateFilter).WillOnce([this](const std::wstring&, const std::wstring&) {
    storage_.error.Set(13);
  });
  EXPECT_EQ(Resolve(L"/bad").position, -1);
  EXPECT_EQ(Error(), 13);
}

TEST_F(FilteredPathTest, ACellStepGoesThroughTheActiveFilterAndEndsIt) {
  EXPECT_CALL(filters_, GetFilterID).WillRepeatedly(testing::Return(std::int16_t{3}));
  EXPECT_CALL(filters_, GetFilterValue(3, 1)).WillRepeatedly(testing::Return(2));
  const Location at = Resolve(L"/f(1)=2/[1,1]");
  EXPECT_EQ(TitleAt(at), "nested");
  EXPECT_FALSE(at.IsView());
}

TEST_F(FilteredPathTest, ACellStepBeyondTheViewIs19) {
  EXPECT_CALL(filters_, GetFilterID).WillRepeatedly(testing::Return(std::int16_t{3}));
  EXPECT_CALL(filters_, GetFilterValue(3, 9)).WillRepeatedly(testing::Return(-1));
  EXPECT_EQ(Resolve(L"/f(1)=2/[9,1]").position, -1);
  EXPECT_EQ(Error(), 19);
}

TEST_F(FilteredPathTest, LetterCaseCountsWhereAFilterIsInThePath) {
  EXPECT_CALL(filters_, GetFilterID(Path(L"/f(1)=x")))
      .WillRepeatedly(testing::Return(std::int16_t{1}));
  EXPECT_CALL(filters_, GetFilterID(Path(L"/f(1)=X")))
      .WillRepeatedly(testing::Return(std::int16_t{2}));
  EXPECT_EQ(Resolve(L"/f(1)=x").filter, 1);
  EXPECT_EQ(Resolve(L"/f(1)=X").filter, 2);
}

TEST_F(FilteredPathTest, ARememberedViewWhoseSlotWasErasedIsBuiltAgain) {
  EXPECT_CALL(filters_, GetFilterID)
      .WillOnce(testing::Return(std::int16_t{2}))
      .WillOnce(testing::Return(std::int16_t{-1}))
      .WillOnce(testing::Return(std::int16_t{-1}))
      .WillRepeatedly(testing::Return(std::int16_t{5}));
  EXPECT_CALL(filters_, CreateFilter).Times(1);
  EXPECT_EQ(Resolve(L"/f(1)=2").filter, 2);
  storage_.CloseAll();
  EXPECT_EQ(Resolve(L"/f(1)=2").filter, 5);
}

TEST_F(PathResolverTest, CacheLevels) {
  // Level 3 empties the cache of field positions, level 2 leaves it alone.
  platform::File& file = *Resolve().file;
  const std::int32_t first = storage_.fields.GetFieldPos(52, 1, file);
  const std::int32_t slot = file.Int32At(52 + 12) + 6 + 4;
  file.WriteInt32(slot, 52);
  storage_.ResetCaches(1);
  storage_.ResetCaches(2);
  EXPECT_EQ(storage_.fields.GetFieldPos(52, 1, file), first);
  storage_.ResetCaches(3);
  EXPECT_EQ(storage_.fields.GetFieldPos(52, 1, file), 52);
  file.WriteInt32(slot, first);

  // Level 4 forgets the last path, level 3 does not.
  const Location at = Resolve(L"/[2,1]");
  file.WriteInt32(file.Int32At(first) + 8, 0);
  storage_.ResetCaches(3);
  EXPECT_EQ(Resolve(L"/[2,1]").position, at.position);
  storage_.ResetCaches(4);
  EXPECT_EQ(Resolve(L"/[2,1]").position, -1);
}

}  // namespace
}  // namespace orv::storage
