#include "cli/csv.h"

#include "cli/failure.h"

namespace orv::cli {

bool CsvReader::Next(std::vector<std::string>& cells) {
  if (at_ >= text_.size()) return false;
  recordLine_ = line_;
  std::size_t count = 0;
  while (true) {
    if (cells.size() == count) cells.emplace_back();
    ReadCell(cells[count++]);
    if (at_ >= text_.size() || text_[at_] != delimiter_) break;
    ++at_;
  }
  cells.resize(count);
  TakeLineEnd();
  return true;
}

// Stops at a delimiter, a line end or the end of the text. What stands between a closing quote and
// the delimiter belongs to the cell.
void CsvReader::ReadCell(std::string& cell) {
  cell.clear();
  if (at_ < text_.size() && text_[at_] == '"') ReadQuoted(cell);
  const std::size_t start = at_;
  while (at_ < text_.size() && text_[at_] != delimiter_ && text_[at_] != '\n' &&
         text_[at_] != '\r') {
    ++at_;
  }
  cell.append(text_.substr(start, at_ - start));
}

void CsvReader::ReadQuoted(std::string& cell) {
  const std::size_t startLine = line_;
  ++at_;
  while (true) {
    if (at_ >= text_.size()) {
      throw Failure("line " + std::to_string(startLine) + ": a quoted cell begins and never ends");
    }
    const char letter = text_[at_++];
    if (letter == '"') {
      if (at_ >= text_.size() || text_[at_] != '"') return;
      ++at_;
    }
    if (letter == '\n') ++line_;
    cell.push_back(letter);
  }
}

void CsvReader::TakeLineEnd() {
  if (at_ >= text_.size()) return;
  const bool carriageReturn = text_[at_] == '\r';
  ++at_;
  if (carriageReturn && at_ < text_.size() && text_[at_] == '\n') ++at_;
  ++line_;
}

std::string CsvCell(std::string_view cell, char delimiter) {
  const char special[] = {delimiter, '"', '\n', '\r', '\0'};
  if (cell.find_first_of(special) == std::string_view::npos) return std::string(cell);
  std::string quoted = "\"";
  for (const char letter : cell) {
    if (letter == '"') quoted.push_back('"');
    quoted.push_back(letter);
  }
  return quoted + "\"";
}

}  // namespace orv::cli
