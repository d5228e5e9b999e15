// The tour of the README, run as it stands.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace {

/// Commands of the tour and what they print.
struct Block {
  std::string commands;
  std::string output;
};

std::vector<Block> ReadTour() {
  const auto root = std::filesystem::path(ORV_TEST_DATA_DIR).parent_path().parent_path();
  std::ifstream readme(root / "README.md");
  std::vector<Block> blocks;
  std::string* into = nullptr;
  bool inTour = false;
  for (std::string line; std::getline(readme, line);) {
    if (line.starts_with("## ")) inTour = line == "## Five-minute tour";
    if (!inTour) continue;
    if (line == "```sh") {
      into = &blocks.emplace_back().commands;
    } else if (line == "```text") {
      into = &blocks.back().output;
    } else if (line == "```") {
      into = nullptr;
    } else if (into != nullptr) {
      *into += line + "\n";
    }
  }
  return blocks;
}

std::string RunInShell(const std::string& commands) {
  std::string output;
  FILE* shell = popen(("exec 2>&1\n" + commands).c_str(), "r");
  if (shell == nullptr) return "no shell";
  char buffer[4096];
  while (const std::size_t count = fread(buffer, 1, sizeof buffer, shell)) {
    output.append(buffer, count);
  }
  pclose(shell);
  return output;
}

TEST(ReadmeTest, TheTourPrintsWhatTheReadmeShows) {
  const std::vector<Block> tour = ReadTour();
  ASSERT_GE(tour.size(), 7U);
  const orv::test::TempFolder folder;
  const std::string bin = std::filesystem::path(ORV_COMMAND).parent_path();
  const std::string setUp = "cd '" + folder.path().string() + "'; PATH='" + bin + "':$PATH\n";
  // The first block only leads to the command and to an empty folder, which is done here.
  for (std::size_t i = 1; i < tour.size(); ++i) {
    EXPECT_EQ(RunInShell(setUp + tour[i].commands), tour[i].output) << tour[i].commands;
  }
}

}  // namespace
