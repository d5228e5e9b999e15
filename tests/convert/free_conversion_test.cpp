// Conversion of a field to the free style, and the requests that are refused.
#include "convert/conversion_fixture.h"

namespace orv {
namespace {

using test::ContainerBytes;
using test::ConversionTest;
using test::Texts;
namespace style = test::style;

class FreeConversion : public ConversionTest {};

TEST_F(FreeConversion, AppendsAPointerTableAndACellForEveryRecord) {
  Fill({"ab", "", "c"});
  Convert(style::kFixed, 5);
  const ContainerBytes before = Bytes();
  Convert(style::kFree, 0, 10, true);
  const ContainerBytes file = Bytes();
  const std::int64_t descriptor = file.Descriptor(file.Root(), kField);
  const std::int64_t block = before.size() + 1;
  EXPECT_EQ(file.Int32(descriptor), block);
  EXPECT_EQ(file.Byte(descriptor + 8), 2);
  EXPECT_EQ(file.Byte(descriptor + 11), 10);
  EXPECT_EQ(file.Int32(block), 3);
  EXPECT_EQ(file.Int32(block + 16), 0);
  EXPECT_EQ(file.Int32(block + 4), block + 20);
  EXPECT_EQ(file.bytes().substr(static_cast<std::size_t>(block + 19)),
            std::string("\1\0\2ab\0\0\0\0", 9) + std::string("\1\0\0\0\0\0\0", 7) +
                std::string("\1\0\1c\0\0\0\0", 8));
  EXPECT_EQ(db_.Style(L"", kField), "0 0 false true 10");
  EXPECT_EQ(Read(), (Texts{"ab", "", "c"}));
  ExpectNeighbours();
}

TEST_F(FreeConversion, ShowsOneStep) {
  Fill({"a", "b"});
  Convert(style::kFixed, 3);
  Convert(style::kFree);
  const auto& shown = screen_.LastDialog();
  EXPECT_EQ(shown.hidden, (std::vector<std::wstring>{L"Steps(1)", L"Steps(2)"}));
  using LabelText = test::RecordingInterface::LabelText;
  EXPECT_EQ(shown.texts, (std::vector<LabelText>{
                             {L"Label", L"Изменение способа хранения данных: \"Свободный\"", false},
                             {L"Steps(3)", L"» Обновление данных...", true}}));
  EXPECT_EQ(shown.phases, (std::vector<test::RecordingInterface::Phase>{{0, 2, 2}}));
}

TEST_F(FreeConversion, KeepsLongTextsInTheLongForm) {
  const Texts texts = {std::string(255, 'a'), std::string(256, 'b'), std::string(70000, 'c'), "d"};
  Fill(texts);
  Convert(style::kDictionary);
  Convert(style::kFree);
  EXPECT_EQ(Read(), texts);
  const ContainerBytes file = Bytes();
  const std::int64_t type = file.Int16(file.Descriptor(file.Root(), kField) + 13);
  EXPECT_GT(type, 1);
  EXPECT_EQ(file.Int16(file.Cell(file.Root(), 1, kField)), type);
  EXPECT_EQ(file.Int16(file.Cell(file.Root(), 2, kField)), type + 16380);
}

TEST_F(FreeConversion, LeavesRecordsWithNestedMatricesEmpty) {
  Fill({"a", "b"});
  Convert(style::kFixed, 2);
  // A fixed field whose own code says that its cells hold matrices.
  ContainerBytes file = Bytes();
  file.PutInt16(file.Descriptor(file.Root(), kField) + 13, -1);
  test::WriteBytes(db_.file(), file.bytes());
  EXPECT_TRUE(db_.HoldsMatrix(L"", 1, kField));
  db_.SetStyle(L"", kField, style::kFree);
  ASSERT_EQ(db_.Error(), 0);
  const ContainerBytes after = Bytes();
  EXPECT_EQ(after.Cell(after.Root(), 1, kField), 0);
  EXPECT_EQ(after.Cell(after.Root(), 2, kField), 0);
  EXPECT_EQ(Read(), (Texts{"", ""}));
}

TEST_F(FreeConversion, OfAMatrixWithoutRecordsTakesRecordsAfterwards) {
  Fill({});
  Convert(style::kFixed, 3);
  Convert(style::kFree);
  db_.AddRecords(L"", 2, 1);
  db_.Set(L"", 1, kField, "abcdef");
  EXPECT_EQ(Read(), (Texts{"abcdef", ""}));
  ExpectSound();
}

TEST_F(FreeConversion, IsFollowedByEveryKindOfWriting) {
  Fill({"one", "two", "three"});
  Convert(style::kDictionary);
  Convert(style::kFree);
  db_.Set(L"", 2, kField, std::string(1000, 'x'));
  db_.AddRecords(L"", 1, 2);
  db_.Put(L"", 2, kField, "nested");
  EXPECT_EQ(Read(), (Texts{"one", "nested", std::string(1000, 'x'), "three"}));
  EXPECT_TRUE(db_.HoldsMatrix(L"", 2, kField));
  ExpectSound();
}

TEST_F(FreeConversion, StopsAtTheRecordWhereACancelWasConfirmed) {
  const Texts texts = Repeating(9, 3);
  for (const int former : {style::kFixed, style::kDictionary}) {
    for (const int record : {1, 5, 9}) {
      Fill(texts);
      Convert(former, 5);
      const std::string before = db_.Style(L"", kField);
      const std::string bytes = Bytes().bytes();
      screen_.pressCancel = {1, record};
      screen_.answers.assign(screen_.messages.size(), Button::kYes);
      screen_.answers.push_back(Button::kYes);
      db_.SetStyle(L"", kField, style::kFree);
      EXPECT_TRUE(screen_.LastDialog().cancelled) << record;
      EXPECT_EQ(db_.Style(L"", kField), before);
      EXPECT_EQ(Read(), texts);
      EXPECT_TRUE(Bytes().bytes().starts_with(bytes));
      ExpectSound();
    }
  }
}

class StyleRefusal : public ConversionTest {
 protected:
  void ExpectNotice(const std::wstring& text, Icon icon) {
    ASSERT_EQ(screen_.messages.size(), 1U);
    EXPECT_EQ(screen_.messages[0].text, text);
    EXPECT_EQ(screen_.messages[0].caption, L"");
    EXPECT_EQ(screen_.messages[0].icon, icon);
    EXPECT_EQ(screen_.messages[0].buttons, Buttons::kOk);
    EXPECT_TRUE(screen_.LastDialog().closed);
    screen_.messages.clear();
  }
};

TEST_F(StyleRefusal, OfFreeForAFreeField) {
  Fill({"a"});
  const std::string bytes = Bytes().bytes();
  db_.SetStyle(L"", kField, style::kFree, 0, true, 10);
  ExpectNotice(L"Стиль поля уже установлен как \"Свободный\".", Icon::kExclamation);
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_TRUE(Bytes().bytes() == bytes);
}

TEST_F(StyleRefusal, OfADictionaryForADictionaryField) {
  Fill({"a"});
  Convert(style::kDictionary);
  const std::string bytes = Bytes().bytes();
  db_.SetStyle(L"", kField, style::kDictionary);
  ExpectNotice(L"Стиль поля уже установлен как \"Сжатый\".", Icon::kExclamation);
  EXPECT_TRUE(Bytes().bytes() == bytes);
}

TEST_F(StyleRefusal, OfADictionaryThroughAView) {
  Fill({"a", "b"});
  const std::string bytes = Bytes().bytes();
  db_.SetStyle(L"/f(2)=\"a\"", kField, style::kDictionary);
  ExpectNotice(L"Невозможно создать словарь из под фильтра. Очистите фильтр и попробуйте еще раз.",
               Icon::kCritical);
  EXPECT_TRUE(Bytes().bytes() == bytes);
}

TEST_F(StyleRefusal, OfAStyleThatNobodyKnowsLeavesTheDialogOpen) {
  Fill({"a"});
  const std::string bytes = Bytes().bytes();
  bool open = false;
  screen_.onRunModal = [&open](Dialog& dialog) {
    dialog.OnTimer();
    open = !dialog.closed();
    dialog.OnClose();
  };
  db_.SetStyle(L"", kField, 2);
  EXPECT_TRUE(open);
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_TRUE(screen_.LastDialog().texts.empty());
  EXPECT_TRUE(Bytes().bytes() == bytes);
}

TEST_F(StyleRefusal, WhereThereIsNoField) {
  Fill({"a"});
  db_.SetStyle(L"", 9, style::kFixed, 3);
  EXPECT_EQ(db_.Error(), 9);
  db_.SetStyle(L"/#", 1, style::kFixed, 3);
  EXPECT_EQ(db_.Error(), 255);
  db_.SetStyle(L"/[1,1]", 1, style::kFixed, 3);
  EXPECT_EQ(db_.Error(), 19);
  EXPECT_TRUE(screen_.AllClosed());
}

TEST_F(StyleRefusal, ForADbaseTable) {
  std::string table(32, '\0');
  table[0] = 3;
  table[8] = 33;
  table[10] = 1;
  test::WriteBytes(db_.file(), table + "\r");
  db_.SetStyle(L"", 1, style::kFixed, 3);
  EXPECT_EQ(db_.Error(), 70);
}

TEST_F(StyleRefusal, OfNumbersThatNoRequestCanCarry) {
  Fill({"a"});
  db_.SetStyle(L"", kField, 255);
  EXPECT_EQ(db_.Error(), 5);
  db_.SetStyle(L"", kField, style::kFixed, 3, false, -2);
  EXPECT_EQ(db_.Error(), 5);
}

TEST_F(StyleRefusal, StillClosesEveryFile) {
  Fill({"a"});
  db_.SetStyle(L"", kField, style::kFree);
  // A file that is closed has its true length: nothing reserved stands behind its end.
  EXPECT_EQ(test::WalkStructures(db_.Bytes()).Text(), "");
}

}  // namespace
}  // namespace orv
