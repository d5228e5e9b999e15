// The tour of the README and the examples of docs/inspection.md, run as they stand.
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

/// The blocks of a page of the project; of one section where its heading is given.
std::vector<Block> ReadBlocks(const std::string& name, const std::string& heading = {}) {
  const auto root = std::filesystem::path(ORV_TEST_DATA_DIR).parent_path().parent_path();
  std::ifstream page(root / name);
  std::vector<Block> blocks;
  std::string* into = nullptr;
  bool inSection = heading.empty();
  for (std::string line; std::getline(page, line);) {
    if (!heading.empty() && line.starts_with("## ")) inSection = line == heading;
    if (!inSection) continue;
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

/// Runs the blocks from number `first` on in a folder of their own and compares what they print.
void RunBlocks(const std::vector<Block>& blocks, std::size_t first) {
  const orv::test::TempFolder folder;
  const std::string bin = std::filesystem::path(ORV_COMMAND).parent_path();
  const std::string setUp = "cd '" + folder.path().string() + "'; PATH='" + bin + "':$PATH\n";
  for (std::size_t i = first; i < blocks.size(); ++i) {
    EXPECT_EQ(RunInShell(setUp + blocks[i].commands), blocks[i].output) << blocks[i].commands;
  }
}

TEST(ReadmeTest, TheTourPrintsWhatTheReadmeShows) {
  const std::vector<Block> tour = ReadBlocks("README.md", "## Five-minute tour");
  ASSERT_GE(tour.size(), 7U);
  // The first block only leads to the command and to an empty folder, which is done here.
  RunBlocks(tour, 1);
}

TEST(InspectionPageTest, TheExamplesPrintWhatThePageShows) {
  const std::vector<Block> examples = ReadBlocks("docs/inspection.md");
  ASSERT_GE(examples.size(), 5U);
  RunBlocks(examples, 0);
}

}  // namespace
