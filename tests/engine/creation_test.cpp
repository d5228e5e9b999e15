// New files, titles, kinds of files, and what closes and forgets them.
#include <filesystem>
#include <vector>

#include <gtest/gtest.h>

#include "orv/dialogs.h"

#include "support/container_bytes.h"
#include "support/driver.h"

namespace orv {
namespace {

using test::Driver;

TEST(CreationTest, ANewFileIs75BytesAndItsTitle) {
  Driver db;
  db.New("Towns");
  EXPECT_EQ(db.Error(), 0);
  const test::ContainerBytes file(db.Bytes());
  EXPECT_EQ(file.size(), 80);
  EXPECT_EQ(file.Int32(4), 52);
  EXPECT_EQ(file.Int16(52), -1);
  EXPECT_EQ(db.Kind(), 1);
  EXPECT_EQ(db.Title(), "Towns");
  EXPECT_EQ(db.Records(), 0);
  EXPECT_EQ(db.Fields(), 0);
}

TEST(CreationTest, TheNameStandsWithOrWithoutItsQuotes) {
  Driver db;
  std::wstring bare = db.file();
  std::wstring title = L"bare";
  db.engine.CmdNewOrvDB(bare, title);
  EXPECT_EQ(db.Error(), 0);
  EXPECT_EQ(db.Title(), "bare");
}

TEST(CreationTest, AnEmptyFileIsTakenWithoutAsking) {
  Driver db;
  test::WriteBytes(db.file(), "");
  db.New("new");
  EXPECT_EQ(db.Error(), 0);
  EXPECT_EQ(db.Title(), "new");
}

TEST(CreationTest, WithoutAnAnswerAFileWithDataIsLeftAlone) {
  Driver db;
  db.New("old");
  db.AddFields(L"", 1, 1);
  db.CloseAll();
  const std::string before = db.Bytes();
  db.New("new");
  EXPECT_EQ(db.Error(), 51);
  db.CloseAll();
  EXPECT_EQ(db.Bytes(), before);
  EXPECT_EQ(db.Title(), "old");
}

TEST(CreationTest, AFolderThatIsMissingIs76) {
  Driver db;
  db.Use(L"no/such/file.orv");
  db.New();
  EXPECT_EQ(db.Error(), 76);
}

TEST(CreationTest, KindsOfFiles) {
  Driver db;
  test::WriteBytes(db.file(), "neither");
  EXPECT_EQ(db.Kind(), 0);
  EXPECT_EQ(db.Error(), 0);
  db.CloseAll();
  test::WriteBytes(db.file(), "0 is how this text begins");
  EXPECT_EQ(db.Kind(), 2);
  db.Use(L"missing");
  db.CloseAll();
  EXPECT_EQ(db.Kind(), 0);
  EXPECT_EQ(db.Error(), 53);
}

TEST(CreationTest, TitlesOfPathsThatDoNotResolve) {
  Driver db;
  db.New();
  EXPECT_EQ(db.Title(L"/[1,1]"), "");
  EXPECT_NE(db.Error(), 0);
  EXPECT_EQ(db.Records(L"/[1,1]"), -1);
  EXPECT_EQ(db.Fields(L"/[1,1]"), -1);
  EXPECT_EQ(db.Title(L"/#"), "");
  db.SetTitle(L"/#", "x");
  EXPECT_EQ(db.Error(), 255);
}

TEST(CreationTest, ADbaseTableHasNoTitleAndNoStructureToChange) {
  Driver db;
  test::WriteBytes(db.file(), std::string(200, '\x03'));
  EXPECT_EQ(db.Title(), "");
  EXPECT_EQ(db.Error(), 0);
  db.SetTitle(L"", "x");
  EXPECT_EQ(db.Error(), 70);
  db.AddFields(L"", 1, 1);
  EXPECT_EQ(db.Error(), 70);
  db.DeleteField(L"", 1);
  EXPECT_EQ(db.Error(), 70);
  db.Put(L"", 1, 1, "x");
  EXPECT_EQ(db.Error(), 70);
  db.ReBit(L"", 1, 1, 4);
  EXPECT_EQ(db.Error(), 70);
  db.SetType(L"", 1, 1, "a", "b");
  EXPECT_EQ(db.Error(), 70);
  db.InsertTop();
  EXPECT_EQ(db.Error(), 70);
  db.CloseAll();
  EXPECT_EQ(db.Bytes(), std::string(200, '\x03'));
}

TEST(CreationTest, EmptyMembersLeaveEverythingAlone) {
  Driver db;
  db.New();
  db.Get(L"", -1, 1);
  ASSERT_EQ(db.Error(), 20);
  std::wstring command = L"anything";
  std::int16_t type = 3;
  EXPECT_EQ(db.engine.Cmd(command, type), L"");
  db.engine.UnloadServer();
  db.engine.gt();
  EXPECT_EQ(db.Error(), 20);
  EXPECT_EQ(db.Error(), 20) << "reading the code does not clear it";
}

TEST(CreationTest, TheEleventhFileIsRefusedAndTheFirstGoesOnAfterwards) {
  Driver db;
  for (int i = 1; i <= 10; ++i) {
    db.Use(std::to_wstring(i));
    db.New("file " + std::to_string(i));
    EXPECT_EQ(db.Title(), "file " + std::to_string(i));
  }
  db.Use(L"11");
  db.New("file 11");
  EXPECT_EQ(db.Error(), 0) << "creating takes no slot";
  EXPECT_EQ(db.Title(), "");
  EXPECT_EQ(db.Error(), 9);
  db.Use(L"missing");
  EXPECT_EQ(db.Records(), -1);
  EXPECT_EQ(db.Error(), 9);
  EXPECT_FALSE(test::Exists(db.file()));
  for (int i = 1; i <= 10; ++i) {
    db.Use(std::to_wstring(i));
    db.SetTitle(L"", "again " + std::to_string(i));
    EXPECT_EQ(db.Title(), "again " + std::to_string(i));
  }
  db.CloseAll();
  db.Use(L"11");
  EXPECT_EQ(db.Title(), "file 11");
}

TEST(CreationTest, AFileMadeAnewIsNotMistakenForTheOldOne) {
  Driver db;
  db.New("old");
  db.AddFields(L"", 3, 1);
  db.AddRecords(L"", 2, 1);
  db.Set(L"", 2, 3, "old");
  db.CloseAll();
  std::filesystem::remove(db.folder().path() / "file.orv");
  db.New("new");
  EXPECT_EQ(db.Title(), "new");
  EXPECT_EQ(db.Fields(), 0);
  db.AddFields(L"", 1, 1);
  db.AddRecords(L"", 1, 1);
  EXPECT_EQ(db.Get(L"", 1, 1), "");
  EXPECT_EQ(db.Error(), 0);
}

TEST(CreationTest, WhatWasWrittenIsInTheFileWithoutClosing) {
  Driver db;
  db.New("t");
  db.AddFields(L"", 1, 1);
  db.AddRecords(L"", 1, 1);
  db.Set(L"", 1, 1, "written");
  EXPECT_NE(db.Bytes().find("written"), std::string::npos);
}

TEST(CreationTest, FilesAreFoundInAnyLetterCase) {
  Driver db;
  db.Use(L"Table.ORV");
  db.New("t");
  db.CloseAll();
  db.Use(L"tABLE.orv");
  EXPECT_EQ(db.Title(), "t");
  db.SetTitle(L"", "u");
  db.Use(L"Table.ORV");
  EXPECT_EQ(db.Title(), "u");
}

TEST(CreationTest, NamesOutsideTheCodePageOpen) {
  Driver db;
  db.Use(L"\u6570\u636E \u0416.orv");
  db.New("t");
  EXPECT_EQ(db.Error(), 0);
  EXPECT_EQ(db.Title(), "t");
}

class AnsweringInterface final : public UserInterface {
 public:
  explicit AnsweringInterface(Button answer) : answer_(answer) {}
  Button ShowMessage(const Message& message) override {
    messages_.push_back(message);
    return answer_;
  }
  void Show(Dialog&) override {}
  void RunModal(Dialog&) override {}
  void Changed(Dialog&, DialogChange, std::size_t) override {}
  void ServiceEvents() override {}
  void Close(Dialog&) override {}
  void SetBusyPointer(bool) override {}
  void Beep() override {}

