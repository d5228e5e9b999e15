// Importing delimited text and dBASE III tables, and working on the latter in place.
#include <string>

#include <gtest/gtest.h>

#include "command_runner.h"

namespace orv::test {
namespace {

using ImportTest = CommandTest;

constexpr const char* kTowns866 = "\x8C\xAE\xE1\xAA\xA2\xA0";  // Москва

TEST_F(ImportTest, TakesFieldNamesFromTheFirstLine) {
  Write(L"towns.csv", "Name,Note\r\nМосква,\"a, \"\"b\"\"\"\r\nПермь,\"two\nlines\"\r\n");
  EXPECT_EQ(Out({"import", "towns.csv", "towns.orv"}), "2 records, 2 fields\n");
  EXPECT_EQ(Out({"title", "towns.orv"}), "towns\n");
  EXPECT_EQ(Out({"show", "towns.orv", "--format", "csv"}),
            "Name,Note\nМосква,\"a, \"\"b\"\"\"\nПермь,\"two\nlines\"\n");
}

TEST_F(ImportTest, WhatShowWritesIsImportedAgain) {
  Write(L"a.tsv", "x\ty\n\"tab\there\"\t\"\"\"quoted\"\"\"\n\t\nplain\tend\n");
  Out({"import", "a.tsv", "a.orv"});
  EXPECT_EQ(Out({"show", "a.orv", "--format", "tsv"}), Bytes(L"a.tsv"));
}

TEST_F(ImportTest, ReadsTheEncodingsAndAByteOrderMark) {
  Write(L"u.csv", "\xEF\xBB\xBFName\nМосква\n");
  Write(L"w.csv", "Name\n\xCC\xEE\xF1\xEA\xE2\xE0\n");
  Write(L"d.csv", "Name\n" + std::string(kTowns866) + "\n");
  const std::string expected = "Name\nМосква\n";
  Out({"import", "u.csv", "u.orv"});
  EXPECT_EQ(Out({"show", "u.orv", "--format", "csv"}), expected);
  Out({"import", "w.csv", "w.orv", "--encoding", "cp1251"});
  EXPECT_EQ(Out({"show", "w.orv", "--format", "csv"}), expected);
  Out({"import", "d.csv", "d.orv", "--encoding", "CP866"});
  EXPECT_EQ(Out({"show", "d.orv", "--format", "csv"}), expected);
}

TEST_F(ImportTest, RefusesInvalidUtf8BeforeItWritesAnything) {
  Write(L"bad.csv", "Name\nok\n\xFF\n");
  EXPECT_EQ(Err(1, {"import", "bad.csv", "bad.orv"}),
            "orv: bad.csv: line 3 is not valid UTF-8; --encoding names another encoding\n");
  EXPECT_FALSE(HasFile(L"bad.orv"));
  Err(2, {"import", "bad.csv", "bad.orv", "--encoding", "latin1"});
}

TEST_F(ImportTest, SaysHowManyCharactersWereLost) {
  Write(L"a.csv", "Name\nÅland €\n中\n");
  const Outcome outcome = Run({"import", "a.csv", "a.orv"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "orv: 2 characters not in code page 1251 became \"?\"\n");
  EXPECT_EQ(Out({"show", "a.orv", "--format", "csv"}), "Name\n?land €\n?\n");
}

TEST_F(ImportTest, TakesDelimitersHeadersAndStandardInput) {
  EXPECT_EQ(Out({"import", "-", "a.orv", "--delimiter", ";", "--no-header", "--title", "T"},
                "1;2\n3\n4;5;6\n"),
            "3 records, 3 fields\n");
  EXPECT_EQ(Out({"show", "a.orv", "--format", "csv"}), ",,\n1,2,\n3,,\n4,5,6\n");
  EXPECT_EQ(Out({"title", "a.orv"}), "T\n");
  Err(2, {"import", "-", "b.orv", "--delimiter", "ab"});
}

TEST_F(ImportTest, SkipsBlankLinesUnlessARecordIsASingleField) {
  Write(L"two.csv", "a,b\n\n1,2\n\n\n");
  EXPECT_EQ(Out({"import", "two.csv", "two.orv"}), "1 record, 2 fields\n");
  Write(L"one.csv", "a\n\n1\n");
  EXPECT_EQ(Out({"import", "one.csv", "one.orv"}), "2 records, 1 field\n");
}

TEST_F(ImportTest, GoesIntoAnEmptyMatrixAndIntoAnEmptyCell) {
  Write(L"d.csv", "District\nНовый\n");
  Out({"new", "t.orv", "--field", "Name", "--field", "Districts"});
  Out({"add-records", "t.orv", "--count", "2"});
  Out({"import", "d.csv", "t.orv", "/[2,2]", "--title", "Sub"});
  EXPECT_EQ(Out({"show", "t.orv", "--format", "csv"}), "Name,Districts\n,\n,Sub\n");
  EXPECT_EQ(Out({"show", "t.orv", "/[2,2]", "--format", "csv"}), "District\nНовый\n");
  EXPECT_NE(Err(1, {"import", "d.csv", "t.orv", "/[2,2]"}).find("is not empty"), std::string::npos);
  Out({"new", "e.orv", "--title", "Kept"});
  Out({"import", "d.csv", "e.orv"});
  EXPECT_EQ(Out({"title", "e.orv"}), "Kept\n");
  EXPECT_EQ(Out({"get", "e.orv", "1", "1"}), "Новый\n");
}

TEST_F(ImportTest, AppendsAndReplacesOnlyWhenAsked) {
  Write(L"a.csv", "x\n1\n");
  Write(L"b.csv", "x,y\n2,3\n");
  Out({"import", "a.csv", "t.orv"});
  Err(1, {"import", "b.csv", "t.orv"});
  Out({"import", "b.csv", "t.orv", "--append"});
  EXPECT_EQ(Out({"show", "t.orv", "--format", "csv"}), "x,y\n1,\n2,3\n");
  Out({"import", "b.csv", "t.orv", "--force"});
  EXPECT_EQ(Out({"show", "t.orv", "--format", "csv"}), "x,y\n2,3\n");
}

TEST_F(ImportTest, RefusesAMissingSourceAndImportingAFileIntoItself) {
  EXPECT_EQ(Err(1, {"import", "none.csv", "t.orv"}), "orv: none.csv: cannot be read\n");
  EXPECT_EQ(Err(1, {"import", "none.dbf", "t.orv"}),
            "orv: none.dbf: error 53: the file does not exist or is empty\n");
  EXPECT_FALSE(HasFile(L"none.dbf"));
  EXPECT_FALSE(HasFile(L"t.orv"));
  Write(L"same.csv", "a\n");
  Err(2, {"import", "same.csv", "same.csv", "--force"});
  EXPECT_EQ(Bytes(L"same.csv"), "a\n");
}

TEST_F(ImportTest, CopiesADbaseTableWithItsRussianText) {
  Write(L"t.dbf", DbaseTable({{"NAME", 10}, {"N", 3}}, {std::string(kTowns866) + "     7", "x"}));
  EXPECT_EQ(Out({"import", "t.dbf", "t.orv"}), "2 records, 2 fields\n");
  EXPECT_EQ(Out({"show", "t.orv", "--format", "csv"}), "NAME,N\nМосква,7\nx,\n");
  EXPECT_EQ(Out({"info", "t.orv"}).find("dBASE"), std::string::npos);
}

TEST_F(ImportTest, ADbaseTableIsShownAndOverwrittenInPlace) {
  Write(L"t.dbf", DbaseTable({{"NAME", 10}, {"N", 3}}, {std::string(kTowns866) + "     7", "x"}));
  const std::string before = Bytes(L"t.dbf");
  EXPECT_EQ(Out({"show", "t.dbf"}), "#  NAME    N\n-  ------  -\n1  Москва  7\n2  x\n");
  const std::string info = Out({"info", "t.dbf"});
  EXPECT_NE(info.find("Kind:  dBASE III table\n"), std::string::npos) << info;
  EXPECT_NE(info.find("     1  NAME  width 10\n     2  N     width 3\n"), std::string::npos)
      << info;
  Out({"set", "t.dbf", "2", "NAME", "Москва-река"});
  EXPECT_EQ(Out({"get", "t.dbf", "2", "1"}), "Москва-рек\n");
  // The text stands in the file in code page 866, and nothing else has changed.
  std::string expected = before;
  const std::size_t cell = 32 + 2 * 32 + 1 + 14 + 1;
  expected.replace(cell, 10, std::string(kTowns866) + "-\xE0\xA5\xAA");
  EXPECT_EQ(Bytes(L"t.dbf"), expected);
}

TEST_F(ImportTest, StructureOfADbaseTableCannotBeChanged) {
  Write(L"t.dbf", DbaseTable({{"NAME", 10}}, {"x"}));
  const std::string before = Bytes(L"t.dbf");
  EXPECT_NE(Err(1, {"title", "t.dbf", "--set", "T"}).find("error 70:"), std::string::npos);
  EXPECT_NE(Err(1, {"add-fields", "t.dbf"}).find("error 70:"), std::string::npos);
  EXPECT_NE(Err(1, {"add-records", "t.dbf"}).find("error 70:"), std::string::npos);
  EXPECT_NE(Err(1, {"find", "t.dbf", "x"}).find("cannot be searched"), std::string::npos);
  EXPECT_NE(Err(1, {"analyse", "t.dbf"}).find("no storage styles"), std::string::npos);
  EXPECT_EQ(Bytes(L"t.dbf"), before);
}

TEST_F(ImportTest, ManyRecordsKeepTheirOrder) {
  std::string text = "n,square\n";
  for (int i = 0; i < 5000; ++i) text += std::to_string(i) + "," + std::to_string(i * i) + "\n";
  Write(L"many.csv", text);
  Out({"import", "many.csv", "many.orv"});
  EXPECT_EQ(Out({"show", "many.orv", "--format", "csv"}), text);
}

}  // namespace
}  // namespace orv::test
