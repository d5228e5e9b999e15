// A location that stays usable while the host's events run in between.
#pragma once

#include <cstdint>
#include <string>

#include "storage/storage.h"

namespace orv::query {

/// Where a path leads, found again when its file has been closed meanwhile: a long operation lets
/// events run, and what they call may close files.
class HeldLocation {
 public:
  HeldLocation(storage::Storage& storage, std::wstring path)
      : storage_(storage), path_(std::move(path)) {}

  /// Resolves the path; the error code tells of a failure.
  const storage::Location& Resolve();
  /// Whether what was resolved last can still be used.
  bool IsOpen() const;

  const storage::Location& at() const { return at_; }
  const std::wstring& path() const { return path_; }

 private:
  storage::Storage& storage_;
  std::wstring path_;
  storage::Location at_;
  std::uint64_t opening_ = 0;
};

}  // namespace orv::query
