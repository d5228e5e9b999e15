// Runs a target over committed inputs without libFuzzer: replay FOLDER.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/support/entry.h"

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: replay FOLDER\n";
    return 2;
  }
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(arguments[1])) {
    files.push_back(std::filesystem::absolute(entry.path()));
  }
  std::sort(files.begin(), files.end());
  if (files.empty()) {
    std::cerr << "there are no inputs in " << arguments[1] << '\n';
    return 1;
  }
  for (const auto& file : files) {
    std::cout << file.filename().string()
              << std::endl;  // the last one named is the one that ended it
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
  std::cout << files.size() << " inputs" << std::endl;
  return 0;
}
