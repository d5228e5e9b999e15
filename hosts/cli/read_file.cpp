#include "cli/read_file.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "cli/failure.h"
#include "cli/target.h"

namespace orv::cli {

std::string ReadFile(const std::string& name) {
  std::ostringstream bytes;
  if (name == "-") {
    if (std::cin.peek() != std::istream::traits_type::eof()) bytes << std::cin.rdbuf();
    return std::move(bytes).str();
  }
  const std::filesystem::path path = NativePath(WideArgument(name));
  std::ifstream file(path, std::ios::binary);
  if (!file || std::filesystem::is_directory(path)) throw Failure(name + ": cannot be read");
  if (file.peek() != std::ifstream::traits_type::eof()) bytes << file.rdbuf();
  if (file.bad()) throw Failure(name + ": cannot be read to its end");
  return std::move(bytes).str();
}

}  // namespace orv::cli
