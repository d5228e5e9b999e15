// One open file of the engine's in a folder of its own.
#pragma once

#include <string>
#include <string_view>

#include "platform/file.h"
#include "support/temp_folder.h"

namespace orv::test {

/// A new file, open; closed and opened again on request.
class TempFile {
 public:
  explicit TempFile(std::string_view content = {}) {
    WriteBytes(name_, content);
    Reopen();
  }

  platform::File& operator*() const { return *file_; }
  platform::File* operator->() const { return file_.get(); }
  const std::wstring& name() const { return name_; }

  void Reopen() {
    file_.reset();
    file_ = std::make_unique<platform::File>(platform::MapFile(name_));
  }
  /// Everything that the file holds.
  std::string Bytes() const { return std::string(file_->View(1, file_->Length())); }

 private:
  TempFolder folder_;
  std::wstring name_ = folder_.Name(L"file");
  std::unique_ptr<platform::File> file_;
};

}  // namespace orv::test
