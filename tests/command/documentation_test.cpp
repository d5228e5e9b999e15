// The examples of docs/command-language.md, run as they stand.
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "command/statements.h"
#include "fake_services.h"
#include "platform/clock.h"
#include "platform/code_page.h"

namespace orv::command::test {
namespace {

constexpr const char* kArrow = "\xE2\x86\x92";  // U+2192 in UTF-8

platform::LocalTime TheMomentOfTheDocument() { return {2031, 11, 5, 12 * 3600 + 9 * 60 + 8.0}; }

std::string Trimmed(const std::string& text) { return std::string(platform::Trim(text)); }

std::vector<std::string> Columns(const std::string& line) {
  std::vector<std::string> columns;
  std::size_t start = 0;
  for (std::size_t bar = line.find('|'); bar != std::string::npos; bar = line.find('|', start)) {
    columns.push_back(Trimmed(line.substr(start, bar - start)));
    start = bar + 1;
  }
  columns.push_back(Trimmed(line.substr(start)));
  return columns;
}

class DocumentServices : public FakeServices {
 public:
  void ReadCell(const std::wstring& path, std::int32_t record, std::int16_t field, bool formula,
                std::string& text) override {
    if (record == 0) {
      text = names.at(static_cast<std::size_t>(field) - 1);
    } else {
      FakeServices::ReadCell(path, record, field, formula, text);
    }
  }
  std::vector<std::string> names;
};

class DocumentationTest : public testing::Test {
 protected:
  DocumentationTest() { platform::SetClock(TheMomentOfTheDocument); }
  ~DocumentationTest() override { platform::SetClock(nullptr); }

  // The lines of all blocks with this mark.
  static std::vector<std::string> Blocks(const std::string& mark) {
    const auto root = std::filesystem::path(ORV_TEST_DATA_DIR).parent_path().parent_path();
    std::ifstream document(root / "docs" / "command-language.md");
    std::vector<std::string> lines;
    bool inside = false;
    for (std::string line; std::getline(document, line);) {
      if (line.rfind("```", 0) == 0) {
        inside = line == "```" + mark;
      } else if (inside) {
        lines.push_back(line);
      }
    }
    return lines;
  }

  void LoadTable() {
    const std::vector<std::string> lines = Blocks("table");
    ASSERT_GE(lines.size(), 2U);
    Table& table = services_.tables[path_];
    for (const std::string& heading : Columns(lines[0])) {
      const std::size_t colon = heading.find(':');
      services_.names.push_back(heading.substr(0, colon));
      table.types.push_back(colon == std::string::npos ? "" : heading.substr(colon + 1));
    }
    for (std::size_t i = 1; i < lines.size(); ++i) table.records.push_back(Columns(lines[i]));
  }

  std::string Run(const std::string& command) {
    services_.error.Clear();
    const std::optional<std::string> result =
        RunCommand(command, kCommandMode, context_, evaluator_);
    std::string shown = result.value_or("(empty value)");
    if (services_.error.IsSet())
      shown += " (error " + std::to_string(services_.error.value()) + ")";
    return shown;
  }

  DocumentServices services_;
  Evaluator evaluator_{services_};
  const std::wstring path_ = L"\"stock.orv\"";
  const Context context_{path_, 2, 1};
};

TEST_F(DocumentationTest, TheExamplesGiveWhatThePageSays) {
  LoadTable();
  int count = 0;
  for (const std::string& line : Blocks("example")) {
    const std::size_t arrow = line.find(kArrow);
    ASSERT_NE(arrow, std::string::npos) << line;
    const std::string command = Trimmed(line.substr(0, arrow));
    const std::string result = Trimmed(line.substr(arrow + std::string(kArrow).size()));
    EXPECT_EQ(Run(command), result) << command;
    ++count;
  }
  EXPECT_GE(count, 90);
}

}  // namespace
}  // namespace orv::command::test
