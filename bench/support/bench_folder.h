// A private temporary directory for the files of one run.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace orv::bench {

class BenchFolder {
 public:
  /// Below `parent`, or the system's temporary directory when that is empty.
  explicit BenchFolder(const std::string& parent) {
    const std::filesystem::path base =
        parent.empty() ? std::filesystem::temp_directory_path() : std::filesystem::path(parent);
    std::string name = (base / "orv-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot create " + name);
    path_ = name;
  }
  ~BenchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  BenchFolder(const BenchFolder&) = delete;
  BenchFolder& operator=(const BenchFolder&) = delete;

  std::string File(const std::string& name) const { return (path_ / name).string(); }
  /// Puts a copy in the place of a file that was just filled: what is measured then is a file as it
  /// arrives, not the state in which its builder left the system's cache.
  void Renew(const std::string& name) const {
    std::filesystem::copy_file(path_ / name, path_ / "copy");
    std::filesystem::rename(path_ / "copy", path_ / name);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace orv::bench
