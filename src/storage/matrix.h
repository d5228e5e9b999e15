// Matrices, field tables and field descriptors: the structures of a container file.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/file.h"
#include "storage/chain_array.h"
#include "storage/error_code.h"
#include "storage/layout.h"

namespace orv::storage {

/// Whether the file is a container file.
bool CheckOwnFormat(const platform::File& file);
/// Whether the file is a dBASE III table.
bool CheckDbaseFormat(const platform::File& file);

/// Fills an empty file: the header and one matrix with the title.
void CreateContainer(platform::File& file, std::string_view title);

/// Writes a matrix header with its title at `position`.
void CreateMatrixHeader(platform::File& file, std::int32_t position, std::int16_t code,
                        std::string_view title, std::int16_t headerWord);

/// Appends a field table block for `n` fields and stores its position in the matrix header.
void CreateFieldTable(platform::File& file, std::int32_t matrix, std::int16_t n);

/// Position of the matrix's field table block, 0 when it has none.
inline std::int32_t FieldTablePosition(const platform::File& file, std::int32_t matrix) {
  if (matrix < 1) return 0;
  return file.Int32At(std::int64_t{matrix} + layout::matrix::kFieldTable);
}

/// Fields of a container matrix, 0 without a field table.
std::int16_t ContainerFieldCount(const platform::File& file, std::int32_t matrix);
/// Start of the chain array of descriptor positions; raises 9 for a matrix without a field table.
std::int32_t FieldChain(const platform::File& file, std::int32_t matrix);
/// A descriptor's position as the file gives it; raises 9 when it leads outside.
inline std::int32_t CheckedDescriptor(const platform::File& file, std::int32_t descriptor) {
  if (descriptor > 0 && !file.Contains(descriptor, layout::descriptor::kBytes)) {
    platform::Raise(platform::RunTimeError::kSubscript);
  }
  return descriptor;
}
/// Position of field `f`'s descriptor, 0 when its slot is empty. Raises 9 for a field beyond the
/// table and for a descriptor that does not lie inside the file.
std::int32_t FindFieldDescriptor(platform::File& file, std::int32_t matrix, std::int16_t f);

/// Goes through the field table, field by field from the first.
class DescriptorWalk {
 public:
  /// Raises 9 for a matrix without a field table.
  DescriptorWalk(platform::File& file, std::int32_t matrix)
      : file_(file), chain_(FieldChain(file, matrix)) {}

  /// Position of the next field's descriptor, 0 when its slot is empty. Raises 9 behind the table
  /// and for a descriptor outside the file.
  std::int32_t Next() {
    if (slots_.count == 0) FindSlots();
    const std::int32_t descriptor = CheckedDescriptor(file_, file_.Int32At(slots_.position));
    slots_ = {slots_.position + layout::kPointerBytes, slots_.count - 1};
    ++next_;
    return descriptor;
  }

 private:
  void FindSlots();

  platform::File& file_;
  std::int32_t chain_;
  ChainRun slots_;  ///< those of the next field and of its neighbours
  int next_ = 1;
};

/// Writes a fresh descriptor for field `f`: appended when the field has none, else over the present
/// one. A field number of 0 sets the error code 255 and writes nothing; a matrix without a field
/// table raises 5, a field beyond the table 9.
void CreateFieldDescriptor(platform::File& file, std::int32_t matrix, std::int16_t f,
                           ErrorCode& error);

/// Records of a container matrix: 0 without a field table, -1 for matrix position 0.
inline std::int32_t ContainerRecordCount(const platform::File& file, std::int32_t matrix) {
  if (matrix == 0) return -1;
  const std::int32_t table = FieldTablePosition(file, matrix);
  return table < 1 ? 0 : file.Int32At(std::int64_t{table} + layout::field_table::kRecords);
}
/// The records that loops over a matrix go through. A damaged count can claim more records than the
/// file could ever hold; such a count is cut to the file's length.
std::int32_t ReadableRecordCount(const platform::File& file, std::int32_t matrix);
/// The record count for an operation that allocates by it; raises 9 for a count below 0 or beyond
/// all that the file could hold, so that damage never makes a file grow without bound.
std::int32_t TrustedRecordCount(const platform::File& file, std::int32_t matrix);
/// Stores the record count; a matrix without a field table raises 9.
void SetRecordCount(platform::File& file, std::int32_t matrix, std::int32_t n);

}  // namespace orv::storage
