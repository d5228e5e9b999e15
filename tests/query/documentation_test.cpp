// The examples of the page on filtered views, run as they stand.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/driver.h"

namespace orv {
namespace {

using test::Driver;

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// The lines of the page's fenced blocks of one kind.
std::vector<std::string> Lines(const std::string& kind) {
  const auto page =
      std::filesystem::path(ORV_TEST_DATA_DIR).parent_path().parent_path() / "docs/filters.md";
  std::ifstream file(page);
  std::vector<std::string> lines;
  bool inside = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("```")) {
      inside = line == "```" + kind;
    } else if (inside) {
      lines.push_back(line);
    }
  }
  return lines;
}

std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  std::istringstream rest(line + " ");
  for (std::string cell; std::getline(rest, cell, '|');) cells.push_back(Trimmed(cell));
  return cells;
}

class FilterDocumentationTest : public testing::Test {
 protected:
  /// The table of the page, with one more field that counts the records.
  void SetUp() override {
    const std::vector<std::string> lines = Lines("table");
    ASSERT_GT(lines.size(), 1U);
    fields_ = static_cast<int>(Cells(lines[0]).size());
    db_.New();
    db_.AddFields(L"", fields_ + 1, 1);
    db_.AddRecords(L"", static_cast<int>(lines.size()) - 1, 1);
    for (std::size_t r = 0; r < lines.size(); ++r) {
      const std::vector<std::string> cells = Cells(lines[r]);
      for (std::size_t f = 0; f < cells.size(); ++f) {
        if (!cells[f].empty()) db_.Set(L"", static_cast<int>(r), static_cast<int>(f + 1), cells[f]);
      }
      db_.Set(L"", static_cast<int>(r), fields_ + 1, std::to_string(r));
    }
  }

  std::string Shown(const std::wstring& steps) {
    const int records = db_.Records(steps);
    if (db_.Error() != 0) return "(error " + std::to_string(db_.Error()) + ")";
    std::string shown;
    for (int r = 1; r <= records; ++r) {
      if (r > 1) shown += ' ';
      shown += db_.Get(steps, r, fields_ + 1);
    }
    return shown.empty() ? "(none)" : shown;
  }

  Driver db_;
  int fields_ = 0;
};

TEST_F(FilterDocumentationTest, TheExamplesShowWhatThePageSays) {
  const std::vector<std::string> lines = Lines("views");
  ASSERT_GT(lines.size(), 20U);
  for (const std::string& line : lines) {
    const std::size_t arrow = line.rfind("->");
    ASSERT_NE(arrow, std::string::npos) << line;
    const std::string steps = Trimmed(line.substr(0, arrow));
    EXPECT_EQ(Shown(std::wstring(steps.begin(), steps.end())), Trimmed(line.substr(arrow + 2)))
        << line;
  }
}

}  // namespace
}  // namespace orv
