#include "cli/records.h"

#include <algorithm>
#include <ostream>
#include <string_view>

#include <nlohmann/json.hpp>

#include "cli/csv.h"
#include "cli/display.h"
#include "cli/utf8.h"

namespace orv::cli {
namespace {

constexpr std::string_view kGap = "  ";
constexpr std::wstring_view kNumberHead = L"#";

// The cells of the selection, one after another.
class Cells {
 public:
  Cells(Matrix& matrix, const RecordSelection& selection)
      : matrix_(matrix), selection_(selection) {}

  std::size_t Columns() const { return selection_.fields.size(); }
  std::wstring Name(std::size_t column) { return matrix_.FieldName(selection_.fields[column]); }
  CellText At(std::int32_t record, std::size_t column) {
    return matrix_.Cell(record, selection_.fields[column], selection_.formulas);
  }
  template <typename Visit>
  void ForEachRecord(Visit visit) {
    for (std::int64_t record = selection_.first; record <= selection_.last; ++record) {
      visit(static_cast<std::int32_t>(record));
    }
  }
  const RecordSelection& selection() const { return selection_; }
  std::wstring Title() { return matrix_.Title(); }

 private:
  Matrix& matrix_;
  const RecordSelection& selection_;
};

// An aligned table. The cells are read twice, for the widths and for the lines, so that a table of
// any length needs no room.
class TableWriter {
 public:
  TableWriter(Cells& cells, const RecordLayout& layout, std::ostream& out)
      : cells_(cells), layout_(layout), out_(out), widths_(cells.Columns(), 1) {}

  void Write() {
    Measure();
    if (layout_.header) WriteHeader();
    cells_.ForEachRecord([&](std::int32_t record) {
      Line line(*this, std::to_wstring(record));
      for (std::size_t i = 0; i < widths_.size(); ++i) line.Add(i, Text(record, i));
      out_ << line.Finished() << '\n';
    });
  }

 private:
  // A line under construction; blanks are added only when another cell follows.
  class Line {
   public:
    Line(const TableWriter& table, const std::wstring& number)
        : table_(table), text_(PadLeft(ToUtf8(number), table.numberWidth_)) {}
    void Add(std::size_t column, const std::wstring& cell) {
      text_.append(missing_, ' ').append(kGap).append(ToUtf8(cell));
      missing_ = table_.widths_[column] - cell.size();
    }
    const std::string& Finished() {
      text_.erase(text_.find_last_not_of(' ') + 1);
      return text_;
    }

   private:
    const TableWriter& table_;
    std::string text_;
    std::size_t missing_ = 0;
  };

  std::wstring Text(std::int32_t record, std::size_t column) {
    const CellText cell = cells_.At(record, column);
    const std::wstring text = cell.isMatrix ? L"[" + cell.text + L"]" : cell.text;
    return Shortened(Visible(text), layout_.cellColumns);
  }
  std::wstring Head(std::size_t column) {
    return Shortened(Visible(cells_.Name(column)), layout_.cellColumns);
  }

  void Measure() {
    numberWidth_ = std::max(kNumberHead.size(), std::to_string(cells_.selection().last).size());
    for (std::size_t i = 0; layout_.header && i < widths_.size(); ++i) {
      widths_[i] = std::max(widths_[i], Head(i).size());
    }
    cells_.ForEachRecord([&](std::int32_t record) {
      for (std::size_t i = 0; i < widths_.size(); ++i) {
        widths_[i] = std::max(widths_[i], Text(record, i).size());
      }
    });
  }

  void WriteHeader() {
    Line names(*this, std::wstring(kNumberHead));
    Line rules(*this, std::wstring(numberWidth_, L'-'));
    for (std::size_t i = 0; i < widths_.size(); ++i) {
      names.Add(i, Head(i));
      rules.Add(i, std::wstring(widths_[i], L'-'));
    }
    out_ << names.Finished() << '\n' << rules.Finished() << '\n';
  }

  Cells& cells_;
  const RecordLayout& layout_;
  std::ostream& out_;
  std::vector<std::size_t> widths_;
  std::size_t numberWidth_ = 1;
};

void WriteDelimited(Cells& cells, char delimiter, bool header, std::ostream& out) {
  const auto writeLine = [&](auto text) {
    for (std::size_t i = 0; i < cells.Columns(); ++i) {
      if (i > 0) out << delimiter;
      out << CsvCell(ToUtf8(text(i)), delimiter);
    }
    out << '\n';
  };
  if (header) writeLine([&](std::size_t i) { return cells.Name(i); });
  cells.ForEachRecord([&](std::int32_t record) {
    writeLine([&](std::size_t i) { return cells.At(record, i).text; });
  });
}

// Written piece by piece: a document of the whole table would be far larger than the table.
void WriteJson(Cells& cells, std::ostream& out) {
  const auto quoted = [](const std::wstring& text) { return nlohmann::json(ToUtf8(text)).dump(); };
  const auto writeList = [&](auto item) {
    out << '[';
    for (std::size_t i = 0; i < cells.Columns(); ++i) out << (i > 0 ? ", " : "") << item(i);
    out << ']';
  };
  out << "{\"title\": " << quoted(cells.Title()) << ",\n \"fields\": ";
  writeList([&](std::size_t i) { return quoted(cells.Name(i)); });
  out << ",\n \"records\": [";
  bool first = true;
  cells.ForEachRecord([&](std::int32_t record) {
    out << (first ? "\n  " : ",\n  ");
    first = false;
    writeList([&](std::size_t i) {
      const CellText cell = cells.At(record, i);
      return cell.isMatrix ? "{\"matrix\": " + quoted(cell.text) + "}" : quoted(cell.text);
    });
  });
  out << (first ? "]}\n" : "\n ]}\n");
}

}  // namespace

void WriteRecords(Matrix& matrix, const RecordSelection& selection, const RecordLayout& layout,
                  std::ostream& out) {
  Cells cells(matrix, selection);
  switch (layout.format) {
    case RecordFormat::kTable:
      return TableWriter(cells, layout, out).Write();
    case RecordFormat::kTsv:
      return WriteDelimited(cells, '\t', layout.header, out);
    case RecordFormat::kCsv:
      return WriteDelimited(cells, ',', layout.header, out);
    case RecordFormat::kJson:
      return WriteJson(cells, out);
  }
}

}  // namespace orv::cli
