// check, dump and rescue: what they print, and their exit statuses.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "command_runner.h"
#include "support/container_bytes.h"

namespace orv::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class InspectionCommandsTest : public CommandTest {
 protected:
  void SetUp() override {
    Out({"new", "t.orv", "--title", "Города", "--field", "Name", "--field", "Note"});
    Out({"add-records", "t.orv", "--count", "20"});
    Out({"set", "t.orv", "1", "1", "Москва"});
    Out({"set", "t.orv", "2", "1", std::string(100, 'x')});
    Out({"nest", "t.orv", "3", "2", "--title", "Nested", "--field", "x"});
    Out({"props", "t.orv", "--record", "-2", "--field", "1", "--set", "unit=town"});
  }
  /// Writes d.orv, where the pointer to the cell of record 1, field 1 leads outside the file.
  void Damage() {
    ContainerBytes file(Bytes(L"t.orv"));
    file.PutInt32(file.Int32(file.Descriptor(file.Root(), 1)) + 4, 99999);
    Write(L"d.orv", file.bytes());
  }
};

TEST_F(InspectionCommandsTest, CheckSumsUpACleanFile) {
  EXPECT_THAT(Out({"check", "t.orv"}),
              StartsWith("clean: 4 matrices, 8 fields, 22 records, 7 cells; "));
  EXPECT_THAT(Out({"check", "t.orv"}), HasSubstr(" dead bytes ("));
}

TEST_F(InspectionCommandsTest, CheckNamesDamageAndReturnsThree) {
  Damage();
  const Outcome outcome = Run({"check", "d.orv"});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out, StartsWith("/, field 1, record 1, position "));
  EXPECT_THAT(outcome.out,
              HasSubstr(": pointer outside the file: the pointer to the cell is 99999, "
                        "the file has positions 1 to "));
  EXPECT_THAT(outcome.out, HasSubstr("; still readable: the other cells\n1 finding: "));
}

TEST_F(InspectionCommandsTest, CheckChangesNothing) {
  Damage();
  const std::string before = Bytes(L"d.orv");
  Run({"check", "d.orv"});
  Run({"dump", "d.orv"});
  Run({"rescue", "d.orv", "new.orv"});
  EXPECT_EQ(Bytes(L"d.orv"), before);
}

TEST_F(InspectionCommandsTest, CheckPrintsOneJsonObject) {
  Damage();
  const auto clean = nlohmann::json::parse(Out({"check", "t.orv", "--json"}));
  EXPECT_EQ(clean["file"], "t.orv");
  EXPECT_EQ(clean["kind"], "container");
  EXPECT_EQ(clean["clean"], true);
  EXPECT_TRUE(clean["findings"].empty());
  EXPECT_EQ(clean["bytes"], Bytes(L"t.orv").size());
  EXPECT_EQ(clean["liveBytes"].get<int>() + clean["deadBytes"].get<int>(), clean["bytes"]);

  const Outcome outcome = Run({"check", "d.orv", "--json"});
  EXPECT_EQ(outcome.status, 3);
  const auto damaged = nlohmann::json::parse(outcome.out);
  EXPECT_EQ(damaged["clean"], false);
  ASSERT_EQ(damaged["findings"].size(), 1U);
  const auto& finding = damaged["findings"][0];
  EXPECT_EQ(finding["damage"], "outside");
  EXPECT_EQ(finding["matrix"], "/");
  EXPECT_EQ(finding["field"], 1);
  EXPECT_EQ(finding["record"], 1);
  EXPECT_GT(finding["position"], 52);
  EXPECT_THAT(finding["what"].get<std::string>(), HasSubstr("99999"));
  EXPECT_EQ(finding["readable"], "the other cells");
}

TEST_F(InspectionCommandsTest, CheckTakesDbaseTables) {
  const std::string table = DbaseTable({{"NAME", 10}}, {"one", "two", "three"});
  Write(L"t.dbf", table);
  EXPECT_THAT(Out({"check", "t.dbf"}),
              StartsWith("clean: 1 matrix, 1 field, 3 records, 3 cells; "));
  Write(L"t.dbf", table.substr(0, table.size() - 15));
  const Outcome outcome = Run({"check", "t.dbf", "--json"});
  EXPECT_EQ(outcome.status, 3);
  const auto json = nlohmann::json::parse(outcome.out);
  EXPECT_EQ(json["kind"], "dbase");
  EXPECT_EQ(json["findings"][0]["damage"], "table-records");
  EXPECT_TRUE(json["findings"][0]["matrix"].is_null());
}

TEST_F(InspectionCommandsTest, FilesThatAreNoneOfOursFail) {
  for (const auto* command : {"check", "dump"}) {
    EXPECT_THAT(Err(1, {command, "none.orv"}), HasSubstr("error 53"));
    EXPECT_FALSE(HasFile(L"none.orv"));
  }
  Write(L"x.txt", "plain text");
  EXPECT_EQ(Err(1, {"check", "x.txt"}),
            "orv: \"x.txt\": neither a container file nor a dBASE III table\n");
  EXPECT_EQ(Err(1, {"dump", "x.txt"}), "orv: \"x.txt\": no container file\n");
  EXPECT_EQ(Err(1, {"rescue", "x.txt", "new.orv"}), "orv: \"x.txt\": no container file\n");
  EXPECT_FALSE(HasFile(L"new.orv"));
  Err(2, {"check"});
}

