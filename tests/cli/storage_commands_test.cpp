// style, export and compact: the commands that store a table another way.
#include <string>

#include <gtest/gtest.h>

#include "command_runner.h"

namespace orv::test {
namespace {

class StorageCommandsTest : public CommandTest {
 protected:
  // A hundred towns in three regions; the first one's note is a matrix.
  void MakeTowns() {
    std::string text = "Name,Region,People,Note\n";
    for (int i = 0; i < 100; ++i) {
      text += "Город " + std::to_string(i) + ",Область номер " + std::to_string(i % 3) + "," +
              std::to_string(i * 1000) + ",\n";
    }
    Write(L"towns.csv", text);
    Out({"import", "towns.csv", "towns.orv", "--title", "Города"});
    Out({"nest", "towns.orv", "1", "Note", "--title", "Nested", "--field", "x"});
    Out({"add-records", "towns.orv", "/[1,4]", "--count", "2"});
    Out({"set", "towns.orv", "/[1,4]", "2", "1", "deep"});
    Out({"props", "towns.orv", "--record", "-2", "--field", "1", "--set", "unit=town"});
  }
  std::string Csv(const std::string& file) { return Out({"show", file, "--format", "csv"}); }
};

TEST_F(StorageCommandsTest, StyleConvertsAndEveryValueStays) {
  MakeTowns();
  const std::string before = Csv("towns.orv");
  EXPECT_EQ(Out({"style", "towns.orv", "Region"}), "free\n");
  const Outcome dictionary = Run({"style", "towns.orv", "Region", "--to", "dictionary"});
  EXPECT_EQ(dictionary.status, 0);
  EXPECT_EQ(dictionary.out, "dictionary, 1-byte index\n");
  EXPECT_EQ(dictionary.err.find("read back"), std::string::npos) << dictionary.err;
  EXPECT_EQ(
      Out({"style", "towns.orv", "Name", "--to", "fixed", "--width", "20", "--type", "string"}),
      "fixed, 20 bytes, string\n");
  EXPECT_EQ(Out({"style", "towns.orv", "People", "--to", "fixed", "--width", "4", "--type",
                 "integer", "--unique"}),
            "fixed, 4 bytes, integer, unique\n");
  EXPECT_EQ(Csv("towns.orv"), before);
  EXPECT_EQ(Out({"style", "towns.orv", "Region", "--to", "free"}), "free\n");
  EXPECT_EQ(Csv("towns.orv"), before);
}

TEST_F(StorageCommandsTest, StyleTellsWhenAValueDoesNotFit) {
  MakeTowns();
  const Outcome outcome = Run({"style", "towns.orv", "Name", "--to", "fixed", "--width", "7"});
  EXPECT_EQ(outcome.status, 0);
  // "Город 10" and all later ones have one character more.
  EXPECT_EQ(outcome.err, "orv: 90 values cannot be read back as before\n");
}

TEST_F(StorageCommandsTest, StyleRefusesToLoseAMatrix) {
  MakeTowns();
  const std::string before = Bytes(L"towns.orv");
  EXPECT_EQ(Err(1, {"style", "towns.orv", "Note", "--to", "fixed", "--width", "5"}),
            "orv: \"towns.orv\": record 1 holds a matrix, which the conversion would lose; --force "
            "converts all the same\n");
  EXPECT_EQ(Bytes(L"towns.orv"), before);
}

TEST_F(StorageCommandsTest, StyleReportsTheEnginesRefusals) {
  MakeTowns();
  const Outcome same = Run({"style", "towns.orv", "Name", "--to", "free"});
  EXPECT_EQ(same.status, 1);
  EXPECT_EQ(same.err,
            "Стиль поля уже установлен как \"Свободный\".\norv: the conversion was refused\n");
  Err(2, {"style", "towns.orv", "Name", "--to", "fixed"});
  Err(2, {"style", "towns.orv", "Name", "--to", "other"});
  Err(2, {"style", "towns.orv", "Name", "--to", "fixed", "--width", "4", "--type", "nonsense"});
}

TEST_F(StorageCommandsTest, TextExportTakesSeparators) {
  Write(L"a.csv", "x,y\n1,a\n2,b\n");
  Out({"import", "a.csv", "a.orv"});
  EXPECT_EQ(Out({"export", "a.orv", "a.txt", "--text"}), "2 records\n");
  EXPECT_EQ(Bytes(L"a.txt"), "x\ty\r\n1\ta\r\n2\tb");
  Out({"export", "a.orv", "a.txt", "--text", "--force", "--field-separator", "; ",
       "--record-separator", "\\n"});
  EXPECT_EQ(Bytes(L"a.txt"), "x; y\n1; a\n2; b");
  Out({"export", "a.orv", "/f(1)=2", "b.txt", "--text", "--record-separator", "|"});
  EXPECT_EQ(Bytes(L"b.txt"), "x\ty|2\tb");
}

TEST_F(StorageCommandsTest, ExportAsksBeforeItOverwrites) {
  Write(L"a.csv", "x\n1\n");
  Out({"import", "a.csv", "a.orv"});
  Write(L"a.txt", "precious");
  const Outcome outcome = Run({"export", "a.orv", "a.txt", "--text"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("Записать вместо него?"), std::string::npos);
  EXPECT_NE(outcome.err.find("orv: a.txt: error 51: the file exists and was not overwritten\n"),
            std::string::npos);
  EXPECT_EQ(Bytes(L"a.txt"), "precious");
}

TEST_F(StorageCommandsTest, ExportNeedsOneKindAndAnotherFile) {
  MakeTowns();
  Err(2, {"export", "towns.orv", "x"});
  Err(2, {"export", "towns.orv", "x", "--text", "--container"});
  Err(2, {"export", "towns.orv", "x", "--text", "--with-properties"});
  EXPECT_EQ(Err(2, {"export", "towns.orv", "towns.orv", "--container", "--force"}),
            "orv: a file cannot be exported into itself\n");
  Err(1, {"export", "none.orv", "x", "--text"});
  EXPECT_FALSE(HasFile(L"x"));
}

TEST_F(StorageCommandsTest, ContainerExportCopiesValuesOrEverything) {
  MakeTowns();
  Out({"export", "towns.orv", "values.orv", "--container"});
  EXPECT_EQ(Csv("values.orv"), Csv("towns.orv"));
  Err(1, {"show", "values.orv", "/[1,4]"});
  Out({"export", "towns.orv", "all.orv", "--container", "--with-properties"});
  EXPECT_EQ(Csv("all.orv"), Csv("towns.orv"));
  EXPECT_EQ(Out({"get", "all.orv", "/[1,4]", "2", "1"}), "deep\n");
  EXPECT_EQ(Out({"props", "all.orv"}), Out({"props", "towns.orv"}));
}

TEST_F(StorageCommandsTest, CompactWinsTheDeadSpaceAndKeepsEverything) {
  MakeTowns();
  for (int i = 0; i < 20; ++i) {
    const std::string text(static_cast<std::size_t>(300 * (i + 1)), 'x');
    Out({"set", "towns.orv", "5", "1", text});
  }
  Out({"set", "towns.orv", "5", "1", "short"});
  EXPECT_EQ(Run({"style", "towns.orv", "Region", "--to", "dictionary"}).status, 0);
  const std::string info = Out({"info", "towns.orv"});
  const std::string values = Csv("towns.orv");
  const std::size_t before = Bytes(L"towns.orv").size();

  const std::string report = Out({"compact", "towns.orv", "copy.orv"});
  EXPECT_NE(report.find(" cells compared, "), std::string::npos) << report;
  EXPECT_EQ(Bytes(L"towns.orv").size(), before);
  EXPECT_LT(Bytes(L"copy.orv").size(), before);
  EXPECT_EQ(Csv("copy.orv"), values);

  Out({"compact", "towns.orv", "--in-place"});
  EXPECT_EQ(Bytes(L"towns.orv"), Bytes(L"copy.orv"));
  EXPECT_FALSE(HasFile(L"towns.orv.compact-1"));
  EXPECT_EQ(Out({"get", "towns.orv", "/[1,4]", "2", "1"}), "deep\n");
  const auto fromTree = [](const std::string& text) { return text.substr(text.find("\n\n")); };
  EXPECT_EQ(fromTree(Out({"info", "towns.orv"})), fromTree(info));
}

TEST_F(StorageCommandsTest, CompactKeepsAnEmptyTitleAndAnEmptyFile) {
  Out({"new", "e.orv"});
  Out({"compact", "e.orv", "--in-place"});
  EXPECT_EQ(Out({"title", "e.orv"}), "\n");
  EXPECT_EQ(Csv("e.orv"), "\n");
}

TEST_F(StorageCommandsTest, CompactRefusesWhatItCannotDo) {
  MakeTowns();
  Err(2, {"compact", "towns.orv"});
  Err(2, {"compact", "towns.orv", "copy.orv", "--in-place"});
  Err(2, {"compact", "towns.orv", "towns.orv", "--force"});
  EXPECT_TRUE(HasFile(L"towns.orv"));
  Write(L"t.dbf", DbaseTable({{"NAME", 10}}, {"x"}));
  EXPECT_EQ(Err(1, {"compact", "t.dbf", "c.orv"}),
            "orv: t.dbf: only container files can be compacted\n");
  Err(1, {"compact", "none.orv", "c.orv"});
  EXPECT_FALSE(HasFile(L"none.orv"));
}

}  // namespace
}  // namespace orv::test
