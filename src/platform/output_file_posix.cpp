#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/fault_points.h"
#include "platform/file_limit.h"
#include "platform/file_names.h"
#include "platform/os_error.h"
#include "platform/output_file.h"

namespace orv::platform {
namespace {

constexpr int kClosed = -1;

class PosixOutputFile final : public OutputFile {
 public:
  explicit PosixOutputFile(int descriptor) : descriptor_(descriptor) {}
  ~PosixOutputFile() override {
    if (descriptor_ != kClosed) close(descriptor_);
  }

  void Write(std::string_view bytes) override {
    PassFaultPoint(FileOperation::kOutputWrite);
    if (written_ + std::ssize(bytes) > FileSizeLimit()) Raise(RunTimeError::kDiskFull);
    while (!bytes.empty()) {
      const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) RaiseOsError();
      bytes.remove_prefix(static_cast<std::size_t>(written));
      written_ += written;
    }
  }

  void Close() override {
    PassFaultPoint(FileOperation::kOutputClose);
    if (close(std::exchange(descriptor_, kClosed)) != 0 && errno != EINTR) RaiseOsError();
  }

 private:
  int descriptor_;
  std::int64_t written_ = 0;
};

}  // namespace

std::unique_ptr<OutputFile> CreateOutputFile(const std::wstring& path) {
  PassFaultPoint(FileOperation::kOutputCreate);
  constexpr int kMode = 0666;
  const std::string name = NativeName(path);
  const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kMode);
  // A missing file is created, so what is missing here is a directory on the way.
  if (descriptor < 0 && errno == ENOENT) Raise(RunTimeError::kPathNotFound);
  if (descriptor < 0) RaiseOsError();
  return std::make_unique<PosixOutputFile>(descriptor);
}

}  // namespace orv::platform
