#include "inspect/matrix_search.h"

#include "storage/field_reader.h"
#include "storage/layout.h"
#include "storage/matrix.h"

namespace orv::inspect {

namespace layout = storage::layout;
using platform::File;
using storage::PathStep;

namespace {

std::int32_t IfMatrix(const File& file, std::int32_t position) {
  return CanBeMatrix(file, position) ? position : 0;
}

std::int32_t NestedIn(File& file, std::int32_t matrix, std::int32_t record, std::int16_t field) {
  const std::int32_t descriptor = storage::FindFieldDescriptor(file, matrix, field);
  if (descriptor < 1 || !storage::HoldsFreeCells(descriptor, file)) return 0;
  std::string buffer;
  const storage::FreeCell cell = storage::ReadFreeCell(file, matrix, descriptor, record, buffer);
  return cell.code < 0 ? cell.position : 0;
}

std::int32_t Step(File& file, std::int32_t matrix, const PathStep& step) {
  switch (step.kind) {
    case PathStep::Kind::kProperties:
      return file.Int32At(std::int64_t{matrix} + layout::matrix::kProperties);
    case PathStep::Kind::kCell:
      return NestedIn(file, matrix, step.record, step.field);
    default:
      return 0;
  }
}

}  // namespace

bool CanBeMatrix(const File& file, std::int64_t position) {
  return file.Contains(position, layout::matrix::kHeaderBytes);
}

std::int32_t RootOf(const File& file) {
  return IfMatrix(file, file.Int32At(layout::file::kRootPointer));
}

std::int32_t FindMatrix(File& file, const std::vector<PathStep>& steps) {
  std::int32_t matrix = RootOf(file);
  try {
    for (const PathStep& step : steps) {
      if (matrix == 0) return 0;
      matrix = IfMatrix(file, Step(file, matrix, step));
    }
  } catch (const platform::RunTimeFailure&) {
    return 0;
  }
  return matrix;
}

std::string StepText(const std::vector<PathStep>& steps) {
  std::string text;
  for (const PathStep& step : steps) {
    text += step.kind == PathStep::Kind::kProperties
                ? "/#"
                : "/[" + std::to_string(step.record) + "," + std::to_string(step.field) + "]";
  }
  return text;
}

}  // namespace orv::inspect
