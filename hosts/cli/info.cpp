#include "cli/info.h"

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <string>
#include <system_error>
#include <vector>

#include "cli/display.h"
#include "cli/failure.h"
#include "cli/matrix.h"
#include "cli/style_text.h"
#include "cli/utf8.h"

namespace orv::cli {
namespace {

// A damaged file may lead round in circles; the description ends somewhere all the same.
constexpr int kGreatestTree = 20000;

std::string KindText(FileKind kind) {
  return kind == FileKind::kContainer ? "container" : "dBASE III table";
}

class Describer {
 public:
  Describer(const Target& target, const InfoLimits& limits, std::ostream& out)
      : root_(target.FilePart()), limits_(limits), out_(out) {}

  void Describe(const std::wstring& path, FileKind kind, int depth) {
    Matrix matrix(path);
    WriteHead(matrix, depth);
    WriteFields(matrix, kind, depth);
    if (kind == FileKind::kContainer) WriteTypes(matrix, depth);
    if (kind == FileKind::kContainer && depth < limits_.depth) DescribeNested(matrix, depth);
  }

 private:
  std::string Indent(int depth) const {
    return std::string(static_cast<std::size_t>(depth) * 2, ' ');
  }

  void WriteHead(Matrix& matrix, int depth) {
    const std::wstring steps = matrix.path().substr(root_.size());
    const std::string title = ToUtf8(Visible(matrix.Title()));
    out_ << '\n' << Indent(depth) << (steps.empty() ? "/" : ToUtf8(steps));
    if (!title.empty()) out_ << "  \"" << title << '"';
    out_ << "  " << Counted(matrix.Records(), "record") << ", " << Counted(matrix.Fields(), "field")
         << '\n';
  }

  void WriteFields(Matrix& matrix, FileKind kind, int depth) {
    const std::int16_t fields = matrix.Fields();
    std::vector<std::wstring> names;
    std::size_t widest = 0;
    for (int field = 1; field <= fields; ++field) {
      names.push_back(Shortened(Visible(matrix.FieldName(static_cast<std::int16_t>(field))), 40));
      widest = std::max(widest, names.back().size());
    }
    for (int field = 1; field <= fields; ++field) {
      const auto number = static_cast<std::int16_t>(field);
      const std::wstring& name = names[static_cast<std::size_t>(field - 1)];
      out_ << Indent(depth) << "  " << PadLeft(std::to_string(field), 4) << "  " << ToUtf8(name)
           << std::string(widest - name.size(), ' ') << "  "
           << (kind == FileKind::kDbase ? "width " + std::to_string(matrix.DbaseWidth(number))
                                        : StyleText(matrix.Style(number)))
           << '\n';
    }
  }

  void WriteTypes(const Matrix& matrix, int depth) {
    Matrix types(PropertyPath(matrix.path()));
    if (!types.Exists()) return;
    out_ << Indent(depth) << "  properties of " << Counted(types.Records(), "type") << '\n';
  }

  void DescribeNested(Matrix& matrix, int depth) {
    const std::vector<std::int16_t> fields = FieldsWithMatrices(matrix);
    const std::int32_t records = fields.empty() ? 0 : matrix.Records();
    int listed = 0;
    std::int64_t left = 0;
    for (std::int32_t record = 1; record <= records; ++record) {
      for (const std::int16_t field : fields) {
        if (!matrix.Cell(record, field).isMatrix) continue;
        if (listed == limits_.nested || ++described_ > kGreatestTree) {
          ++left;
          continue;
        }
        ++listed;
        Describe(CellPath(matrix.path(), record, field), FileKind::kContainer, depth + 1);
      }
    }
    if (left > 0) {
      out_ << '\n'
           << Indent(depth + 1) << "and " << GroupedNumber(left) << " more nested "
           << (left == 1 ? "matrix" : "matrices") << '\n';
    }
  }

  // Only cells of their own can hold a matrix.
  static std::vector<std::int16_t> FieldsWithMatrices(Matrix& matrix) {
    std::vector<std::int16_t> result;
    const std::int16_t fields = matrix.Fields();
    for (int field = 1; field <= fields; ++field) {
      const auto number = static_cast<std::int16_t>(field);
      if (matrix.Style(number).freeSize == kFreeStyle) result.push_back(number);
    }
    return result;
  }

  std::wstring root_;
  InfoLimits limits_;
  std::ostream& out_;
  int described_ = 0;
};

}  // namespace

void WriteInfo(const Target& target, const InfoLimits& limits, std::ostream& out) {
  Matrix matrix(target.Path());
  const FileKind kind = matrix.Kind();
  if (kind == FileKind::kUnknown) {
    throw Failure(ToUtf8(matrix.path()) + ": neither a container file nor a dBASE III table");
  }
  std::error_code failure;
  const auto size = std::filesystem::file_size(target.File(), failure);
  out << "File:  " << ToUtf8(WideName(target.File())) << '\n'
      << "Kind:  " << KindText(kind) << '\n';
  if (!failure) out << "Size:  " << Counted(static_cast<std::int64_t>(size), "byte") << '\n';
  Describer(target, limits, out).Describe(matrix.path(), kind, 0);
}

}  // namespace orv::cli
