#include "cli/raw_file.h"

#include <cstdint>
#include <string>

#include "cli/failure.h"
#include "cli/utf8.h"
#include "platform/file_names.h"
#include "platform/run_time_error.h"

namespace orv::cli {
namespace {

constexpr std::int16_t kMissing = 53;
constexpr std::int16_t kDeviceFailed = 57;

std::unique_ptr<platform::File> Map(const Target& target, const std::wstring& name) {
  try {
    return std::make_unique<platform::File>(platform::MapFile(name));
  } catch (const platform::RunTimeFailure& failure) {
    throw Failure(ErrorSentence(target.FilePart(), static_cast<std::int16_t>(failure.number())));
  }
}

}  // namespace

std::unique_ptr<platform::File> OpenBytes(const Target& target) {
  const std::wstring name = platform::ExistingSpelling(WideName(target.File()));
  // Mapping would create a missing file.
  if (!platform::FileExists(name)) throw Failure(ErrorSentence(target.FilePart(), kMissing));
  std::unique_ptr<platform::File> file = Map(target, name);
  if (file->Length() == 0) throw Failure(ErrorSentence(target.FilePart(), kMissing));
  return file;
}

void CheckIntact(const platform::File& file, const Target& target) {
  if (file.Faulted()) throw Failure(ErrorSentence(target.FilePart(), kDeviceFailed));
}

std::unique_ptr<platform::File> CreateBytes(const Target& target) {
  return Map(target, WideName(target.File()));
}

}  // namespace orv::cli
