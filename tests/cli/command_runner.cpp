#include "command_runner.h"

#include <algorithm>
#include <cstdlib>

#include <sys/wait.h>

namespace orv::test {
namespace {

std::string ShellQuoted(const std::string& word) {
  std::string quoted = "'";
  for (const char letter : word) {
    if (letter == '\'') {
      quoted += "'\\''";
    } else {
      quoted.push_back(letter);
    }
  }
  return quoted + "'";
}

std::string LittleEndian(int value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
  return text;
}

}  // namespace

Outcome CommandTest::Run(const std::vector<std::string>& words, std::string_view input) {
  Write(L".stdin", input);
  std::string line =
      "cd " + ShellQuoted(folder_.path().string()) + " && " + ShellQuoted(ORV_COMMAND);
  for (const std::string& word : words) line += " " + ShellQuoted(word);
  line += " <.stdin >.stdout 2>.stderr";
  const int status = std::system(line.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Bytes(L".stdout"), Bytes(L".stderr")};
}

std::string CommandTest::Out(const std::vector<std::string>& words, std::string_view input) {
  const Outcome outcome = Run(words, input);
  EXPECT_EQ(outcome.status, 0) << testing::PrintToString(words);
  EXPECT_EQ(outcome.err, "") << testing::PrintToString(words);
  return outcome.out;
}

std::string CommandTest::Err(int status, const std::vector<std::string>& words) {
  const Outcome outcome = Run(words);
  EXPECT_EQ(outcome.status, status) << testing::PrintToString(words);
  EXPECT_EQ(outcome.out, "") << testing::PrintToString(words);
  EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
  return outcome.err;
}

void CommandTest::Write(std::wstring_view file, std::string_view bytes) {
  WriteBytes(folder_.Name(file), bytes);
}

std::string CommandTest::Bytes(std::wstring_view file) const {
  return ReadBytes(folder_.Name(file));
}

bool CommandTest::HasFile(std::wstring_view file) const { return Exists(folder_.Name(file)); }

std::string DbaseTable(const std::vector<DbaseField>& fields,
                       const std::vector<std::string>& records) {
  const int header = 32 + 32 * static_cast<int>(fields.size()) + 1;
  int width = 1;
  for (const DbaseField& field : fields) width += field.width;
  std::string table = "\x03" + std::string(3, '\0') +
                      LittleEndian(static_cast<int>(records.size()), 4) + LittleEndian(header, 2) +
                      LittleEndian(width, 2) + std::string(20, '\0');
  for (const DbaseField& field : fields) {
    std::string descriptor = field.name;
    descriptor.resize(11, '\0');
    descriptor += 'C' + std::string(4, '\0') + LittleEndian(field.width, 1);
    descriptor.resize(32, '\0');
    table += descriptor;
  }
  table += '\r';
  for (const std::string& record : records) {
    table += ' ' + record + std::string(static_cast<std::size_t>(width) - 1 - record.size(), ' ');
  }
  return table + '\x1A';
}

}  // namespace orv::test
