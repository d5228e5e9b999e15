#include "cli/comparison.h"

#include <algorithm>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "cli/target.h"
#include "cli/utf8.h"

namespace orv::cli {
namespace {

// Records are read in blocks: reading from both files in turn would make the engine resolve the two
// paths anew for every cell.
constexpr std::int32_t kBlockRecords = 500;

[[noreturn]] void Differ(const Matrix& matrix, const std::string& what) {
  throw Failure(ToUtf8(matrix.path()) + ": " + what + " differs from the original");
}

std::string CellName(std::int32_t record, std::int16_t field) {
  return "cell [" + std::to_string(record) + "," + std::to_string(field) + "]";
}

struct Cell {
  CellText content;
  std::int16_t type;
};

std::vector<Cell> ReadBlock(Matrix& matrix, std::int32_t first, std::int32_t last,
                            std::int16_t fields) {
  std::vector<Cell> cells;
  for (std::int32_t record = first; record <= last; ++record) {
    for (int field = 1; field <= fields; ++field) {
      const auto number = static_cast<std::int16_t>(field);
      cells.push_back({matrix.Cell(record, number), matrix.TypeNumber(record, number)});
    }
  }
  return cells;
}

class Comparison {
 public:
  void Compare(Matrix& left, Matrix& right) {
    CompareHeads(left, right);
    const std::int16_t fields = left.Fields();
    const std::int32_t records = left.Records();
    for (std::int32_t first = 1; first <= records && fields > 0; first += kBlockRecords) {
      CompareBlock(left, right, first, std::min(records, first + kBlockRecords - 1), fields);
      if (records - first < kBlockRecords) break;
    }
    CompareProperties(left, right);
  }

  std::int64_t cells() const { return cells_; }

 private:
  static void CompareHeads(Matrix& left, Matrix& right) {
    if (left.Title() != right.Title()) Differ(right, "the title");
    if (left.Records() != right.Records()) Differ(right, "the number of records");
    if (left.Fields() != right.Fields()) Differ(right, "the number of fields");
    const std::int16_t fields = left.Fields();
    for (int number = 1; number <= fields; ++number) {
      const auto field = static_cast<std::int16_t>(number);
      const std::string name = "field " + std::to_string(number);
      if (left.FieldName(field) != right.FieldName(field)) Differ(right, "the name of " + name);
      const FieldStyle ours = left.Style(field);
      const FieldStyle theirs = right.Style(field);
      if (ours.freeSize != theirs.freeSize || ours.cellSize != theirs.cellSize ||
          ours.unique != theirs.unique || ours.dataType != theirs.dataType) {
        Differ(right, "the style of " + name);
      }
    }
  }

  void CompareBlock(Matrix& left, Matrix& right, std::int32_t first, std::int32_t last,
                    std::int16_t fields) {
    const std::vector<Cell> ours = ReadBlock(left, first, last, fields);
    const std::vector<Cell> theirs = ReadBlock(right, first, last, fields);
    for (std::size_t i = 0; i < ours.size(); ++i) {
      const auto width = static_cast<std::size_t>(fields);
      const std::int32_t record = first + static_cast<std::int32_t>(i / width);
      const auto field = static_cast<std::int16_t>(i % width + 1);
      const CellText& own = ours[i].content;
      const CellText& other = theirs[i].content;
      if (own.text != other.text || own.isMatrix != other.isMatrix) {
        Differ(right, CellName(record, field));
      }
      if (ours[i].type != theirs[i].type) Differ(right, "the type of " + CellName(record, field));
      ++cells_;
      if (own.isMatrix) CompareNested(left, right, record, field);
    }
  }

  void CompareNested(const Matrix& left, const Matrix& right, std::int32_t record,
                     std::int16_t field) {
    Matrix ours(CellPath(left.path(), record, field));
    Matrix theirs(CellPath(right.path(), record, field));
    Compare(ours, theirs);
  }

  void CompareProperties(const Matrix& left, const Matrix& right) {
    Matrix ours(PropertyPath(left.path()));
    Matrix theirs(PropertyPath(right.path()));
    const bool exists = ours.Exists();
    if (exists != theirs.Exists()) Differ(right, "the property matrix");
    if (exists) Compare(ours, theirs);
  }

  std::int64_t cells_ = 0;
};

}  // namespace

std::int64_t CompareMatrices(Matrix& left, Matrix& right) {
  Comparison comparison;
  comparison.Compare(left, right);
  return comparison.cells();
}

}  // namespace orv::cli
