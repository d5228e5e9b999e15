// Conversion of a field to the dictionary style.
#include <algorithm>

#include "convert/conversion_fixture.h"

namespace orv {
namespace {

using test::ContainerBytes;
using test::ConversionTest;
using test::Texts;
using LabelText = test::RecordingInterface::LabelText;
using Phase = test::RecordingInterface::Phase;
namespace style = test::style;

/// Where the dictionary of the first type of the root stands.
constexpr const wchar_t* kDictionaryPath = L"/#/[1,3]/[1,2]";

class DictionaryConversion : public ConversionTest {
 protected:
  Texts Values() { return Read(kDictionaryPath, 1); }
  Texts Counts() { return Read(kDictionaryPath, 2); }

  /// Presses cancel, confirmed, at a value of a phase of the next dialog.
  void CancelAt(std::size_t phase, int value) {
    screen_.pressCancel = {phase, value};
    screen_.answers.assign(screen_.messages.size(), Button::kYes);
    screen_.answers.push_back(Button::kYes);
  }
};

TEST_F(DictionaryConversion, WritesIndexAndDescriptor) {
  Fill({"b", "a", "b", ""});
  Convert(style::kDictionary);
  const ContainerBytes file = Bytes();
  const std::int64_t descriptor = file.Descriptor(file.Root(), kField);
  const std::int64_t index = file.Int32(descriptor);
  EXPECT_EQ(file.Byte(descriptor + 8), 11);
  EXPECT_EQ(file.Int32(descriptor + 9), 1);  // the width covers the data type as well
  EXPECT_EQ(file.Byte(descriptor + 11), 0);
  // The tag, the lower half of the count, then the entries over its upper half.
  EXPECT_EQ(file.bytes().substr(static_cast<std::size_t>(index - 1)), std::string("\3\0\3\0"
                                                                                  "\1\2\1\3"
                                                                                  "\0\0\0\0",
                                                                                  12));
  EXPECT_EQ(db_.Style(L"", kField), "11 1 true false 0");
  EXPECT_EQ(Read(), (Texts{"b", "a", "b", ""}));
  ExpectNeighbours();
}

TEST_F(DictionaryConversion, PutsValuesAndCountsIntoTheTypesProperty) {
  Fill({"b", "a", "b", "c", "b"});
  Convert(style::kDictionary);
  EXPECT_EQ(db_.Id(L"", -2, kField), 2);
  EXPECT_EQ(db_.Get(L"/#", 1, 1), "2");
  EXPECT_EQ(db_.Get(L"/#/[1,3]", 1, 1), "dictionary");
  EXPECT_TRUE(db_.HoldsMatrix(L"/#/[1,3]", 1, 2));
  EXPECT_EQ(db_.Fields(kDictionaryPath), 2);
  EXPECT_EQ(Values(), (Texts{"b", "a", "c"}));
  EXPECT_EQ(Counts(), (Texts{"3", "1", "1"}));
}

TEST_F(DictionaryConversion, ShowsItsStepsWithShiftedResults) {
  Fill({"b", "a", "b", "b"});
  Convert(style::kDictionary);
  EXPECT_EQ(screen_.LastDialog().texts,
            (std::vector<LabelText>{
                {L"Label", L"Изменение способа хранения данных: \"Словарный\"", false},
                {L"Steps(1)", L"» Анализ данных таблицы...", true},
                {L"StpRes(1)", L"50% - Эфективность метода", false},
                {L"Steps(1)", L"Анализ данных таблицы", false},
                {L"Steps(2)", L"» Создание словаря...", true},
                {L"StpRes(3)", L"Выполнено", false},
                {L"Steps(2)", L"Создание словаря", false},
                {L"Steps(3)", L"» Обновление данных...", true},
                {L"StpRes(2)", L"Выполнено", false},
                {L"Steps(3)", L"Обновление данных", false}}));
  EXPECT_EQ(screen_.LastDialog().phases, (std::vector<Phase>{{0, 4, 4}, {0, 2, 2}, {0, 4, 4}}));
  EXPECT_TRUE(screen_.LastDialog().hidden.empty());
  EXPECT_TRUE(screen_.messages.empty());
}

TEST_F(DictionaryConversion, OfDifferentValuesOnlyGoesOnAllTheSame) {
  Fill({"a", "b", "c"});
  Convert(style::kDictionary);
  EXPECT_EQ(screen_.LastDialog().texts[2].text, L"0% - Эфективность метода");
  EXPECT_EQ(Read(), (Texts{"a", "b", "c"}));
}

TEST_F(DictionaryConversion, OfAMatrixWithoutRecordsTakesValuesAfterwards) {
  Fill({});
  Convert(style::kDictionary);
  EXPECT_EQ(screen_.LastDialog().texts[2].text, L"0% - Эфективность метода");
  db_.AddRecords(L"", 3, 1);
  ASSERT_EQ(db_.Error(), 0);
  db_.Set(L"", 3, kField, "new");
  EXPECT_EQ(Read(), (Texts{"", "", "new"}));
  EXPECT_EQ(Values(), Texts{"new"});
  ExpectSound();
}

struct Width {
  int distinct;
  int bytes;
};

class IndexWidth : public DictionaryConversion, public testing::WithParamInterface<Width> {};

TEST_P(IndexWidth, FollowsTheNumberOfValues) {
  const Texts texts = Repeating(GetParam().distinct + 5, GetParam().distinct);
  db_.New();
  db_.AddFields(L"", 3, 1);
  db_.AddRecords(L"", static_cast<int>(texts.size()), 1);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    db_.Set(L"", static_cast<int>(i) + 1, kField, texts[i]);
  }
  Convert(style::kDictionary);
  EXPECT_EQ(db_.Style(L"", kField), "11 " + std::to_string(GetParam().bytes) + " true false 0");
  EXPECT_TRUE(Read() == texts);
  const ContainerBytes file = Bytes();
  EXPECT_EQ(file.Int32(file.Descriptor(file.Root(), kField) + 9), GetParam().bytes);
  Convert(style::kFree);
  EXPECT_TRUE(Read() == texts);
}

INSTANTIATE_TEST_SUITE_P(With, IndexWidth,
                         testing::Values(Width{1, 1}, Width{255, 1}, Width{256, 2}, Width{300, 2},
                                         Width{31999, 2}, Width{32000, 4}, Width{33000, 4}));

TEST_F(DictionaryConversion, TakesKnownAndNewValuesAfterwards) {
  Fill(Repeating(255, 255));
  Convert(style::kDictionary);
  db_.Set(L"", 1, kField, "v200");
  EXPECT_EQ(Counts()[199], "2");
  EXPECT_EQ(Counts()[0], "0");
  db_.Set(L"", 2, kField, "the 256th value");
  ASSERT_EQ(db_.Error(), 0);
  EXPECT_EQ(db_.Style(L"", kField), "11 2 true false 0");
  db_.AddRecords(L"", 10, 3);
  db_.Set(L"", 3, kField, "v5");
  const Texts texts = Read();
  EXPECT_EQ(texts[0], "v200");
  EXPECT_EQ(texts[1], "the 256th value");
  EXPECT_EQ(texts[2], "v5");
  EXPECT_EQ(texts[3], "");
  EXPECT_EQ(texts[264], "v255");
  db_.Set(L"", 3, kField, "");
  EXPECT_EQ(Read()[2], "");
  ExpectSound();
}

TEST_F(DictionaryConversion, UsesTheDictionaryAgainAndEmptiesWhatIsLeftOver) {
  Fill({"a", "b", "c", "d"});
  Convert(style::kDictionary);
  Convert(style::kFree);
  const std::int64_t matrices =
      static_cast<std::int64_t>(test::WalkStructures(Bytes().bytes()).matrices);
  for (int r = 1; r <= 4; ++r) db_.Set(L"", r, kField, r < 3 ? "x" : "y");
  Convert(style::kDictionary);
  EXPECT_EQ(Values(), (Texts{"x", "y", "", ""}));
  EXPECT_EQ(Counts(), (Texts{"2", "2", "0", "0"}));
  EXPECT_EQ(Read(), (Texts{"x", "x", "y", "y"}));
  EXPECT_EQ(static_cast<std::int64_t>(test::WalkStructures(Bytes().bytes()).matrices), matrices);
  // A new value goes behind the emptied ones.
  db_.Set(L"", 1, kField, "z");
  EXPECT_EQ(Values(), (Texts{"x", "y", "", "", "z"}));
}

TEST_F(DictionaryConversion, GivesAReusedDictionaryTwoRecordsAtLeast) {
  Fill({"a", "a"});
  Convert(style::kDictionary);
  EXPECT_EQ(Values(), Texts{"a"});
  Convert(style::kFixed, 5);
  Convert(style::kDictionary);
  EXPECT_EQ(Values(), (Texts{"a", ""}));
  EXPECT_EQ(Counts(), (Texts{"2", "0"}));
}

TEST_F(DictionaryConversion, AddsTheFieldsThatAReusedMatrixLacks) {
  Fill({"a", "b"});
  db_.SetType(L"", -2, kField, "dictionary", "mine");
  db_.Put(L"/#/[1,3]", 1, 2, "");
  ASSERT_EQ(db_.Error(), 0);
  Convert(style::kDictionary);
  EXPECT_EQ(db_.Title(kDictionaryPath), "mine");
  EXPECT_EQ(Values(), (Texts{"a", "b"}));
  EXPECT_EQ(Read(), (Texts{"a", "b"}));
}

TEST_F(DictionaryConversion, MakesANewMatrixWhereTheOldOneCannotBeFilled) {
  Fill({"a", "b"});
  Convert(style::kDictionary);
  Convert(style::kFree);
  db_.SetStyle(kDictionaryPath, 1, style::kFixed, 1);
  ASSERT_EQ(db_.Error(), 0);
  db_.Set(L"", 1, kField, "a long value");
  Convert(style::kDictionary);
  EXPECT_EQ(Values(), (Texts{"a long value", "b"}));
  EXPECT_EQ(Read(), (Texts{"a long value", "b"}));
}

TEST_F(DictionaryConversion, KeepsTheEntriesOfAFieldThatSharesTheType) {
  Fill({"a", "b", "a"});
  Convert(style::kDictionary);
  // Field 3 gets the type of field 2.
  ContainerBytes file = Bytes();
  file.PutInt16(file.Descriptor(file.Root(), 3) + 13, 2);
  test::WriteBytes(db_.file(), file.bytes());
  for (int r = 1; r <= 3; ++r) db_.Set(L"", r, 3, r == 2 ? "new" : "b");
  db_.SetStyle(L"", 3, style::kDictionary);
  ASSERT_EQ(db_.Error(), 0);
  EXPECT_EQ(Read(L"", 2), (Texts{"a", "b", "a"}));
  EXPECT_EQ(Read(L"", 3), (Texts{"b", "new", "b"}));
  EXPECT_EQ(Values(), (Texts{"a", "b", "new"}));
  EXPECT_EQ(Counts(), (Texts{"2", "3", "1"}));
  ExpectSound();
}

TEST_F(DictionaryConversion, WorksInNestedMatricesAndBesideOtherTypes) {
  db_.New();
  db_.AddFields(L"", 1, 1);
  db_.AddRecords(L"", 1, 1);
  db_.Put(L"", 1, 1, "inner");
  db_.AddFields(L"/[1,1]", 2, 1);
  db_.AddRecords(L"/[1,1]", 3, 1);
  db_.SetType(L"/[1,1]", -2, 1, "@width", "12");
  for (int r = 1; r <= 3; ++r) db_.Set(L"/[1,1]", r, 2, r == 2 ? "two" : "odd");
  for (int f = 1; f <= 2; ++f) {
    db_.SetStyle(L"/[1,1]", f, style::kDictionary);
    ASSERT_EQ(db_.Error(), 0);
  }
  EXPECT_EQ(Read(L"/[1,1]", 1), (Texts{"", "", ""}));
  EXPECT_EQ(Read(L"/[1,1]", 2), (Texts{"odd", "two", "odd"}));
  EXPECT_EQ(db_.Type(L"/[1,1]", -2, 1, "@width"), "12");
  ExpectSound();
}

TEST_F(DictionaryConversion, IsRefusedForWhatDescribesTypes) {
  Fill({"a", "b"});
  Convert(style::kDictionary);
  const std::string bytes = Bytes().bytes();
  for (const wchar_t* steps : {L"/#", L"/#/[1,3]", kDictionaryPath}) {
    db_.SetStyle(steps, 1, style::kDictionary);
    EXPECT_EQ(db_.Error(), 54);
    EXPECT_TRUE(screen_.LastDialog().closed);
  }
  EXPECT_TRUE(Bytes().bytes() == bytes);
}

TEST_F(DictionaryConversion, CancelledInAnyStepLeavesTheOldStyle) {
  const Texts texts = Repeating(9, 4);
  const std::vector<std::pair<std::size_t, std::vector<int>>> presses = {
      {1, {1, 5, 9}}, {2, {1, 2, 4}}, {3, {1, 5, 9}}};
  for (const int former : {style::kFree, style::kFixed}) {
    for (const auto& [phase, values] : presses) {
      for (const int value : values) {
        Fill(texts);
        if (former != style::kFree) Convert(former, 4);
        const std::string before = db_.Style(L"", kField);
        const std::string bytes = Bytes().bytes();
        CancelAt(phase, value);
        db_.SetStyle(L"", kField, style::kDictionary);
        EXPECT_TRUE(screen_.LastDialog().cancelled) << phase << ", " << value;
        EXPECT_TRUE(screen_.LastDialog().closed);
        EXPECT_EQ(screen_.LastDialog().phases.size(), phase);
        EXPECT_EQ(db_.Error(), 0);
        EXPECT_EQ(db_.Style(L"", kField), before);
        EXPECT_EQ(Read(), texts);
        ExpectNeighbours();
        if (phase == 1) {
          EXPECT_TRUE(Bytes().bytes() == bytes);
        }
        ExpectSound();
        // The next attempt comes to its end.
        Convert(style::kDictionary);
        EXPECT_EQ(Read(), texts);
        EXPECT_EQ(Values(), (Texts{"v1", "v2", "v3", "v4"}));
        EXPECT_EQ(Counts(), (Texts{"3", "2", "2", "2"}));
      }
    }
  }
}

TEST_F(DictionaryConversion, ACancelRequestOfAnEarlierOperationHasNoEffect) {
  Fill({"a", "b"});
  CancelAt(1, 1);
  db_.SetStyle(L"", kField, style::kDictionary);
  ASSERT_TRUE(screen_.LastDialog().cancelled);
  Convert(style::kDictionary);
  EXPECT_EQ(db_.Style(L"", kField), "11 1 true false 0");
}

}  // namespace
}  // namespace orv
