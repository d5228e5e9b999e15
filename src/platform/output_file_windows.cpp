#include <algorithm>

#include "platform/fault_points.h"
#include "platform/os_error.h"
#include "platform/output_file.h"
#include "platform/windows_api.h"

namespace orv::platform {
namespace {

constexpr std::size_t kGreatestWrite = std::size_t{1} << 30;

class WindowsOutputFile final : public OutputFile {
 public:
  explicit WindowsOutputFile(Handle file) : file_(std::move(file)) {}

  void Write(std::string_view bytes) override {
    PassFaultPoint(FileOperation::kOutputWrite);
    while (!bytes.empty()) {
      const auto asked = static_cast<DWORD>(std::min(bytes.size(), kGreatestWrite));
      DWORD written = 0;
      if (WriteFile(file_.get(), bytes.data(), asked, &written, nullptr) == 0) RaiseOsError();
      bytes.remove_prefix(written);
    }
  }

  void Close() override {
    PassFaultPoint(FileOperation::kOutputClose);
    file_ = Handle();
  }

 private:
  Handle file_;
};

}  // namespace

std::unique_ptr<OutputFile> CreateOutputFile(const std::wstring& path) {
  PassFaultPoint(FileOperation::kOutputCreate);
  Handle file(CreateFileW(LongName(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                          CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.IsValid()) RaiseOsError();
  return std::make_unique<WindowsOutputFile>(std::move(file));
}

}  // namespace orv::platform
