#include "fuzz/support/confinement.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace orv::fuzz {
namespace {

/// The folder that files are confined to; empty when they are not. Never destroyed: files are
/// opened and closed until the process ends.
std::filesystem::path& Confinement() {
  static auto* folder = new std::filesystem::path;
  return *folder;
}

bool IsInside(const char* name) {
  const std::filesystem::path& folder = Confinement();
  const std::filesystem::path path = (folder / name).lexically_normal();
  return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first ==
         folder.end();
}

bool Refuses(const char* name) {
  if (Confinement().empty() || IsInside(name)) return false;
  errno = EACCES;
  return true;
}

}  // namespace

void ConfineTo(const std::filesystem::path& folder) {
  std::filesystem::current_path(folder);
  Confinement() = std::filesystem::absolute(folder).lexically_normal();
  std::atexit([] { Confinement().clear(); });  // what tools write at the end is theirs
}

void Clear(const std::filesystem::path& folder, const std::filesystem::path& kept) {
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().filename() != kept) std::filesystem::remove_all(entry.path());
  }
}

}  // namespace orv::fuzz

// The linker puts these in the place of the calls (its option --wrap) and keeps the system's own
// under the other names.
extern "C" {
int __real_open(const char* name, int flags, ...);
int __real_unlink(const char* name);
int __wrap_open(const char* name, int flags, ...);
int __wrap_unlink(const char* name);

int __wrap_open(const char* name, int flags, ...) {
  if (orv::fuzz::Refuses(name)) return -1;
  if ((flags & O_CREAT) == 0) return __real_open(name, flags);
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = va_arg(rest, mode_t);
  va_end(rest);
  return __real_open(name, flags, mode);
}

int __wrap_unlink(const char* name) { return orv::fuzz::Refuses(name) ? -1 : __real_unlink(name); }
}
