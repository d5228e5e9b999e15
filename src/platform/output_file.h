// Files that are written from their beginning to their end.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace orv::platform {

/// A plain file open for writing only: created, or emptied when it exists. Nothing is buffered, so
/// callers write large pieces. Failures raise the run-time error of the operating system's.
class OutputFile {
 public:
  virtual ~OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Writes all bytes behind those written before; after a failure some of them may be there.
  virtual void Write(std::string_view bytes) = 0;
  /// Closes the file and raises what the operating system still has to say; a file that is
  /// destroyed instead is closed in silence.
  virtual void Close() = 0;

 protected:
  OutputFile() = default;
};

std::unique_ptr<OutputFile> CreateOutputFile(const std::wstring& path);

}  // namespace orv::platform
