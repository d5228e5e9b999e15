#include "cli/analysis.h"

#include <ostream>
#include <string>
#include <unordered_set>
#include <vector>

#include "cli/display.h"
#include "cli/failure.h"
#include "cli/style_text.h"
#include "cli/utf8.h"

namespace orv::cli {
namespace {

constexpr std::int64_t kPointer = 4;
constexpr std::int64_t kCellCode = 2;
constexpr std::size_t kShortTextLimit = 256;

// A cell of its own: pointer, code, length, text, pointer to a next piece. An empty cell is only
// its pointer.
std::int64_t FreeCellBytes(std::size_t length) {
  if (length == 0) return kPointer;
  const std::int64_t lengthBytes = length < kShortTextLimit ? 1 : 4;
  return kPointer + kCellCode + lengthBytes + static_cast<std::int64_t>(length) + kPointer;
}

// The width of an index entry into so many values.
std::int64_t IndexBytes(std::int64_t distinct) {
  if (distinct < 256) return 1;
  return distinct < 32000 ? 2 : 4;
}

std::int64_t PresentBytes(const FieldStyle& style, std::int64_t records, std::int64_t freeBytes,
                          std::int64_t dictionaryBytes) {
  if (style.freeSize == kFixedStyle) return records * style.cellSize;
  return style.freeSize == kDictionaryStyle ? dictionaryBytes : freeBytes;
}

// One line: a name, figures and, behind them, the style.
struct Line {
  std::wstring name;
  std::vector<std::string> figures;
  std::string style;
};

void WriteLine(const Line& line, std::ostream& out) {
  constexpr std::size_t kNameColumns = 24;
  constexpr std::size_t kFigureColumns = 15;
  const std::wstring name = Shortened(Visible(line.name), kNameColumns);
  out << ToUtf8(name) << std::string(kNameColumns - name.size(), ' ');
  for (const std::string& figure : line.figures) out << PadLeft(figure, kFigureColumns);
  out << "  " << line.style << '\n';
}

std::string SavedText(const FieldAnalysis& analysis) {
  if (analysis.bytes == 0) return "-";
  return std::to_string(100 - 100 * analysis.dictionaryBytes / analysis.bytes) + " %";
}

}  // namespace

FieldAnalysis AnalyseField(Matrix& matrix, std::int16_t field) {
  FieldAnalysis analysis;
  const std::int32_t records = matrix.Records();
  std::unordered_set<std::wstring> values;
  std::int64_t freeBytes = 0;
  std::int64_t valueBytes = 0;
  for (std::int32_t record = 1; record <= records; ++record) {
    std::wstring text = matrix.Cell(record, field).text;
    freeBytes += FreeCellBytes(text.size());
    const std::size_t length = text.size();
    // A value is stored once, beside its count: some digits.
    if (values.insert(std::move(text)).second)
      valueBytes += FreeCellBytes(length) + FreeCellBytes(2);
  }
  analysis.distinct = static_cast<std::int64_t>(values.size());
  analysis.dictionaryBytes = records * IndexBytes(analysis.distinct) + valueBytes;
  analysis.bytes = PresentBytes(matrix.Style(field), records, freeBytes, analysis.dictionaryBytes);
  return analysis;
}

void WriteAnalysis(Matrix& matrix, std::ostream& out) {
  if (matrix.Kind() == FileKind::kDbase) {
    throw Failure(ToUtf8(matrix.path()) + ": a dBASE III table has no storage styles");
  }
  WriteLine({L"Field", {"Distinct", "Bytes now", "As dictionary", "Saved"}, "Style"}, out);
  const std::int16_t fields = matrix.Fields();
  for (int number = 1; number <= fields; ++number) {
    const auto field = static_cast<std::int16_t>(number);
    const FieldAnalysis analysis = AnalyseField(matrix, field);
    WriteLine({matrix.FieldName(field),
               {GroupedNumber(analysis.distinct), GroupedNumber(analysis.bytes),
                GroupedNumber(analysis.dictionaryBytes), SavedText(analysis)},
               StyleText(matrix.Style(field))},
              out);
  }
}

}  // namespace orv::cli
