// The commands on container files, run as a user runs them.
#include <string>

#include <gtest/gtest.h>

#include "command_runner.h"

namespace orv::test {
namespace {

class CommandsTest : public CommandTest {
 protected:
  // Three towns; field 2 of the third one holds a matrix of districts.
  void MakeTowns() {
    Out({"new", "towns.orv", "--title", "Города", "--field", "Название", "--field", "Жители"});
    Out({"add-records", "towns.orv", "--count", "3"});
    Out({"set", "towns.orv", "1", "1", "Москва"});
    Out({"set", "towns.orv", "1", "Жители", "13010112"});
    Out({"set", "towns.orv", "2", "1", "Ёлкино, \"село\""});
    Out({"set", "towns.orv", "3", "1", "Пермь"});
    Out({"nest", "towns.orv", "3", "2", "--title", "Районы", "--field", "Имя"});
    Out({"add-records", "towns.orv", "/[3,2]"});
    Out({"set", "towns.orv", "/[3,2]", "1", "1", "Ленинский"});
  }
};

TEST_F(CommandsTest, ShowAlignsColumnsByCharacters) {
  MakeTowns();
  EXPECT_EQ(Out({"show", "towns.orv"}),
            "#  Название        Жители\n"
            "-  --------------  --------\n"
            "1  Москва          13010112\n"
            "2  Ёлкино, \"село\"\n"
            "3  Пермь           [Районы]\n");
}

TEST_F(CommandsTest, ShowTakesRecordsFieldsAndWidth) {
  MakeTowns();
  EXPECT_EQ(Out({"show", "towns.orv", "--records", "2:2", "--field", "Название", "--no-header"}),
            "2  Ёлкино, \"село\"\n");
  EXPECT_EQ(Out({"show", "towns.orv", "--records", "2:", "--field", "1", "--width", "7"}),
            "#  Назван…\n-  -------\n2  Ёлкино…\n3  Пермь\n");
}

TEST_F(CommandsTest, ShowWritesCsvTsvAndJson) {
  MakeTowns();
  EXPECT_EQ(Out({"show", "towns.orv", "--format", "csv"}),
            "Название,Жители\nМосква,13010112\n\"Ёлкино, \"\"село\"\"\",\nПермь,Районы\n");
  EXPECT_EQ(Out({"show", "towns.orv", "--format", "tsv", "--no-header"}),
            "Москва\t13010112\n\"Ёлкино, \"\"село\"\"\"\t\nПермь\tРайоны\n");
  EXPECT_EQ(Out({"show", "towns.orv", "--format", "json"}),
            "{\"title\": \"Города\",\n"
            " \"fields\": [\"Название\", \"Жители\"],\n"
            " \"records\": [\n"
            "  [\"Москва\", \"13010112\"],\n"
            "  [\"Ёлкино, \\\"село\\\"\", \"\"],\n"
            "  [\"Пермь\", {\"matrix\": \"Районы\"}]\n"
            " ]}\n");
}

TEST_F(CommandsTest, ShowWritesAnEmptyMatrix) {
  Out({"new", "e.orv"});
  EXPECT_EQ(Out({"show", "e.orv", "--format", "json"}),
            "{\"title\": \"\",\n \"fields\": [],\n \"records\": []}\n");
  EXPECT_EQ(Out({"show", "e.orv"}), "#\n-\n");
}

TEST_F(CommandsTest, NestedMatricesAreReachedByStepsAndByFullPaths) {
  MakeTowns();
  const std::string districts = "#  Имя\n-  ---------\n1  Ленинский\n";
  EXPECT_EQ(Out({"show", "towns.orv", "/[3,2]"}), districts);
  EXPECT_EQ(Out({"show", "\"towns.orv\"/[3,2]"}), districts);
  EXPECT_EQ(Out({"get", "towns.orv", "/[3,2]", "1", "Имя"}), "Ленинский\n");
  EXPECT_EQ(Out({"title", "towns.orv", "/[3,2]"}), "Районы\n");
}

TEST_F(CommandsTest, InfoDescribesTheTree) {
  MakeTowns();
  const std::string size = std::to_string(Bytes(L"towns.orv").size());
  EXPECT_EQ(Out({"info", "towns.orv"}),
            "File:  towns.orv\n"
            "Kind:  container\n"
            "Size:  " +
                size +
                " bytes\n"
                "\n"
                "/  \"Города\"  3 records, 2 fields\n"
                "     1  Название  free\n"
                "     2  Жители    free\n"
                "\n"
                "  /[3,2]  \"Районы\"  1 record, 1 field\n"
                "       1  Имя  free\n");
}

TEST_F(CommandsTest, InfoListsSoManyNestedMatricesAndCountsTheOthers) {
  Out({"new", "n.orv", "--title", "N", "--field", "a"});
  Out({"add-records", "n.orv", "--count", "4"});
  for (const char* const record : {"1", "2", "4"}) Out({"nest", "n.orv", record, "1"});
  const std::string text = Out({"info", "n.orv", "--nested", "1"});
  EXPECT_NE(text.find("  /[1,1]  0 records, 0 fields\n"), std::string::npos) << text;
  EXPECT_EQ(text.find("/[2,1]"), std::string::npos) << text;
  EXPECT_NE(text.find("and 2 more nested matrices\n"), std::string::npos) << text;
  const std::string flat = Out({"info", "n.orv", "--depth", "0"});
  EXPECT_EQ(flat.find("nested"), std::string::npos) << flat;
}

TEST_F(CommandsTest, SetWritesAnyTextAndTheFieldName) {
  MakeTowns();
  Out({"set", "towns.orv", "1", "1", "--", "-5"});
  EXPECT_EQ(Out({"get", "towns.orv", "1", "1"}), "-5\n");
  Out({"set", "towns.orv", "1", "1", ""});
  EXPECT_EQ(Out({"get", "towns.orv", "1", "1"}), "\n");
  Out({"set", "towns.orv", "1", "1", "[a,b]"});
  EXPECT_EQ(Out({"get", "towns.orv", "1", "1"}), "[a,b]\n");
  Out({"set", "towns.orv", "1", "1", "show"});
  EXPECT_EQ(Out({"get", "towns.orv", "1", "1"}), "show\n");
  Out({"set", "towns.orv", "0", "1", "Имя"});
  EXPECT_EQ(Out({"get", "towns.orv", "0", "1"}), "Имя\n");
}

TEST_F(CommandsTest, BytesOfAFileGoIntoACellAndComeBack) {
  MakeTowns();
  std::string bytes;
  for (int i = 0; i < 1000; ++i) bytes.push_back(static_cast<char>(i));
  Write(L"picture.bin", bytes);
  Out({"set", "towns.orv", "1", "2", "picture.bin", "--from-file"});
  EXPECT_EQ(Out({"get", "towns.orv", "1", "2", "--raw"}), bytes);
}

TEST_F(CommandsTest, AddFieldsInsertsAndAppends) {
  Out({"new", "f.orv", "--field", "A", "--field", "C"});
  Out({"add-fields", "f.orv", "--name", "B1", "--name", "[b,2]", "--at", "1"});
  Out({"add-fields", "f.orv", "--count", "2"});
  EXPECT_EQ(Out({"show", "f.orv", "--format", "csv"}), "B1,\"[b,2]\",A,C,,\n");
}

TEST_F(CommandsTest, AddFieldsRefusesThePlaceThatWouldEmptyAField) {
  Out({"new", "f.orv", "--field", "A", "--field", "B"});
  EXPECT_EQ(Err(2, {"add-fields", "f.orv", "--at", "2"}),
            "orv: adding at the last field would empty it; add at 3 to append\n");
  EXPECT_EQ(Err(2, {"add-fields", "f.orv", "--at", "9"}), "orv: a field can be added at 1 to 3\n");
  EXPECT_EQ(Out({"show", "f.orv", "--format", "csv"}), "A,B\n");
}

TEST_F(CommandsTest, AddRecordsInsertsInFront) {
  MakeTowns();
  Out({"add-records", "towns.orv", "--count", "2", "--at", "2"});
  EXPECT_EQ(Out({"show", "towns.orv", "--field", "1", "--no-header"}),
            "1  Москва\n2\n3\n4  Ёлкино, \"село\"\n5  Пермь\n");
}

TEST_F(CommandsTest, DeleteFieldTakesNumberOrName) {
  Out({"new", "f.orv", "--field", "A", "--field", "B", "--field", "C"});
  Out({"delete-field", "f.orv", "b"});
  Out({"delete-field", "f.orv", "1"});
  EXPECT_EQ(Out({"show", "f.orv", "--format", "csv"}), "C\n");
  EXPECT_EQ(
      Err(1, {"delete-field", "f.orv", "7"}),
      "orv: \"f.orv\": error 255: a number is out of range, or the path leads to no matrix\n");
}

TEST_F(CommandsTest, TitleIsShownAndChanged) {
  Out({"new", "t.orv", "--title", "Old"});
  EXPECT_EQ(Out({"title", "t.orv"}), "Old\n");
  Out({"title", "t.orv", "--set", "Новый"});
  EXPECT_EQ(Out({"title", "t.orv"}), "Новый\n");
  Out({"title", "t.orv", "--set", ""});
  EXPECT_EQ(Out({"title", "t.orv"}), "\n");
}

TEST_F(CommandsTest, FileNamesMayHoldAnyCharacters) {
  Write(L"\u0413\u043E\u0440\u043E\u0434\u0430 \u4E2D.csv", "x\n1\n");
  Out({"import", "Города 中.csv", "Таблица 中.orv"});
  EXPECT_EQ(Out({"title", "Таблица 中.orv"}), "Города ?\n");
  Out({"compact", "Таблица 中.orv", "--in-place"});
  Out({"export", "Таблица 中.orv", "Текст.txt", "--text"});
  EXPECT_NE(Out({"info", "Таблица 中.orv"}).find("File:  Таблица 中.orv\n"), std::string::npos);
}

TEST_F(CommandsTest, NestTakesTheCellsTextAsTitle) {
  MakeTowns();
  Out({"nest", "towns.orv", "1", "1"});
  EXPECT_EQ(Out({"title", "towns.orv", "/[1,1]"}), "Москва\n");
  EXPECT_EQ(Err(1, {"nest", "towns.orv", "1", "1"}), "orv: the cell holds a matrix already\n");
}

TEST_F(CommandsTest, NewAsksBeforeItOverwritesAndForceDoesNot) {
  MakeTowns();
  const std::string before = Bytes(L"towns.orv");
  const Outcome outcome = Run({"new", "towns.orv"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("Файл уже существует!\nЗаписать вместо него?"), std::string::npos);
  EXPECT_NE(outcome.err.find("orv: \"towns.orv\": error 51: the file exists and was not "
                             "overwritten\n"),
            std::string::npos);
  EXPECT_EQ(Bytes(L"towns.orv"), before);
  Out({"new", "towns.orv", "--force"});
  EXPECT_EQ(Out({"show", "towns.orv", "--format", "csv"}), "\n");
}

TEST_F(CommandsTest, FailuresNameTheErrorCodeAndItsMeaning) {
  MakeTowns();
  EXPECT_EQ(Err(1, {"show", "none.orv"}),
            "orv: \"none.orv\": error 53: the file does not exist or is empty\n");
  EXPECT_FALSE(HasFile(L"none.orv"));
  EXPECT_EQ(Err(1, {"get", "towns.orv", "/[1,1]", "1", "1"}),
            "orv: \"towns.orv\"/[1,1]: error 19: a step of the path leads to a cell that holds no "
            "matrix\n");
  EXPECT_EQ(Err(1, {"show", "towns.orv", "/[1"}),
            "orv: \"towns.orv\"/[1: error 10: the path is not well formed\n");
  EXPECT_NE(Err(1, {"get", "towns.orv", "4", "1"}).find("error 9:"), std::string::npos);
  EXPECT_NE(Err(1, {"set", "towns.orv", "4", "1", "x"}).find("error 9:"), std::string::npos);
}

TEST_F(CommandsTest, AFileOfNeitherKindIsAFailure) {
  Write(L"text.txt", "plain text");
  EXPECT_EQ(Err(1, {"info", "text.txt"}),
            "orv: \"text.txt\": neither a container file nor a dBASE III table\n");
  EXPECT_EQ(Err(1, {"show", "text.txt"}), "orv: \"text.txt\": there is no matrix at this path\n");
}

TEST_F(CommandsTest, BadUsageIsStatusTwo) {
  MakeTowns();
  EXPECT_EQ(Err(2, {}), "orv: a command is missing; --help tells more\n");
  EXPECT_EQ(Err(2, {"bogus"}), "orv: there is no command bogus; --help tells more\n");
  EXPECT_EQ(Err(2, {"get", "towns.orv", "1"}), "orv: the word FIELD is missing\n");
  EXPECT_EQ(Err(2, {"get", "towns.orv", "x", "1"}),
            "orv: RECORD must be a whole number, not \"x\"\n");
  EXPECT_EQ(Err(2, {"get", "towns.orv", "1", "Nowhere"}),
            "orv: \"towns.orv\" has no field named \"Nowhere\"\n");
  EXPECT_EQ(Err(2, {"show", "towns.orv", "no-steps"}),
            "orv: steps begin with \"/\": \"no-steps\"\n");
  Err(2, {"show", "towns.orv", "--format", "xml"});
  Err(2, {"show", "towns.orv", "--nonsense"});
  Err(2, {"show", "towns.orv", "--records", "x"});
  Err(2, {"show"});
}

TEST_F(CommandsTest, EveryCommandHasHelp) {
  const std::string all = Out({"--help"});
  for (const char* const name :
       {"new",        "info",        "title",        "show",   "filter", "get",     "set",
        "add-fields", "add-records", "delete-field", "nest",   "import", "find",    "exec",
        "props",      "style",       "analyse",      "export", "sort",   "compact", "host"}) {
    EXPECT_NE(all.find("\n  " + std::string(name) + " "), std::string::npos) << name;
    const std::string help = Out({name, "--help"});
    EXPECT_NE(help.find("Usage: orv " + std::string(name)), std::string::npos) << help;
    EXPECT_NE(help.find("--help"), std::string::npos) << help;
  }
}

TEST_F(CommandsTest, ExecRunsACommandInTheContextOfACell) {
  MakeTowns();
  EXPECT_EQ(Out({"exec", "towns.orv", "=1+2*3;"}), "7\n");
  EXPECT_EQ(Out({"exec", "towns.orv", "=cell(3,1);"}), "Пермь\n");
  EXPECT_EQ(Out({"exec", "towns.orv", "/[3,2]", "=records;"}), "1\n");
  const Outcome division = Run({"exec", "towns.orv", "=1/0;"});
  EXPECT_EQ(division.status, 1);
  EXPECT_EQ(division.out, "[Division by zero]\n");
  EXPECT_EQ(division.err, "orv: \"towns.orv\": error 11: division by zero\n");
}

TEST_F(CommandsTest, PropsAreSetListedAndRead) {
  MakeTowns();
  EXPECT_EQ(Out({"props", "towns.orv"}), "");
  Out({"props", "towns.orv", "--record", "1", "--field", "Жители", "--set", "Comp==cell(1,1);",
       "--set", "unit=people"});
  EXPECT_EQ(Out({"props", "towns.orv"}), "type 2\n  comp = =cell(1,1);\n  unit = people\n");
  EXPECT_EQ(Out({"props", "towns.orv", "--record", "1", "--field", "2"}),
            "comp = =cell(1,1);\nunit = people\n");
  EXPECT_EQ(Out({"props", "towns.orv", "--record", "1", "--field", "2", "--get", "UNIT"}),
            "people\n");
  EXPECT_EQ(Out({"props", "towns.orv", "--record", "2", "--field", "2"}), "");
  EXPECT_NE(Err(1, {"props", "towns.orv", "--record", "2", "--get", "unit"}).find("error 4:"),
            std::string::npos);
  EXPECT_EQ(Out({"get", "towns.orv", "1", "2"}), "13010112\n");
  EXPECT_EQ(Out({"get", "towns.orv", "1", "2", "--formula"}), "Москва\n");
  Err(2, {"props", "towns.orv", "--record", "1", "--set", "novalue"});
  Err(2, {"props", "towns.orv", "--set", "a=b"});
}

TEST_F(CommandsTest, AnalyseTellsWhatADictionaryWouldSave) {
  Out({"new", "a.orv", "--field", "same", "--field", "none"});
  Out({"add-records", "a.orv", "--count", "100"});
  std::string lines;
  for (int i = 0; i < 100; ++i) lines += "a rather long text\n";
  Write(L"same.csv", lines);
  Out({"new", "b.orv"});
  Out({"import", "same.csv", "b.orv", "--no-header"});
  const std::string text = Out({"analyse", "b.orv"});
  // 100 cells of 4 + 2 + 1 + 18 + 4 bytes; as a dictionary 100 index bytes, the text and its count.
  EXPECT_NE(text.find("2,900"), std::string::npos) << text;
  EXPECT_NE(text.find("142"), std::string::npos) << text;
  EXPECT_NE(text.find("96 %  free"), std::string::npos) << text;
}

TEST_F(CommandsTest, FindPrintsTheFirstMatchOrAll) {
  Write(L"w.csv", "a,b\nred,x\nRed,y\ndark red,x\nblue,red\n");
  Out({"import", "w.csv", "w.orv"});
  EXPECT_EQ(Out({"find", "w.orv", "Red"}), "2\n");
  EXPECT_EQ(Out({"find", "w.orv", "red", "--field", "a", "--all"}), "1\n");
  EXPECT_EQ(Out({"find", "w.orv", "RED", "--field", "a", "--ignore-case", "--all"}), "1\n2\n");
  EXPECT_EQ(Out({"find", "w.orv", "red", "--field", "a", "--contains", "--all"}), "1\n3\n");
  EXPECT_EQ(Out({"find", "w.orv", "red", "--contains", "--from", "2", "--all"}), "3\n4\n");
  EXPECT_EQ(Err(1, {"find", "w.orv", "green"}), "orv: not found\n");
  EXPECT_EQ(Out({"find", "w.orv", "/f(2)=x", "dark", "--field", "1", "--contains"}), "2\n");
}

TEST_F(CommandsTest, FilterShowsAndCountsAView) {
  Write(L"w.csv", "a,b\n1,x\n2,y\n3,x\n");
  Out({"import", "w.csv", "w.orv"});
  const Outcome view = Run({"filter", "w.orv", "f(2)=x"});
  EXPECT_EQ(view.status, 0);
  EXPECT_EQ(view.out, "#  a  b\n-  -  -\n1  1  x\n2  3  x\n");
  EXPECT_EQ(view.err, "2 of 3 records\n");
  EXPECT_EQ(Out({"filter", "w.orv", "cell(rec,1)>\"1\"", "--count"}), "2\n");
  EXPECT_EQ(Out({"filter", "w.orv", "/f(2)=x", "cell(rec,1)=\"3\"", "--count"}), "1\n");
  EXPECT_NE(Err(1, {"filter", "w.orv", "f()=1"}).find("error 5:"), std::string::npos);
}

TEST_F(CommandsTest, FilteredPathsAreShownReadAndWritten) {
  Write(L"w.csv", "a,b\n1,x\n2,y\n3,x\n");
  Out({"import", "w.csv", "w.orv"});
  EXPECT_EQ(Out({"show", "w.orv", "/f(2)=x", "--format", "csv"}), "a,b\n1,x\n3,x\n");
  EXPECT_EQ(Out({"get", "w.orv", "/f(2)=x", "2", "1"}), "3\n");
  Out({"set", "w.orv", "/f(2)=x", "2", "1", "new"});
  EXPECT_EQ(Out({"get", "w.orv", "3", "1"}), "new\n");
}

TEST_F(CommandsTest, SortChecksAndLeavesTheFileAlone) {
  MakeTowns();
  const std::string before = Bytes(L"towns.orv");
  EXPECT_EQ(Out({"sort", "towns.orv", "1"}), "3 records sorted in memory; the file is unchanged\n");
  EXPECT_EQ(Bytes(L"towns.orv"), before);
  const Outcome refused = Run({"sort", "towns.orv", "/[3,2]", "1"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("Недостаточно данных для сортировки!"), std::string::npos);
  EXPECT_NE(refused.err.find("orv: the sort was refused\n"), std::string::npos);
}

}  // namespace
}  // namespace orv::test
