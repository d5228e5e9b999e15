#include "cli/saving.h"

#include <filesystem>

#include "cli/failure.h"
#include "cli/utf8.h"

namespace orv::cli {

void SaveMatrix(Matrix& matrix, const std::wstring& file, SaveKind kind,
                const ConsoleSession& session) {
  constexpr std::int16_t kContainerType = 1;
  constexpr std::int16_t kTextType = 2;
  const auto path = std::filesystem::path(file);
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
  const bool written = std::filesystem::exists(path) &&
                       (!existed || std::filesystem::last_write_time(path) != stamp);
  if (!written) throw Failure(ToUtf8(file) + ": the file was not written");
}

}  // namespace orv::cli
