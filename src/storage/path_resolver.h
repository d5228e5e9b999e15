// The path resolver and its cache of the last resolved path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "platform/file.h"
#include "storage/error_code.h"
#include "storage/layout.h"
#include "storage/matrix_path.h"
#include "storage/open_file_table.h"
#include "storage/ports.h"

namespace orv::storage {

/// Where a path leads.
struct Location {
  static constexpr std::int32_t kNone = -1;

  /// The location code: a matrix position, -3 for a dBASE III table, else no location.
  std::int32_t position = kNone;
  std::int16_t number = 0;         ///< file number
  platform::File* file = nullptr;  ///< good until the number is closed
  /// The slot of the filtered view that the path ends in, or 0. When it is not 0, records and
  /// fields of the path are the view's.
  std::int16_t filter = 0;
  bool endsInProperties = false;   ///< the last step is "#"
  bool throughProperties = false;  ///< some step is "#": a change here can change type properties

  bool IsMatrix() const { return position > 0; }
  bool IsDbase() const { return position == layout::kDbaseTable; }
  bool IsTable() const { return IsMatrix() || IsDbase(); }
  bool IsView() const { return filter != 0; }
};

/// Finds the cell that a path steps into; implemented by the cell room.
class CellFinder {
 public:
  virtual ~CellFinder() = default;
  /// The position of the matrix nested in the cell, or 0 when the cell holds none. Raises 9 for a
  /// record or field beyond the matrix.
  virtual std::int32_t FindNestedMatrix(std::int32_t matrix, std::int32_t r, std::int16_t f,
                                        platform::File& file) = 0;
};

class PathResolver {
 public:
  PathResolver(platform::NumberedFiles& files, OpenFileTable& openFiles, const Ports& ports,
               ErrorCode& error)
      : files_(files), openFiles_(openFiles), ports_(ports), error_(error) {}

  void SetCellFinder(CellFinder* finder) { cells_ = finder; }

  /// Clears the error code, opens the file and walks the path. A failure leaves its code and gives
  /// a position of -1; a file of neither format, and "#" where there is no property matrix, give 0
  /// without a code.
  ///
  /// The path resolved last is remembered (and only that one): the same path again costs one
  /// comparison, even after its file was closed, for then the file is opened again under its
  /// number.
  Location ResolvePath(const std::wstring& path) {
    error_.Clear();
    return path == last_.key && IsLive() ? last_.location : ResolveOther(path);
  }

  /// Forgets the last path.
  void ForgetLast() { last_ = {}; }
  /// Forgets the last path if it leads into this file.
  void ForgetFile(const platform::FileIdentity& identity);

 private:
  /// The one remembered path. Every store goes here; a position of 0 marks it free.
  struct HandleCache {
    std::wstring key;
    Location location{.position = 0};
    std::wstring fileName;
    std::wstring viewKey;    ///< canonical path of the view; empty when the path ends in none
    std::wstring condition;  ///< of that view
    platform::FileIdentity identity;
    std::uint64_t opening = 0;
    bool caseMatters = false;
  };

  /// A resolution on its way through the steps.
  struct Walk {
    Location location;
    std::uint64_t opening = 0;  ///< of the location's file
    std::wstring viewKey;
    std::wstring condition;
  };

  /// Whether the remembered location can be used as it is: its file is still open and no view is
  /// to be looked up.
  bool IsLive() const {
    if (last_.location.position == 0 || !last_.viewKey.empty()) return false;
    return IsOpen(last_.location.number, last_.opening);
  }
  /// Whether the number still has the file that it had in that opening.
  bool IsOpen(std::int16_t number, std::uint64_t opening) const {
    const platform::File* file = files_.Find(number);
    return file != nullptr && file->opening() == opening;
  }
  /// A path that is not the last one, or whose location must be made usable again.
  Location ResolveOther(const std::wstring& path);
  bool Matches(const std::wstring& path) const;
  bool Revive();
  bool ReviveFile();
  bool ReviveFilter();
  Location ResolveAfresh(const std::wstring& path);
  bool OpenRoot(const std::wstring& fileName, Walk& walk);
  void TakeStep(const MatrixPath& parts, std::size_t index, Walk& walk);
  void EnterFilter(const MatrixPath& parts, std::size_t index, Walk& walk);
  void EnterProperties(Walk& walk);
  void EnterCell(const PathStep& step, Walk& walk);
  std::int16_t UseFilter(const std::wstring& key, const std::wstring& condition);
  void Store(const std::wstring& path, const MatrixPath& parts, const Walk& walk);

  platform::NumberedFiles& files_;
  OpenFileTable& openFiles_;
  const Ports& ports_;
  ErrorCode& error_;
  CellFinder* cells_ = nullptr;
  HandleCache last_;
};

}  // namespace orv::storage