  const std::vector<Message>& messages() const { return messages_; }

 private:
  Button answer_;
  std::vector<Message> messages_;
};

class OverwriteQuestionTest : public testing::Test {
 protected:
  void SetUp() override {
    db_.New("old");
    db_.AddFields(L"", 2, 1);
  }
  void Ask(Button answer) {
    AnsweringInterface asked(answer);
    UserInterface* const before = InstallUserInterface(&asked);
    db_.New("new");
    InstallUserInterface(before);
    messages_ = asked.messages();
  }

  Driver db_;
  std::vector<Message> messages_;
};

TEST_F(OverwriteQuestionTest, IsAskedOnceWithItsTexts) {
  Ask(Button::kCancel);
  ASSERT_EQ(messages_.size(), 1U);
  EXPECT_EQ(messages_[0].caption, L"ORV Server v1.0");
  EXPECT_EQ(
      messages_[0].text,
      L"\u0424\u0430\u0439\u043B \u0443\u0436\u0435 \u0441\u0443\u0449\u0435\u0441\u0442\u0432"
      L"\u0443\u0435\u0442!\r\u0417\u0430\u043F\u0438\u0441\u0430\u0442\u044C \u0432\u043C\u0435"
      L"\u0441\u0442\u043E \u043D\u0435\u0433\u043E?");
  EXPECT_EQ(messages_[0].buttons, Buttons::kOkCancel);
}

TEST_F(OverwriteQuestionTest, CancelKeepsTheFile) {
  db_.CloseAll();
  const std::string before = db_.Bytes();
  Ask(Button::kCancel);
  EXPECT_EQ(db_.Error(), 51);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes(), before);
}

TEST_F(OverwriteQuestionTest, OkReplacesTheFileEvenWhileItIsOpen) {
  EXPECT_EQ(db_.Fields(), 2);
  Ask(Button::kOk);
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Title(), "new");
  EXPECT_EQ(db_.Fields(), 0);
  db_.CloseAll();
  EXPECT_EQ(db_.Bytes().size(), 78U);
}

}  // namespace
}  // namespace orv
