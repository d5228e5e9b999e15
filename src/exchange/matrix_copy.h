// Copying a matrix with everything in it between two container files.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "dialogs/export_data.h"
#include "storage/cell_batch.h"
#include "storage/storage.h"
#include "storage/table_reader.h"

namespace orv::exchange {

/// The structures of one file written anew into another. Nothing of the source is trusted: what its
/// headers claim is bounded by what the file holds, matrices that contain themselves and nesting
/// too deep raise 28.
class MatrixCopy {
 public:
  MatrixCopy(storage::Storage& storage, platform::File& target, dialogs::ExportData& dialog)
      : storage_(storage), target_(target), dialog_(dialog), cells_(target) {}

  /// Copies the fields, records, cells, nested matrices and property matrices of the matrix or view
  /// at `source` into the empty matrix at position `target`. Only the outermost matrix moves the
  /// bar. False when a cancel was confirmed.
  bool SaveInternal(const storage::Location& source, std::int32_t target);

 private:
  /// One field on its way: its reader and, for fields whose cells stand one by one, where the
  /// target's pointers are.
  struct FieldCopy {
    storage::FieldReader* reader = nullptr;
    std::int32_t descriptor = 0;  ///< in the target
    std::int64_t pointers = 0;    ///< position of the first pointer; 0 when there are none
    std::int64_t count = 0;       ///< of pointers
  };

  bool CopyFields(const storage::Location& source, std::int32_t target);
  std::int32_t CopyDescriptor(const platform::File& from, const storage::FieldReader* reader);
  void CopyData(const storage::Location& source, FieldCopy& field, std::int32_t records);
  std::int64_t EntriesToCopy(const storage::Location& source, const FieldCopy& field,
                             std::int32_t width, std::int32_t records);
  void PreparePointers(const storage::Location& source, FieldCopy& field, std::int32_t records);
  void CopyFixed(const storage::Location& source, const FieldCopy& field, std::int32_t records);
  void CopyIndex(const storage::Location& source, const FieldCopy& field, std::int32_t records);
  bool CopyCells(const storage::Location& source, const std::vector<FieldCopy>& fields,
                 std::int32_t records);
  bool CopyNested(const storage::Location& source, std::int32_t cell, std::int64_t slot);
  bool CopyProperties(const storage::Location& source, std::int32_t target);

  storage::Storage& storage_;
  platform::File& target_;
  dialogs::ExportData& dialog_;
  storage::CellBatch cells_;               ///< of all levels
  std::unordered_set<std::int32_t> open_;  ///< source matrices that are being copied
};

}  // namespace orv::exchange
