#include "support/temp_folder.h"

#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>

#include "platform/file_names.h"

namespace orv::test {
namespace {

#ifdef _WIN32
std::filesystem::path NativePath(const std::wstring& name) { return name; }
#else
std::filesystem::path NativePath(const std::wstring& name) { return platform::NativeName(name); }
#endif

/// A file system in memory where there is one with room: files that grow in steps are slow on a
/// busy disk.
std::filesystem::path ParentFolder() {
  constexpr std::uintmax_t kEnough = std::uintmax_t{256} << 20;
  const std::filesystem::path inMemory = "/dev/shm";
  std::error_code failure;
  const std::filesystem::space_info space = std::filesystem::space(inMemory, failure);
  const bool usable = !failure && space.available >= kEnough && std::getenv("TMPDIR") == nullptr;
  return usable ? inMemory : std::filesystem::temp_directory_path();
}

}  // namespace

TempFolder::TempFolder() {
  constexpr int kAttempts = 100;
  std::random_device random;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    path_ = ParentFolder() / ("orv-test-" + std::to_string(random()));
    // False when the folder is there already: somebody else's.
    if (std::filesystem::create_directory(path_)) return;
  }
  throw std::runtime_error("no temporary folder");
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::wstring TempFolder::Name(std::wstring_view file) const {
  return path_.wstring() + L"/" + std::wstring(file);
}

std::string ReadBytes(const std::wstring& name) {
  std::ifstream in(NativePath(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteBytes(const std::wstring& name, std::string_view bytes) {
  std::ofstream out(NativePath(name), std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out.flush()) throw std::runtime_error("a test file could not be written");
}

void ResizeFile(const std::wstring& name, std::uintmax_t bytes) {
  std::filesystem::resize_file(NativePath(name), bytes);
}

bool Exists(const std::wstring& name) { return std::filesystem::exists(NativePath(name)); }

std::wstring Quoted(const std::wstring& name) { return L'"' + name + L'"'; }

}  // namespace orv::test
