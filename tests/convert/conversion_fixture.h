// A matrix with one field whose storage style the tests change.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dialogs/recording_interface.h"
#include "platform/code_page.h"
#include "support/container_bytes.h"
#include "support/driver.h"
#include "support/structure_walk.h"

namespace orv::test {

/// The storage styles as hosts name them.
namespace style {
inline constexpr int kFree = 0;
inline constexpr int kFixed = 1;
inline constexpr int kDictionary = 11;
}  // namespace style

using Texts = std::vector<std::string>;

/// Field 2 of three is converted; its neighbours show that nothing else changes.
class ConversionTest : public testing::Test {
 protected:
  static constexpr int kField = 2;

  /// A new file whose field holds these texts, one a record.
  void Fill(const Texts& texts) {
    db_.CloseAll();
    db_.Use(L"table" + std::to_wstring(++files_) + L".orv");
    db_.New("Town");
    db_.AddFields(L"", 3, 1);
    db_.AddRecords(L"", static_cast<int>(texts.size()), 1);
    for (std::size_t i = 0; i < texts.size(); ++i) {
      const int r = static_cast<int>(i) + 1;
      if (!texts[i].empty()) db_.Set(L"", r, kField, texts[i]);
      db_.Set(L"", r, 1, "left " + std::to_string(r));
      db_.Set(L"", r, 3, "right " + std::to_string(r));
    }
    ASSERT_EQ(db_.Error(), 0);
  }

  Texts Read(std::wstring_view steps = {}, int f = kField) {
    Texts texts;
    const int records = db_.Records(steps);
    for (int r = 1; r <= records; ++r) texts.push_back(db_.Get(steps, r, f));
    return texts;
  }

  /// Converts and expects success.
  void Convert(int freeSize, int cellSize = 0, int dataType = 0, bool unique = false) {
    db_.SetStyle(L"", kField, freeSize, cellSize, unique, dataType);
    ASSERT_EQ(db_.Error(), 0);
    ExpectSound();
  }

  void ExpectSound() {
    db_.CloseAll();
    EXPECT_EQ(WalkStructures(db_.Bytes()).Text(), "");
  }

  void ExpectNeighbours() {
    const int records = db_.Records();
    for (int r = 1; r <= records; ++r) {
      ASSERT_EQ(db_.Get(L"", r, 1), "left " + std::to_string(r));
      ASSERT_EQ(db_.Get(L"", r, 3), "right " + std::to_string(r));
    }
  }

  ContainerBytes Bytes() {
    db_.CloseAll();
    return ContainerBytes(db_.Bytes());
  }

  /// Record-wise texts "v1", "v2", ... of `distinct` values.
  static Texts Repeating(int records, int distinct) {
    Texts texts;
    for (int r = 0; r < records; ++r) texts.push_back("v" + std::to_string(r % distinct + 1));
    return texts;
  }

  RecordingInterface screen_;
  Driver db_;

 private:
  int files_ = 0;
};

}  // namespace orv::test