TEST_F(InspectionCommandsTest, DumpShowsStructuresInTheFormatsTerms) {
  const std::string dump = Out({"dump", "t.orv"});
  EXPECT_THAT(dump, StartsWith("file header at 1, 51 bytes\n"));
  EXPECT_THAT(dump, HasSubstr("\nmatrix / at 52, 16 bytes\n      +0  cell code        -1 (type 1, "
                              "matrix)\n      +2  title            68\n"));
  EXPECT_THAT(dump, HasSubstr("      +4  text             \"Города\"\n"));
  EXPECT_THAT(dump, HasSubstr("\ndescriptor of /, field 2 at "));
  EXPECT_THAT(dump, HasSubstr("\nmatrix /[3,2] at "));
  EXPECT_THAT(dump, HasSubstr("\nmatrix /#/[1,3] at "));
}

TEST_F(InspectionCommandsTest, DumpCutsLongArraysAndTextsUnlessAllIsAskedFor) {
  const std::string cut = Out({"dump", "t.orv"});
  EXPECT_THAT(cut, HasSubstr("  entry 16         0\n"));
  EXPECT_THAT(cut, HasSubstr("  ...              and 4 more\n"));
  EXPECT_THAT(cut, HasSubstr(std::string(60, 'x') + "\" and 40 more bytes\n"));
  const std::string all = Out({"dump", "t.orv", "--all"});
  EXPECT_THAT(all, HasSubstr("  entry 20         0\n"));
  EXPECT_THAT(all, HasSubstr("\"" + std::string(100, 'x') + "\"\n"));
}

TEST_F(InspectionCommandsTest, DumpTakesAPath) {
  const std::string nested = Out({"dump", "t.orv", "/[3,2]"});
  EXPECT_THAT(nested, StartsWith("matrix /[3,2] at "));
  EXPECT_EQ(nested.find("Города"), std::string::npos);
  EXPECT_THAT(Out({"dump", "t.orv", "/#/[1,3]"}), StartsWith("matrix /#/[1,3] at "));
  EXPECT_THAT(Out({"dump", "t.orv", "/"}), StartsWith("matrix / at 52"));
  Err(1, {"dump", "t.orv", "/[1,1]"});
  Err(1, {"dump", "t.orv", "/[999,1]"});
  Err(1, {"dump", "t.orv", "/f(1)=x"});
  Err(1, {"dump", "t.orv", "/[1"});
}

TEST_F(InspectionCommandsTest, DumpMarksDamage) {
  Damage();
  EXPECT_THAT(Out({"dump", "d.orv"}), HasSubstr("\n! position "));
}

TEST_F(InspectionCommandsTest, RescueOfASoundFileCopiesEverything) {
  EXPECT_EQ(Out({"rescue", "t.orv", "new.orv"}),
            "everything was copied: 4 matrices, 8 fields, 22 records, 7 cells\n");
  EXPECT_EQ(Out({"show", "new.orv", "--format", "csv"}), Out({"show", "t.orv", "--format", "csv"}));
  EXPECT_EQ(Out({"props", "new.orv"}), Out({"props", "t.orv"}));
  EXPECT_THAT(Out({"check", "new.orv"}), StartsWith("clean: "));
}

TEST_F(InspectionCommandsTest, RescueTellsWhatIsLostAndReturnsThree) {
  Damage();
  const Outcome outcome = Run({"rescue", "d.orv", "new.orv"});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.out,
            "lost: /, field 1, record 1, the cell's pointer leads to 99999\n"
            "not everything could be copied: 4 matrices, 8 fields, 22 records, 6 cells\n");
  EXPECT_THAT(Out({"check", "new.orv"}), StartsWith("clean: "));
  EXPECT_EQ(Out({"get", "new.orv", "2", "1"}), std::string(100, 'x') + "\n");
}

TEST_F(InspectionCommandsTest, RescueOverwritesOnlyWhenForced) {
  Write(L"new.orv", "precious");
  EXPECT_THAT(Err(1, {"rescue", "t.orv", "new.orv"}), HasSubstr("error 51"));
  EXPECT_EQ(Bytes(L"new.orv"), "precious");
  Out({"rescue", "t.orv", "new.orv", "--force"});
  EXPECT_EQ(Out({"title", "new.orv"}), "Города\n");
  Err(2, {"rescue", "t.orv", "t.orv", "--force"});
  Err(2, {"rescue", "t.orv"});
  Out({"check", "t.orv"});
}

TEST_F(InspectionCommandsTest, HelpTellsTheExitStatus) {
  EXPECT_THAT(Out({"check", "--help"}), HasSubstr("0 clean, 3 damaged"));
  EXPECT_THAT(Out({"rescue", "--help"}), HasSubstr("3 something was lost"));
  EXPECT_THAT(Out({"dump", "--help"}), HasSubstr("--all"));
  EXPECT_THAT(Out({"--help"}), HasSubstr("3 damage found or data lost"));
}

}  // namespace
}  // namespace orv::test
