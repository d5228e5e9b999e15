// Runs the real `orv` command in a folder of its own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace orv::test {

/// What a run of the command left.
struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

class CommandTest : public testing::Test {
 protected:
  /// Runs the command with the test's folder as working directory.
  Outcome Run(const std::vector<std::string>& words, std::string_view input = {});
  /// Runs it, expects status 0 and an empty standard error, and returns standard output.
  std::string Out(const std::vector<std::string>& words, std::string_view input = {});
  /// Runs it, expects this status, no output and a one-line message, and returns the message.
  std::string Err(int status, const std::vector<std::string>& words);

  void Write(std::wstring_view file, std::string_view bytes);
  std::string Bytes(std::wstring_view file) const;
  bool HasFile(std::wstring_view file) const;

 private:
  TempFolder folder_;
};

/// A dBASE III table: field names and widths, then the records' bytes without the deletion flags.
struct DbaseField {
  std::string name;
  int width;
};
std::string DbaseTable(const std::vector<DbaseField>& fields,
                       const std::vector<std::string>& records);

}  // namespace orv::test
