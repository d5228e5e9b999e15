// Conversion of a field to the fixed style.
#include "convert/conversion_fixture.h"

namespace orv {
namespace {

using test::ContainerBytes;
using test::ConversionTest;
using test::Texts;
using testing::Test;
namespace style = test::style;

class FixedConversion : public ConversionTest {};

TEST_F(FixedConversion, AppendsOneBlockAndRepointsTheDescriptor) {
  Fill({"ab", "", "abcdef"});
  const ContainerBytes before = Bytes();
  Convert(style::kFixed, 5, 10, true);
  const ContainerBytes file = Bytes();
  const std::int64_t descriptor = file.Descriptor(file.Root(), kField);
  const std::int64_t block = before.size() + 1;
  EXPECT_EQ(file.Int32(descriptor), block);
  EXPECT_EQ(file.Byte(descriptor + 8), 6);
  EXPECT_EQ(file.Int16(descriptor + 9), 5);
  EXPECT_EQ(file.Byte(descriptor + 11), 10);
  EXPECT_EQ(file.bytes().substr(static_cast<std::size_t>(before.size())),
            std::string("\3\0\0\0", 4) + "ab   " + "     " + "abcde" + std::string(4, '\0'));
  EXPECT_EQ(db_.Style(L"", kField), "1 5 true true 10");
  EXPECT_EQ(Read(), (Texts{"ab", "", "abcde"}));
  ExpectNeighbours();
}

TEST_F(FixedConversion, ShowsOneStepAndTheBusyPointer) {
  Fill({"a", "b"});
  Convert(style::kFixed, 3);
  const auto& shown = screen_.LastDialog();
  EXPECT_EQ(shown.name, L"CompressForm");
  EXPECT_EQ(shown.hidden, (std::vector<std::wstring>{L"Steps(1)", L"Steps(2)"}));
  using LabelText = test::RecordingInterface::LabelText;
  EXPECT_EQ(shown.texts,
            (std::vector<LabelText>{
                {L"Label", L"Изменение способа хранения данных: \"Фиксированный\"", false},
                {L"Steps(3)", L"» Обновление данных...", true}}));
  EXPECT_EQ(shown.phases, (std::vector<test::RecordingInterface::Phase>{{0, 2, 2}}));
  EXPECT_EQ(screen_.pointer, (std::vector<bool>{true, false}));
  EXPECT_TRUE(screen_.messages.empty());
  EXPECT_EQ(screen_.services, 2);
}

TEST_F(FixedConversion, PacksIntegersOfEveryWidth) {
  const std::vector<std::pair<int, Texts>> tables = {
      {1, {"0", "-127", "128", "7"}},
      {2, {"0", "-32767", "32767", "300"}},
      {3, {"0", "-8388607", "8388607", "70000"}},
      {4, {"0", "-2147483648", "2147483647", "123456789"}},
  };
  for (const auto& [size, texts] : tables) {
    Fill(texts);
    Convert(style::kFixed, size, 1);
    EXPECT_EQ(Read(), texts) << size;
    EXPECT_EQ(db_.Style(L"", kField), "1 " + std::to_string(size) + " true false 1");
  }
}

TEST_F(FixedConversion, PacksNumbersScaledByTheirDecimals) {
  Fill({"12.345", "-0.5", "3,25", ""});
  db_.SetType(L"", -2, kField, "decimals", "2");
  Convert(style::kFixed, 2, 2);
  EXPECT_EQ(Read(), (Texts{"12.34", "-0.5", "3.25", "0"}));
  const ContainerBytes file = Bytes();
  EXPECT_EQ(file.Int16(file.Int32(file.Descriptor(file.Root(), kField)) + 4), 1234);
}

struct Refusal {
  std::string text;
  int cellSize;
  int dataType;
  int error;
};

class FixedRefusal : public ConversionTest, public testing::WithParamInterface<Refusal> {};

TEST_P(FixedRefusal, LeavesTheFileAsItWas) {
  const Refusal& refusal = GetParam();
  Fill({"1", refusal.text, "2"});
  const Texts before = Read();
  const std::string bytes = Bytes().bytes();
  db_.SetStyle(L"", kField, style::kFixed, refusal.cellSize, false, refusal.dataType);
  EXPECT_EQ(db_.Error(), refusal.error);
  EXPECT_TRUE(screen_.LastDialog().closed);
  EXPECT_TRUE(Bytes().bytes() == bytes);
  EXPECT_EQ(Read(), before);
}

INSTANTIATE_TEST_SUITE_P(
    Of, FixedRefusal,
    testing::Values(Refusal{"129", 1, 1, 6}, Refusal{"-128", 1, 1, 6}, Refusal{"32768", 2, 1, 6},
                    Refusal{"-32768", 2, 1, 6}, Refusal{"8388608", 3, 1, 6},
                    Refusal{"2147483648", 4, 1, 6}, Refusal{"1e300", 4, 1, 6},
                    Refusal{"7", 5, 1, 6},   // no integer is packed into five bytes
                    Refusal{"7", 4, 2, 6},   // nor a number into four
                    Refusal{"7", 8, 3, 6},   // reals are not kept in fixed cells
                    Refusal{"7", 8, 7, 6},   // nor logic values
                    Refusal{"7", 8, 11, 6},  // nor files
                    Refusal{"7", 8, 9, 13},  // nor images
                    Refusal{"7", 0, 0, 5}, Refusal{"7", -3, 10, 5}));

TEST_F(FixedConversion, UnderThePropertyIntKeepsWhatTheReaderTurnsBack) {
  const std::vector<std::pair<int, Texts>> tables = {
      {1, {"0", "255", "7"}}, {2, {"-32768", "32767", "0"}}, {4, {"-5", "2000000001", "0"}}};
  for (const auto& [size, texts] : tables) {
    Fill(texts);
    db_.SetType(L"", -2, kField, "type", "int");
    Convert(style::kFixed, size, 0);
    EXPECT_EQ(Read(), texts) << size;
  }
  Fill({"-1"});
  db_.SetType(L"", -2, kField, "type", "int");
  db_.SetStyle(L"", kField, style::kFixed, 1);
  EXPECT_EQ(db_.Error(), 6);
  EXPECT_EQ(Read(), Texts{"-1"});
}

TEST_F(FixedConversion, OfAFixedFieldAppendsANewBlock) {
  Fill({"ab", "cd"});
  Convert(style::kFixed, 4);
  const ContainerBytes first = Bytes();
  Convert(style::kFixed, 4);
  const ContainerBytes second = Bytes();
  const std::int64_t descriptor = first.Descriptor(first.Root(), kField);
  EXPECT_EQ(second.Int32(descriptor), first.size() + 1);
  EXPECT_EQ(second.size(), first.size() + 4 + 2 * 4 + 4);
  EXPECT_EQ(Read(), (Texts{"ab", "cd"}));
  EXPECT_TRUE(screen_.messages.empty());
}

TEST_F(FixedConversion, OfAMatrixWithoutRecordsTakesRecordsAfterwards) {
  Fill({});
  Convert(style::kFixed, 3);
  db_.AddRecords(L"", 2, 1);
  ASSERT_EQ(db_.Error(), 0);
  EXPECT_EQ(Read(), (Texts{"", ""}));
  db_.Set(L"", 2, kField, "abc");
  EXPECT_EQ(Read(), (Texts{"", "abc"}));
  ExpectSound();
}

TEST_F(FixedConversion, IsFollowedByEveryKindOfWriting) {
  Fill({"one", "two", "three"});
  Convert(style::kFixed, 6);
  db_.Set(L"", 2, kField, "zwei");
  db_.AddRecords(L"", 2, 2);
  db_.Set(L"", 3, kField, "new");
  EXPECT_EQ(Read(), (Texts{"one", "", "new", "zwei", "three"}));
  db_.DeleteField(L"", 1);
  EXPECT_EQ(Read(L"", 1), (Texts{"one", "", "new", "zwei", "three"}));
  ExpectSound();
}

TEST_F(FixedConversion, OfAFieldSeenThroughAViewConvertsAllRecords) {
  Fill({"a", "b", "a", "c"});
  db_.SetStyle(L"/f(2)=\"a\"", kField, style::kFixed, 3);
  ASSERT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Style(L"", kField), "1 3 true false 0");
  EXPECT_EQ(Read(), (Texts{"a", "b", "a", "c"}));
}

TEST_F(FixedConversion, StopsAtTheRecordWhereACancelWasConfirmed) {
  const Texts texts = Repeating(9, 3);
  for (const int record : {1, 5, 9}) {
    Fill(texts);
    const std::string bytes = Bytes().bytes();
    screen_.pressCancel = {1, record};
    screen_.answers.assign(screen_.messages.size(), Button::kYes);
    screen_.answers.push_back(Button::kYes);
    db_.SetStyle(L"", kField, style::kFixed, 5);
    EXPECT_TRUE(screen_.LastDialog().cancelled) << record;
    EXPECT_TRUE(screen_.LastDialog().closed);
    EXPECT_EQ(db_.Error(), 0);
    EXPECT_EQ(db_.Style(L"", kField), "0 0 false false 0");
    EXPECT_EQ(Read(), texts);
    EXPECT_TRUE(Bytes().bytes() == bytes);
  }
  EXPECT_FALSE(screen_.pointer.back());
}

TEST_F(FixedConversion, GoesOnWhenTheQuestionIsAnsweredWithNo) {
  Fill({"a", "b", "c"});
  screen_.pressCancel = {1, 2};
  screen_.answers = {Button::kNo};
  Convert(style::kFixed, 2);
  ASSERT_EQ(screen_.messages.size(), 1U);
  EXPECT_EQ(screen_.messages[0].text,
            L"Вы действительно хотите отменить изменение способа храниения данных?\r"
            L"Никакие данные не будут повреждены в любом случае!");
  EXPECT_EQ(screen_.messages[0].caption, L"ORV DBServer");
  EXPECT_EQ(db_.Style(L"", kField), "1 2 true false 0");
}

}  // namespace
}  // namespace orv
