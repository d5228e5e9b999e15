// Copying the data of fields that keep it in a chain array: free and fixed fields.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "inspect/chain_entries.h"
#include "inspect/matrix_queue.h"
#include "inspect/rescue_copy.h"
#include "inspect/rescued_structure.h"

namespace orv::inspect {

/// Copies as much of a field's data as can be reached, at most for `records` records, into one
/// block, and sets the data pointer of the field's descriptor in the copy. Data that ends too early
/// or too late is told to the log.
class ChainedDataRescue {
 public:
  /// Matrices in cells go into the queue.
  ChainedDataRescue(const RescueJob& job, MatrixQueue& matrices) : job_(job), matrices_(matrices) {}

  /// Of a free field, cell by cell. The texts stand in the copy after its `Flush`.
  void CopyFree(const RescuedField& field, std::int32_t records);
  /// Of a fixed field, as bytes; nothing when there was nothing to copy.
  std::optional<PackedField> CopyFixed(const RescuedField& field, std::int32_t records);

 private:
  void TellEnd(const RescuedField& field, const ChainEntries& entries, std::int64_t count,
               std::int32_t records);
  void CopyCells(const RescuedField& field, ChainEntries& entries, std::int64_t count,
                 std::int64_t slot);
  void CopyCell(const RescuedField& field, std::int64_t r, std::int32_t cell, std::int64_t slot);
  void CopyText(const RescuedField& field, std::int64_t r, std::int32_t cell, std::int64_t slot);
  void CopyNested(const RescuedField& field, std::int64_t r, std::int32_t cell, std::int64_t slot);
  void CopyTitle(const RescuedField& field, std::int64_t r, std::int32_t cell, std::int64_t slot,
                 const std::string& obstacle);
  void CopyEntries(ChainEntries& entries, std::int64_t count, std::int64_t width, std::int64_t to);

  RescueJob job_;
  MatrixQueue& matrices_;
  std::string buffer_;
};

}  // namespace orv::inspect
