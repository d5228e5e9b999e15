#include "cli/target.h"

#include <gtest/gtest.h>

#include "cli/failure.h"
#include "cli/words.h"

namespace orv::cli {
namespace {

TEST(TargetTest, PutsAPlainFileInQuotesAndTheStepsBehindIt) {
  EXPECT_EQ(Target("towns.orv", "").Path(), L"\"towns.orv\"");
  EXPECT_EQ(Target("/tmp/a b.orv", "/[3,2]/#").Path(), L"\"/tmp/a b.orv\"/[3,2]/#");
}

TEST(TargetTest, TakesAFullPathApart) {
  const Target target("\"towns.orv\"/[3,2]", "/[1,1]");
  EXPECT_EQ(target.Path(), L"\"towns.orv\"/[3,2]/[1,1]");
  EXPECT_EQ(target.FilePart(), L"\"towns.orv\"");
  EXPECT_EQ(target.steps(), L"/[3,2]/[1,1]");
  EXPECT_EQ(target.File(), std::filesystem::path("towns.orv"));
}

TEST(TargetTest, KeepsCharactersOutsideTheCodePage) {
  EXPECT_EQ(Target("\xE4\xB8\xAD.orv", "").Path(), L"\"\u4E2D.orv\"");
}

TEST(TargetTest, NamesOfFilesDoNotDependOnTheLocale) {
  const std::wstring name = L"\u0413\u043E\u0440\u043E\u0434\u0430 \u4E2D.orv";
  EXPECT_EQ(WideName(NativePath(name)), name);
  EXPECT_EQ(WideName(Target("\xD0\x93.orv", "").File()), L"\u0413.orv");
}

TEST(TargetTest, RefusesWhatIsNoPath) {
  EXPECT_THROW(Target("", ""), BadUsage);
  EXPECT_THROW(Target("\"\"", ""), BadUsage);
  EXPECT_THROW(Target("\"open", ""), BadUsage);
  EXPECT_THROW(Target("a\"b", ""), BadUsage);
  EXPECT_THROW(Target("a.orv", "[1,1]"), BadUsage);
  EXPECT_THROW(Target("a\xFF.orv", ""), BadUsage);
}

TEST(TargetTest, BuildsThePathsOfNestedMatrices) {
  EXPECT_EQ(CellPath(L"\"a\"", 3, 2), L"\"a\"/[3,2]");
  EXPECT_EQ(PropertyPath(L"\"a\"/[3,2]"), L"\"a\"/[3,2]/#");
}

TEST(RecordRangeTest, ReadsAllForms) {
  const auto range = [](const std::string& text) {
    const RecordRange read = ParseRecordRange(text, 100);
    return std::pair(read.first, read.last);
  };
  EXPECT_EQ(range(""), std::pair(1, 100));
  EXPECT_EQ(range("5"), std::pair(5, 5));
  EXPECT_EQ(range("2:9"), std::pair(2, 9));
  EXPECT_EQ(range("2:"), std::pair(2, 100));
  EXPECT_EQ(range(":9"), std::pair(1, 9));
  EXPECT_EQ(range("90:2147483647"), std::pair(90, 100));
}

TEST(RecordRangeTest, RefusesWhatIsNoRange) {
  for (const char* const text : {"x", "1:x", "0", "-1:5", "1:2:3", "99999999999", "1.5", ":-1"}) {
    EXPECT_THROW(ParseRecordRange(text, 100), BadUsage) << text;
  }
}

}  // namespace
}  // namespace orv::cli
