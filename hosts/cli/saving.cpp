#include "cli/saving.h"

#include <filesystem>

#include "cli/failure.h"
#include "cli/structure.h"
#include "cli/target.h"
#include "cli/utf8.h"

namespace orv::cli {
namespace {

constexpr std::int16_t kNotOverwritten = 51;

}  // namespace

void SaveMatrix(Matrix& matrix, const std::wstring& file, SaveKind kind, bool replace,
                const ConsoleSession& session) {
  constexpr std::int16_t kContainerType = 1;
  constexpr std::int16_t kTextType = 2;
  const std::filesystem::path path = NativePath(file);
  if (replace) RemoveForReplacement(path);
  const bool existed = std::filesystem::exists(path);
  const auto stamp =
      existed ? std::filesystem::last_write_time(path) : std::filesystem::file_time_type();
  std::wstring source = matrix.path();
  std::wstring target = file;
  Boolean withProperties = ToBoolean(kind == SaveKind::kContainerWithProperties);
  std::int16_t type = kind == SaveKind::kText ? kTextType : kContainerType;
  matrix.engine().SaveMtxAs(source, target, withProperties, type);
  matrix.Check();
  session.Check("the export");
  if (!std::filesystem::exists(path)) throw Failure(ToUtf8(file) + ": the file was not written");
  // A declined question leaves no error code.
  if (existed && std::filesystem::last_write_time(path) == stamp) {
    throw Failure(ErrorSentence(file, kNotOverwritten));
  }
}

}  // namespace orv::cli
