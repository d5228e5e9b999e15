// The engine's limits as a host meets them: what still works at each, and that one step beyond
// leaves its error code and everything as it was. docs/limits.md lists them.
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/file_names.h"
#include "support/container_bytes.h"
#include "support/driver.h"
#include "support/structure_walk.h"
#include "support/styled_file.h"

namespace orv {
namespace {

using test::ContainerBytes;
using test::Driver;
namespace styled = test::styled;

constexpr std::int64_t kGreatestLength = 2147483647;

std::int64_t FileSize(const Driver& db) {
  return static_cast<std::int64_t>(std::filesystem::file_size(platform::NativeName(db.file())));
}

/// A table of three records by five fields of every style, in a file that ends shortly before the
/// last position. The hole in the file's middle takes no room on the disk.
class FullFileTest : public testing::Test {
 protected:
  static constexpr int kRecords = 3;

  void SetUp() override {
    MakeStyledFile(db_);
    db_.AddRecords(L"", kRecords, 1);
    for (int r = 1; r <= kRecords; ++r) {
      for (int f = 1; f <= styled::kFields; ++f) {
        if (r == kRecords && f == styled::kFree) continue;  // stays an empty cell
        db_.Set(L"", r, f, std::to_string(r * 10 + f));
      }
    }
    db_.SetType(L"", 1, 1, "unit", "km");
    ASSERT_EQ(db_.Error(), 0);
    db_.CloseAll();
    small_ = db_.Bytes();
    before_ = Contents();
  }

  /// Leaves `room` bytes between the file's end and the greatest length.
  void Fill(std::int64_t room) {
    db_.Records(L"/#");  // closing does not forget the path resolved last, and the file is another
    db_.CloseAll();
    test::WriteBytes(db_.file(), small_);
    test::ResizeFile(db_.file(), static_cast<std::uintmax_t>(kGreatestLength - room));
  }

  /// Everything that the table holds.
  std::vector<std::string> Contents() {
    std::vector<std::string> contents = {db_.Title(), std::to_string(db_.Records()),
                                         std::to_string(db_.Fields()), db_.Type(L"", 1, 1, "unit")};
    for (int f = 1; f <= styled::kFields; ++f) {
      contents.push_back(db_.Style(L"", f));
      for (int r = 0; r <= kRecords; ++r) contents.push_back(db_.Get(L"", r, f));
    }
    return contents;
  }

  /// The calls that need room at the file's end.
  std::vector<std::function<void()>> GrowingCalls() {
    return {
        [this] { db_.Set(L"", 1, 1, "a text longer than the one that is there"); },
        [this] { db_.Set(L"", 1, 1, std::string(300, 'x')); },
        [this] { db_.Set(L"", 2, styled::kDictionary, "a value unknown so far"); },
        [this] { db_.Set(L"", 0, 1, "a field's name"); },
        [this] { db_.SetTitle(L"", "a title that does not fit"); },
        [this] { db_.SetType(L"", 1, 1, "unit", "nautical miles"); },
        [this] { db_.SetType(L"", 1, 1, "digits", "2"); },
        [this] { db_.Put(L"", 1, 1, "a matrix"); },
        [this] { db_.Put(L"", -2, 1, "Types"); },
        [this] { db_.AddFields(L"", 1, styled::kFields + 1); },
        [this] { db_.AddRecords(L"", 1, kRecords + 1); },
        [this] { db_.AddRecords(L"", 100, 1); },
        [this] { db_.ReBit(L"", 1, 1, 4); },
        [this] { db_.SetStyle(L"", 1, 1, 20); },
        [this] { db_.SetStyle(L"", 1, 11); },
        [this] { db_.SetStyle(L"", styled::kText, 0); },
        [this] { db_.InsertTop(); },
    };
  }

