// A source file and exports of it.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dialogs/recording_interface.h"
#include "support/container_bytes.h"
#include "support/driver.h"
#include "support/structure_walk.h"

namespace orv::test {

inline constexpr int kContainerFile = 1;
inline constexpr int kTextFile = 0;

class ExportTest : public testing::Test {
 protected:
  /// Everything that the members tell of a matrix and what is in it, as text: titles, names,
  /// styles, codes, cells, nested matrices and property matrices.
  std::string Describe(const std::wstring& steps = {}) {
    std::string text = "[" + db_.Title(steps) + "\n";
    const int records = db_.Records(steps);
    const int fields = db_.Fields(steps);
    for (int f = 1; f <= fields; ++f) {
      text += "field " + db_.Get(steps, 0, f) + ": " + db_.Style(steps, f) + ", " +
              std::to_string(db_.Id(steps, -2, f)) + ", " + std::to_string(db_.Id(steps, 0, f)) +
              "\n";
    }
    for (int r = 1; r <= records; ++r) {
      for (int f = 1; f <= fields; ++f) {
        text += std::to_string(db_.Id(steps, r, f)) + " " + db_.Get(steps, r, f) + "\n";
        if (db_.HoldsMatrix(steps, r, f)) text += Describe(Nested(steps, r, f));
      }
    }
    if (db_.Records(steps + L"/#") >= 0) text += "#" + Describe(steps + L"/#");
    return text + "]\n";
  }

  static std::wstring Nested(const std::wstring& steps, int r, int f) {
    return steps + L"/[" + std::to_wstring(r) + L"," + std::to_wstring(f) + L"]";
  }

  std::string Target() { return ReadBytes(db_.folder().Name(L"target")); }
  bool TargetExists() { return Exists(db_.folder().Name(L"target")); }
  void UseTarget() { db_.Use(L"target"); }
  void UseSource() { db_.Use(L"file.orv"); }

  void ExpectSound() {
    db_.CloseAll();
    EXPECT_EQ(WalkStructures(db_.Bytes()).Text(), "");
  }

  /// Presses the answers given for the message boxes to come.
  void Answer(std::vector<Button> answers) {
    screen_.answers.assign(screen_.messages.size(), Button::kOk);
    screen_.answers.insert(screen_.answers.end(), answers.begin(), answers.end());
  }

  RecordingInterface screen_;
  Driver db_;
};

}  // namespace orv::test
