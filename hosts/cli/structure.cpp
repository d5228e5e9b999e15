#include "cli/structure.h"

#include <limits>

#include "cli/failure.h"

namespace orv::cli {
namespace {

// What the engine answers to more fields than a field number can name.
constexpr std::int16_t kTooManyFields = 6;

}  // namespace

void RemoveForReplacement(const std::filesystem::path& file) {
  if (std::filesystem::is_regular_file(file)) std::filesystem::remove(file);
}

void CreateFile(const Target& target, const std::wstring& title, bool replace) {
  if (replace) RemoveForReplacement(target.File());
  Matrix matrix(target.FilePart());
  std::wstring file = target.FilePart();
  std::wstring name = title;
  matrix.engine().CmdNewOrvDB(file, name);
  matrix.Check();
}

void AddNamedFields(Matrix& matrix, const std::vector<std::wstring>& names, std::int16_t at) {
  if (names.empty()) return;
  if (names.size() > std::numeric_limits<std::int16_t>::max()) matrix.Fail(kTooManyFields);
  matrix.AddFields(static_cast<std::int16_t>(names.size()), at);
  for (std::size_t i = 0; i < names.size(); ++i) {
    const auto field = static_cast<std::int16_t>(at + static_cast<std::int16_t>(i));
    if (!names[i].empty()) matrix.SetCell(0, field, names[i]);
  }
}

std::int16_t FieldInsertPosition(Matrix& matrix, std::int32_t asked) {
  const std::int16_t fields = matrix.Fields();
  if (asked == 0) return static_cast<std::int16_t>(fields + 1);
  if (asked < 1 || asked > fields + 1) {
    throw BadUsage("a field can be added at 1 to " + std::to_string(fields + 1));
  }
  if (asked == fields) {
    throw BadUsage("adding at the last field would empty it; add at " + std::to_string(fields + 1) +
                   " to append");
  }
  return static_cast<std::int16_t>(asked);
}

}  // namespace orv::cli