  Driver db_;
  std::string small_;
  std::vector<std::string> before_;
};

TEST_F(FullFileTest, WithoutRoomEveryGrowingCallIs6AndNoByteIsWritten) {
  int number = 0;
  for (const auto& call : GrowingCalls()) {
    SCOPED_TRACE(number++);
    Fill(0);
    call();
    EXPECT_EQ(db_.Error(), 6);
    db_.CloseAll();
    EXPECT_EQ(FileSize(db_), kGreatestLength);
    test::ResizeFile(db_.file(), small_.size());
    EXPECT_TRUE(db_.Bytes() == small_);
  }
}

TEST_F(FullFileTest, ACellMayEndAtTheLastPositionAndNotBehindIt) {
  const std::string text = "the last text";
  const auto needed = static_cast<std::int64_t>(2 + 1 + text.size() + 4);
  Fill(needed);
  db_.Set(L"", kRecords, styled::kFree, text);
  EXPECT_EQ(db_.Error(), 0);
  db_.CloseAll();
  EXPECT_EQ(FileSize(db_), kGreatestLength);
  EXPECT_EQ(db_.Get(L"", kRecords, styled::kFree), text);

  Fill(needed - 1);
  db_.Set(L"", kRecords, styled::kFree, text);
  EXPECT_EQ(db_.Error(), 6);
  db_.CloseAll();
  EXPECT_EQ(FileSize(db_), kGreatestLength - (needed - 1));
  EXPECT_EQ(Contents(), before_);
}

TEST_F(FullFileTest, WithTooLittleRoomNoCallLosesAnything) {
  constexpr std::int64_t kStep = 7;
  constexpr std::int64_t kMostRoom = 420;
  int refused = 0;
  int done = 0;
  for (std::int64_t room = 1; room <= kMostRoom; room += kStep) {
    int number = 0;
    for (const auto& call : GrowingCalls()) {
      SCOPED_TRACE("call " + std::to_string(number++) + ", room " + std::to_string(room));
      Fill(room);
      call();
      const int code = db_.Error();
      ASSERT_TRUE(code == 0 || code == 6) << code;
      (code == 0 ? done : refused) += 1;
      EXPECT_LE(FileSize(db_), kGreatestLength);
      if (code == 0) continue;
      EXPECT_EQ(Contents(), before_);
      db_.CloseAll();
      EXPECT_EQ(Contents(), before_);
    }
  }
  EXPECT_GT(refused, 0);
  EXPECT_GT(done, 0);
}

class LimitsTest : public testing::Test {
 protected:
  void SetUp() override {
    db_.New();
    db_.AddFields(L"", 2, 1);
    db_.AddRecords(L"", 3, 1);
  }
  void ExpectUnchanged(const std::string& before) {
    db_.CloseAll();
    EXPECT_TRUE(db_.Bytes() == before) << "nothing was written";
  }
  std::string Settled() {
    db_.CloseAll();
    return db_.Bytes();
  }
  std::string Run(const std::string& command, std::int32_t record = 1) {
    std::wstring text(command.begin(), command.end());
    std::wstring path = db_.Path();
    std::int16_t field = 1;
    const Value result = db_.engine.ExecCmd(text, path, record, field);
    if (result.Text() == nullptr) return "no text";
    return {result.Text()->begin(), result.Text()->end()};
  }

