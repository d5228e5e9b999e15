#include "exchange/text_export.h"

#include "exchange/export_fixture.h"
#include "platform/clock.h"
#include "platform/code_page.h"

namespace orv {
namespace {

using test::ExportTest;
using test::kTextFile;
using Phase = test::RecordingInterface::Phase;

/// 14:13:54: second 51234 of the day.
platform::LocalTime TheMoment() { return {2024, 5, 17, 51234.7}; }

class TextExportTest : public ExportTest {
 protected:
  TextExportTest() { platform::SetClock(TheMoment); }
  ~TextExportTest() override { platform::SetClock(nullptr); }

  /// Three fields named A, B, C and two records.
  void MakeTable() {
    db_.New("Towns");
    db_.AddFields(L"", 3, 1);
    db_.AddRecords(L"", 2, 1);
    for (int f = 1; f <= 3; ++f) {
      db_.Set(L"", 0, f, std::string(1, static_cast<char>('@' + f)));
      for (int r = 1; r <= 2; ++r) {
        db_.Set(L"", r, f, "r" + std::to_string(r) + "f" + std::to_string(f));
      }
    }
    ASSERT_EQ(db_.Error(), 0);
  }

  /// Exports with these separators typed in.
  std::string Export(const std::wstring& field, const std::wstring& record,
                     std::wstring_view steps = {}) {
    screen_.onRunModal = [&](Dialog& dialog) {
      if (dialog.settings() == nullptr) return RunUnattended(dialog);
      dialog.OnTimer();
      dialog.settings()->fieldSeparator = field;
      dialog.settings()->recordSeparator = record;
      dialog.OnForward();
    };
    Answer({Button::kOk});
    db_.SaveAs(steps, L"target", false, kTextFile);
    return Target();
  }
};

TEST_F(TextExportTest, WritesNamesAndRecordsWithTheFirstSeparators) {
  MakeTable();
  db_.SaveAs(L"", L"target", true, kTextFile);
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(Target(), "A\tB\tC\r\nr1f1\tr1f2\tr1f3\r\nr2f1\tr2f2\tr2f3");
  EXPECT_EQ(screen_.LastDialog().name, L"ExportData");
  EXPECT_EQ(screen_.LastDialog().phases, (std::vector<Phase>{{0, 2, 2}}));
  EXPECT_EQ(screen_.LastDialog().texts,
            (std::vector<test::RecordingInterface::LabelText>{{L"LabelS1(7)", L"Towns", false}}));
  EXPECT_TRUE(screen_.messages.empty());
}

TEST_F(TextExportTest, TakesSeparatorsAsTyped) {
  MakeTable();
  EXPECT_EQ(Export(L";", L"\n"), "A;B;C\nr1f1;r1f2;r1f3\nr2f1;r2f2;r2f3");
  EXPECT_EQ(Export(L" ТАБУЛЯЦИЯ ", L"Перенос Строки "),
            "A\tB\tC\r\nr1f1\tr1f2\tr1f3\r\nr2f1\tr2f2\tr2f3");
  EXPECT_EQ(Export(L"", L" | "), "ABC | r1f1r1f2r1f3 | r2f1r2f2r2f3");
  EXPECT_EQ(Export(L"табуляция.", L"Ж"),
            platform::ToBytes(L"Aтабуляция.Bтабуляция.CЖr1f1табуляция.r1f2табуляция.r1f3Ж"
                              L"r2f1табуляция.r2f2табуляция.r2f3"));
}

TEST_F(TextExportTest, NeitherQuotesNorEscapes) {
  MakeTable();
  db_.Set(L"", 1, 1, "a;\"b\"\r\n");
  db_.Set(L"", 2, 2, std::string("\0\xFF", 2));
  EXPECT_EQ(Export(L";", L"|"),
            "A;B;C|a;\"b\"\r\n;r1f2;r1f3|r2f1;" + std::string("\0\xFF", 2) + ";r2f3");
}

TEST_F(TextExportTest, OfATableWithoutRecordsOrFieldsHasOneLine) {
  db_.New("");
  EXPECT_EQ(Export(L";", L"|"), "");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_TRUE(screen_.LastDialog().texts.empty());  // no title to show
  db_.AddFields(L"", 2, 1);
  db_.Set(L"", 0, 2, "name");
  EXPECT_EQ(Export(L";", L"|"), ";name");
}

TEST_F(TextExportTest, ReadsEveryStyleAndNestedMatricesAsTheReaderDoes) {
  MakeTable();
  db_.SetStyle(L"", 1, 1, 6);
  db_.SetStyle(L"", 2, 11);
  db_.Put(L"", 2, 3, "inner");
  EXPECT_EQ(Export(L";", L"|"), "A;B;C|r1f1;r1f2;r1f3|r2f1;r2f2;inner");
}

TEST_F(TextExportTest, OfAViewHasItsRecordsOnly) {
  MakeTable();
  EXPECT_EQ(Export(L";", L"|", L"/f(1)=\"r2f1\""), "A;B;C|r2f1;r2f2;r2f3");
}

TEST_F(TextExportTest, OfADbaseTableBeginsWithItsNames) {
  std::string table(32, '\0');
  table[0] = 3;
  table[4] = 2;
  table[8] = 97;
  table[10] = 6;
  for (const char* name : {"ONE", "TWO"}) {
    std::string field(32, '\0');
    field.replace(0, 3, name);
    field[11] = 'C';
    field[16] = name[0] == 'O' ? 2 : 3;
    table += field;
  }
  table += "\r abcde fg   \x1A";
  test::WriteBytes(db_.file(), table);
  EXPECT_EQ(Export(L";", L"|"), "ONE;TWO|ab;cde|fg;");
}

TEST_F(TextExportTest, ExtractsPicturesWavesAndFiles) {
  MakeTable();
  db_.SetType(L"", -2, 1, "type", "image");
  db_.SetType(L"", 1, 2, "type", "wave");
  db_.SetType(L"", 2, 3, "type", "file");
  for (int r = 1; r <= 2; ++r) db_.SetType(L"", r, 1, "type", "image");
  db_.Set(L"", 1, 1, "123456JFIF data");
  db_.Set(L"", 2, 1, "GIF87");
  db_.Set(L"", 1, 2, "RIFF");
  db_.Set(L"", 2, 3, std::string("\3txt\0body", 9));
  ASSERT_EQ(db_.Error(), 0);
  const std::string target = platform::ToBytes(db_.folder().Name(L"target"));
  const auto mark = [&](const std::string& name) { return "<file://" + target + name + ">"; };
  const std::string text = Export(L";", L"|");
  EXPECT_EQ(text, "A;B;C|" + mark("_1234-1x1.jpg") + ";" + mark("_1234-1x2.tmp") + ";r1f3|" +
                      mark("_1234-2x1.gif") + ";r2f2;" + mark("_1234-2x3.txt"));
  const auto extracted = [&](const wchar_t* name) {
    return test::ReadBytes(db_.folder().Name(L"target") + name);
  };
  EXPECT_EQ(extracted(L"_1234-1x1.jpg"), "123456JFIF data");
  EXPECT_EQ(extracted(L"_1234-1x2.tmp"), "RIFF");
  EXPECT_EQ(extracted(L"_1234-2x1.gif"), "GIF87");
  EXPECT_EQ(extracted(L"_1234-2x3.txt"), std::string("\0body", 5));
}

TEST_F(TextExportTest, AsksBeforeItReplacesATarget) {
  MakeTable();
  test::WriteBytes(db_.folder().Name(L"target"), std::string(10'000, 'x'));
  Answer({Button::kCancel});
  db_.SaveAs(L"", L"target", false, kTextFile);
  EXPECT_EQ(db_.Error(), 0);
  ASSERT_EQ(screen_.messages.size(), 1U);
  EXPECT_EQ(screen_.messages[0].text, L"Файл уже существует!\rЗаписать вместо него?");
  EXPECT_EQ(screen_.messages[0].caption, L"ORV Server v1.0");
  EXPECT_EQ(Target().size(), 10'000U);
  Answer({Button::kOk});
  db_.SaveAs(L"", L"target", false, kTextFile);
  EXPECT_EQ(Target(), "A\tB\tC\r\nr1f1\tr1f2\tr1f3\r\nr2f1\tr2f2\tr2f3");
}

TEST_F(TextExportTest, NeverReplacesItsOwnSource) {
  MakeTable();
  db_.CloseAll();
  const std::string before = db_.Bytes();
  for (const int type : {kTextFile, test::kContainerFile}) {
    Answer({Button::kOk, Button::kOk});
    db_.SaveAs(L"", L"file.orv", true, type);
    EXPECT_EQ(db_.Error(), 55);
    EXPECT_EQ(screen_.messages.back().text,
              L"Произошла ошибка открытия фала получателя данных. Попробуйте повторить попытку.");
    EXPECT_EQ(screen_.messages.back().icon, Icon::kCritical);
  }
  db_.CloseAll();
  EXPECT_TRUE(db_.Bytes() == before);
}

TEST_F(TextExportTest, TellsWhenTheTargetCannotBeWritten) {
  MakeTable();
  db_.SaveAs(L"", L"missing/target", false, kTextFile);
  EXPECT_EQ(db_.Error(), 76);
  ASSERT_EQ(screen_.messages.size(), 1U);
  EXPECT_EQ(screen_.messages[0].text,
            L"Произошла ошибка во время записи данных. Попробуйте повторить попытку.");
  EXPECT_TRUE(screen_.AllClosed());
}

TEST_F(TextExportTest, ShowsNothingWhereThereIsNoTable) {
  MakeTable();
  test::WriteBytes(db_.folder().Name(L"target"), "precious");
  db_.SaveAs(L"/#", L"target", false, kTextFile);
  EXPECT_EQ(db_.Error(), 255);
  db_.SaveAs(L"/[1,1]", L"target", false, kTextFile);
  EXPECT_EQ(db_.Error(), 19);
  EXPECT_TRUE(screen_.dialogs.empty());
  EXPECT_EQ(Target(), "precious");
}

TEST_F(TextExportTest, CancelledDeletesTheTargetAndKeepsWhatWasExtracted) {
  MakeTable();
  db_.SetType(L"", 1, 1, "type", "image");
  for (const int record : {0, 1, 2}) {
    Answer({Button::kYes});
    screen_.pressCancel = {1, record};
    db_.SaveAs(L"", L"target", false, kTextFile);
    EXPECT_EQ(db_.Error(), 0);
    EXPECT_TRUE(screen_.LastDialog().cancelled);
    EXPECT_EQ(screen_.messages.back().text, L"Вы действительно хотите прервать экспорт?");
    EXPECT_EQ(screen_.messages.back().caption, L"ORV DB Server");
    EXPECT_FALSE(TargetExists());
    EXPECT_EQ(test::Exists(db_.folder().Name(L"target_1234-1x1.tmp")), record == 2) << record;
  }
  Answer({Button::kNo});
  screen_.pressCancel = {1, 1};
  db_.SaveAs(L"", L"target", false, kTextFile);
  EXPECT_TRUE(TargetExists());
}

TEST_F(TextExportTest, OfManyCellsComesBackCellByCell) {
  constexpr int kRecords = 30'000;
  db_.New();
  db_.AddFields(L"", 2, 1);
  db_.AddRecords(L"", kRecords, 1);
  std::string expected = "\t";
  for (int r = 1; r <= kRecords; ++r) {
    const std::string text(static_cast<std::size_t>(r % 97), static_cast<char>('a' + r % 26));
    db_.Set(L"", r, 1, text);
    db_.Set(L"", r, 2, std::to_string(r));
    expected += "\r\n" + text + "\t" + std::to_string(r);
  }
  db_.SaveAs(L"", L"target", false, kTextFile);
  EXPECT_TRUE(Target() == expected);
}

}  // namespace
}  // namespace orv
