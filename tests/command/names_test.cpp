#include "command/names.h"

#include <gtest/gtest.h>

#include "language_fixture.h"
#include "platform/clock.h"

namespace orv::command::test {
namespace {

platform::LocalTime Noon() { return {2031, 11, 5, 12 * 3600 + 9 * 60 + 8.5}; }

class NamesTest : public LanguageTest {};

TEST_F(NamesTest, CountsOfTheContextMatrix) {
  EXPECT_EQ(Text("records"), "4");
  EXPECT_EQ(Text("fields"), "7");
  EXPECT_EQ(Type("records"), type::kInteger);
  EXPECT_EQ(Type("fields"), type::kInteger);
  EXPECT_EQ(Text("records*fields"), "28");
}

TEST_F(NamesTest, TheContextsOwnNumbers) {
  EXPECT_EQ(Text("rec"), "2");
  EXPECT_EQ(Text("fld"), "3");
  EXPECT_EQ(Type("rec"), type::kInteger);
  EXPECT_EQ(Text("10-rec*fld"), "4");
}

TEST_F(NamesTest, ANegativeRecordStaysWhole) {
  context_.record = -8;
  EXPECT_EQ(Text("rec"), "-8");
  EXPECT_EQ(Type("rec"), type::kInteger);
  EXPECT_EQ(Text("1-rec"), "9");
  EXPECT_EQ(Text("1+rec*2"), "-15");
}

TEST_F(NamesTest, LogicValuesStayAsTheyAreWritten) {
  EXPECT_EQ(Text("true"), "true");
  EXPECT_EQ(Text("FALSE"), "FALSE");
  EXPECT_EQ(Type("FaLse"), type::kLogic);
}

TEST_F(NamesTest, TheMatrixIsItsPathAsOneText) {
  EXPECT_EQ(Text("mtx"), "\"table.orv\"");
  EXPECT_EQ(Type("mtx"), type::kString);
  EXPECT_EQ(Text("\"<\"+mtx+\">\""), "<\"table.orv\">");
  const std::wstring nested = L"\"a+b.orv\"/[1,2]/x = \"y\"";
  services_.tables[nested] = {};
  EXPECT_EQ(evaluator_.Evaluate("mtx", Context(nested, 1, 1)).text, "\"a+b.orv\"/[1,2]/x = \"y\"");
}

TEST_F(NamesTest, Pi) {
  EXPECT_EQ(Text("pi"), "3.141592654");
  EXPECT_EQ(Type("PI"), type::kReal);
  EXPECT_EQ(Text("pi*2"), "6.283185");
}

TEST_F(NamesTest, TheTitleIsTheContextCell) {
  EXPECT_EQ(Text("title"), "3");
  EXPECT_EQ(Type("title"), type::kString);
  context_.record = 0;
  EXPECT_EQ(Text("title"), "name3");
}

TEST_F(NamesTest, DateAndTime) {
  platform::SetClock(Noon);
  EXPECT_EQ(Text("date"), "05.11.2031");
  EXPECT_EQ(Text("time"), "12:09:08");
  EXPECT_EQ(Type("date"), type::kString);
  EXPECT_EQ(Type("time"), type::kString);
  EXPECT_EQ(Text("date+\" \"+time"), "05.11.2031 12:09:08");
  platform::SetClock(nullptr);
}

TEST_F(NamesTest, LetterCaseIsIgnored) {
  EXPECT_EQ(Text("ReC"), "2");
  EXPECT_EQ(Text("RECORDS"), "4");
}

TEST_F(NamesTest, OtherTokensAndTextsAreNoNames) {
  EXPECT_EQ(Text("recs"), "recs");
  EXPECT_EQ(Text("\"rec\""), "rec");
  EXPECT_EQ(Text("rec1"), "rec1");
}

}  // namespace
}  // namespace orv::command::test
