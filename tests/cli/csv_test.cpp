#include "cli/csv.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "cli/failure.h"

namespace orv::cli {
namespace {

using Records = std::vector<std::vector<std::string>>;

Records ReadAll(std::string_view text, char delimiter = ',') {
  CsvReader reader(text, delimiter);
  Records records;
  std::vector<std::string> cells;
  while (reader.Next(cells)) records.push_back(cells);
  return records;
}

TEST(CsvReaderTest, SplitsRecordsAndCells) {
  EXPECT_EQ(ReadAll("a,b\nc,d\n"), (Records{{"a", "b"}, {"c", "d"}}));
}

TEST(CsvReaderTest, EndsARecordWithAnyKindOfLineEndAndTheLastWithout) {
  EXPECT_EQ(ReadAll("a\r\nb\rc\nd"), (Records{{"a"}, {"b"}, {"c"}, {"d"}}));
}

TEST(CsvReaderTest, KeepsEmptyCellsAndLines) {
  EXPECT_EQ(ReadAll(",\n\n,,x,"), (Records{{"", ""}, {""}, {"", "", "x", ""}}));
  EXPECT_EQ(ReadAll(""), Records{});
}

TEST(CsvReaderTest, ReadsQuotedDelimitersQuotesAndLineEnds) {
  EXPECT_EQ(ReadAll("\"a,b\",\"say \"\"x\"\"\",\"two\r\nlines\"\n\"\",z"),
            (Records{{"a,b", "say \"x\"", "two\r\nlines"}, {"", "z"}}));
}

TEST(CsvReaderTest, TakesAQuoteInsideAnUnquotedCellAsItIs) {
  EXPECT_EQ(ReadAll("5\" pipe,b"), (Records{{"5\" pipe", "b"}}));
}

TEST(CsvReaderTest, KeepsWhatFollowsAClosingQuote) {
  EXPECT_EQ(ReadAll("\"a\"b,c"), (Records{{"ab", "c"}}));
}

TEST(CsvReaderTest, SplitsAtTheDelimiterGiven) {
  EXPECT_EQ(ReadAll("a,b\tc", '\t'), (Records{{"a,b", "c"}}));
  EXPECT_EQ(ReadAll("a;b", ';'), (Records{{"a", "b"}}));
}

TEST(CsvReaderTest, TellsOnWhichLineARecordBegins) {
  CsvReader reader("a\n\"x\ny\"\nb\n", ',');
  std::vector<std::string> cells;
  std::vector<std::size_t> lines;
  while (reader.Next(cells)) lines.push_back(reader.line());
  EXPECT_EQ(lines, (std::vector<std::size_t>{1, 2, 4}));
}

TEST(CsvReaderTest, RefusesAQuotedCellThatNeverEnds) {
  CsvReader reader("a\nb,\"c\nd", ',');
  std::vector<std::string> cells;
  ASSERT_TRUE(reader.Next(cells));
  try {
    reader.Next(cells);
    FAIL() << "it was read";
  } catch (const Failure& failure) {
    EXPECT_EQ(std::string(failure.what()), "line 2: a quoted cell begins and never ends");
  }
}

TEST(CsvCellTest, QuotesOnlyWhatNeedsIt) {
  EXPECT_EQ(CsvCell("plain text", ','), "plain text");
  EXPECT_EQ(CsvCell("a,b", ','), "\"a,b\"");
  EXPECT_EQ(CsvCell("a,b", '\t'), "a,b");
  EXPECT_EQ(CsvCell("a\"b", ','), "\"a\"\"b\"");
  EXPECT_EQ(CsvCell("a\nb", ','), "\"a\nb\"");
}

TEST(CsvTest, WhatIsWrittenIsReadAgain) {
  const auto letters =
      rc::gen::container<std::string>(rc::gen::elementOf(std::string("ab \",;\t\r\n\xD0\x90")));
  EXPECT_TRUE(rc::check("any cells come back", [&] {
    const auto tab = *rc::gen::arbitrary<bool>();
    const char delimiter = tab ? '\t' : ',';
    Records records = *rc::gen::container<Records>(
        rc::gen::nonEmpty(rc::gen::container<std::vector<std::string>>(letters)));
    std::string text;
    for (const auto& record : records) {
      for (std::size_t i = 0; i < record.size(); ++i) {
        if (i > 0) text += delimiter;
        text += CsvCell(record[i], delimiter);
      }
      text += '\n';
    }
    RC_ASSERT(ReadAll(text, delimiter) == records);
  }));
}

}  // namespace
}  // namespace orv::cli