  Driver db_;
};

TEST_F(LimitsTest, TheGreatestFieldNumberWorksAndNoFieldComesAfterIt) {
  db_.AddFields(L"", 32765, 3);
  ASSERT_EQ(db_.Fields(), 32767);
  db_.Set(L"", 3, 32767, "last");
  EXPECT_EQ(db_.Get(L"", 3, 32767), "last");
  const std::string before = Settled();
  for (const int count : {1, 2, 32767}) {
    db_.AddFields(L"", count, 1);
    EXPECT_EQ(db_.Error(), 6) << count;
  }
  ExpectUnchanged(before);
}

TEST_F(LimitsTest, ARecordBehindTheLastIs9WhateverItsNumber) {
  const std::string before = Settled();
  for (const int r : {4, 5, 1000000, INT32_MAX}) {
    EXPECT_EQ(db_.Get(L"", r, 1), "");
    EXPECT_EQ(db_.Error(), 9) << r;
    db_.Set(L"", r, 1, "x");
    EXPECT_EQ(db_.Error(), 9) << r;
  }
  ExpectUnchanged(before);
}

TEST_F(LimitsTest, MoreRecordsThanTheFileCanHoldAre6) {
  const std::string before = Settled();
  for (const int count : {INT32_MAX, INT32_MAX - 3, 536870912}) {
    db_.AddRecords(L"", count, 1);
    EXPECT_EQ(db_.Error(), 6) << count;
  }
  ExpectUnchanged(before);
}

TEST_F(LimitsTest, TextsOfAMegabyteStandWhereverATextCan) {
  std::string text(std::size_t{1} << 20, 'x');
  text.front() = 'a';
  text.back() = 'z';
  db_.Set(L"", 1, 1, text);
  EXPECT_TRUE(db_.Get(L"", 1, 1) == text) << "a free cell";
  db_.SetTitle(L"", text);
  EXPECT_TRUE(db_.Title() == text) << "a title";
  db_.Set(L"", 0, 1, text);
  EXPECT_TRUE(db_.Get(L"", 0, 1) == text) << "a field's name";
  db_.SetType(L"", 1, 2, "note", text);
  EXPECT_TRUE(db_.Type(L"", 1, 2, "note") == text) << "a property";
  db_.SetStyle(L"", 1, 11);
  ASSERT_EQ(db_.Error(), 0);
  EXPECT_TRUE(db_.Get(L"", 1, 1) == text) << "an entry of a dictionary";
  db_.CloseAll();
  EXPECT_TRUE(db_.Get(L"", 1, 1) == text);
  db_.CloseAll();
  EXPECT_EQ(test::WalkStructures(db_.Bytes()).Text(), "");
}

TEST_F(LimitsTest, AFixedCellTakesAsManyCharactersAsItIsWide) {
  constexpr int kWidest = 32767;
  db_.SetStyle(L"", 1, 1, kWidest);
  ASSERT_EQ(db_.Error(), 0);
  db_.Set(L"", 2, 1, std::string(kWidest, 'x') + "and more");
  EXPECT_EQ(db_.Error(), 0);
  EXPECT_TRUE(db_.Get(L"", 2, 1) == std::string(kWidest, 'x'));
  EXPECT_EQ(db_.Get(L"", 3, 1), "");
}

TEST_F(LimitsTest, TypeNumbersEndAt16379) {
  db_.SetType(L"", 1, 1, "unit", "km");
  db_.Set(L"/#", 1, 1, "16378");
  db_.SetType(L"", 2, 1, "unit", "mile");
  EXPECT_EQ(db_.Id(L"", 2, 1), 16379);
  EXPECT_EQ(db_.Type(L"", 2, 1, "unit"), "mile");
  const std::string before = Settled();
  db_.SetType(L"", 3, 1, "unit", "yard");
  EXPECT_EQ(db_.Error(), 6);
  ExpectUnchanged(before);
}

TEST_F(LimitsTest, ParenthesesAndCallsNestSeveralHundredDeepAndTooDeepIs28) {
  const auto nested = [](const std::string& open, int depth) {
    std::string text = "=";
    for (int i = 0; i < depth; ++i) text += open;
    return text + "1" + std::string(static_cast<std::size_t>(depth), ')') + ";";
  };
  for (const char* open : {"(", "val("}) {
    EXPECT_EQ(Run(nested(open, 100)), "1");
    EXPECT_EQ(db_.Error(), 0);
    for (const int depth : {1001, 10000}) {
      Run(nested(open, depth));
      EXPECT_EQ(db_.Error(), 28) << depth;
    }
  }
  EXPECT_EQ(Run("=1+1;"), "2");
}

/// Every cell of field 1 has a formula, which may read the cell of the record before by `Before`.
class FormulaLimitsTest : public LimitsTest {
 protected:
  void Make(int records, const std::string& formula) {
    db_.AddRecords(L"", records - 3, 4);
    ASSERT_EQ(db_.Records(), records);
    db_.SetType(L"", -2, 1, "comp", formula);
    ASSERT_EQ(db_.Error(), 0);
    for (int r = 1; r <= records; ++r) db_.Set(L"", r, 1, "1");
  }
  std::string Before() const {
    return "val(matrix_cell(\"" + db_.folder().path().string() + "/file.orv\",rec-1,1,true))";
  }
  std::string Computed(std::int32_t record) {
    std::wstring path = db_.Path();
    std::int16_t field = 1;
    Boolean isMatrix = Boolean::kFalse;
    Boolean formula = Boolean::kTrue;
    const std::wstring text = db_.engine.GetCellValue(path, record, field, isMatrix, formula);
    return {text.begin(), text.end()};
  }
};

TEST_F(FormulaLimitsTest, FormulasReadFormulasAndTooManyInsideOneAnotherAre28) {
  Make(2000, "=1+if(rec=1,0," + Before() + ");");
  EXPECT_EQ(Computed(20), "20");
  EXPECT_EQ(db_.Error(), 0);
  Computed(2000);
  EXPECT_EQ(db_.Error(), 28);
  EXPECT_EQ(Computed(20), "20");
}

// Sixty records were once enough to keep a host busy for ever.
TEST_F(FormulaLimitsTest, FormulasThatDoubleTheWorkAtEachRecordAre28) {
  Make(60, "=if(rec=1,1," + Before() + "+" + Before() + ");");
  EXPECT_EQ(Computed(10), "512");
  EXPECT_EQ(db_.Error(), 0);
  Computed(60);
  EXPECT_EQ(db_.Error(), 28);
  EXPECT_EQ(Computed(10), "512");
}

TEST_F(LimitsTest, EightViewsStandOnOneAnotherAndTheNinthIs5) {
  std::wstring steps;
  for (int view = 1; view <= 8; ++view) {
    steps += L"/(rec>-" + std::to_wstring(view) + L")";
    EXPECT_EQ(db_.Records(steps), 3) << view;
    EXPECT_EQ(db_.Error(), 0) << view;
  }
  EXPECT_EQ(db_.Records(steps + L"/(rec>-9)"), -1);
  EXPECT_EQ(db_.Error(), 5);
  EXPECT_EQ(db_.Records(steps), 3) << "the eight stand";
}

TEST_F(LimitsTest, NineViewsSideBySideAreBuiltAnewAsTheyAreAskedFor) {
  for (int round = 0; round < 2; ++round) {
    for (int view = 1; view <= 9; ++view) {
      EXPECT_EQ(db_.Records(L"/(rec<" + std::to_wstring(view) + L")"), std::min(view - 1, 3));
      EXPECT_EQ(db_.Error(), 0);
    }
  }
}

}  // namespace
}  // namespace orv
