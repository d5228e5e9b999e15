#include "inspect/matrix_queue.h"

#include <iterator>

#include "inspect/matrix_search.h"
#include "inspect/sound_code.h"
#include "storage/chain_array.h"
#include "storage/chained_text.h"
#include "storage/layout.h"
#include "storage/matrix.h"

namespace orv::inspect {

namespace layout = storage::layout;

namespace {

constexpr std::int32_t kGreatestDepth = 1000;

/// Whether the matrix at `position` of the source is `matrix` or around it.
bool IsAround(std::int32_t position, const RescuedMatrix* matrix) {
  for (; matrix != nullptr; matrix = matrix->parent) {
    if (matrix->from == position) return true;
  }
  return false;
}

}  // namespace

void MatrixQueue::EnterRoot(std::int32_t position) {
  platform::File& target = job_.copy.file();
  storage::CreateContainer(target, TitleOf(position, "/"));
  const std::int32_t copy = RootOf(target);
  target.WriteInt16(copy, CodeOf(position));
  matrices_.push_back({position, copy, nullptr, "", 0});
}

std::int32_t MatrixQueue::Enter(std::int32_t position, const RescuedMatrix& parent,
                                const std::string& step) {
  const std::string steps = parent.steps + step;
  const std::string title = TitleOf(position, steps);
  if (!job_.copy.HasRoom(layout::matrix::kHeaderBytes + std::ssize(title))) return 0;
  const std::int32_t copy = storage::EndOfFile(job_.copy.file());
  storage::CreateMatrixHeader(job_.copy.file(), copy, CodeOf(position), title,
                              layout::matrix::kHeaderWordValue);
  matrices_.push_back({position, copy, &parent, steps, parent.depth + 1});
  return copy;
}

std::optional<std::string> MatrixQueue::Obstacle(std::int32_t position,
                                                 const RescuedMatrix& parent) const {
  if (!CanBeMatrix(job_.source, position)) return "it does not lie inside the file";
  if (IsAround(position, &parent)) return "it contains itself";
  if (parent.depth >= kGreatestDepth) return "it is nested too deeply";
  return std::nullopt;
}

std::string MatrixQueue::TitleOf(std::int32_t matrix, const std::string& path) {
  const std::int32_t position = job_.source.Int32At(std::int64_t{matrix} + layout::matrix::kTitle);
  std::string buffer;
  std::string title(
      storage::ReadChainedText(job_.source, position, layout::kLongLengthBytes, buffer));
  if (!storage::IsWholeText(job_.source, position, layout::kLongLengthBytes)) {
    job_.log.LoseOfMatrix(
        path, "the title can be read in part only: " + std::to_string(title.size()) + " bytes");
  }
  return title;
}

std::int16_t MatrixQueue::CodeOf(std::int32_t matrix) const {
  return SoundMatrixCode(job_.source.Int16At(matrix));
}

}  // namespace orv::inspect
