#include "storage/matrix.h"

#include <algorithm>
#include <string>

#include "storage/bytes.h"
#include "storage/chain_array.h"
#include "storage/chained_text.h"
#include "storage/layout.h"

namespace orv::storage {

using platform::File;
using platform::Raise;
using platform::RunTimeError;

namespace {

/// Records take at least a byte each when they are inserted, but their fields may all be gone: up
/// to this count even a small file is believed.
constexpr std::int64_t kPlausibleRecords = 1'000'000;

std::string NewDescriptor() {
  using namespace layout::descriptor;
  constexpr std::int16_t kPlainCode = layout::cell::kPlainType;
  std::string bytes(kBytes, '\0');
  bytes[kStyle] = 1;
  PatchInteger(bytes, kFieldCode, kPlainCode);
  PatchInteger(bytes, kTitleCell, kPlainCode);
  return bytes;
}

/// Appends the bytes of a matrix header, with its title, that will stand at `position`.
void AppendMatrixHeader(std::string& bytes, std::int32_t position, std::int16_t code,
                        std::string_view title, std::int16_t headerWord) {
  using namespace layout::matrix;
  const std::int64_t titlePosition = std::int64_t{position} + kHeaderBytes;
  if (titlePosition > platform::kGreatestLength) Raise(RunTimeError::kOverflow);
  std::string header(kHeaderBytes, '\0');
  PatchInteger(header, kCode, code);
  PatchInteger(header, kTitle, static_cast<std::int32_t>(titlePosition));
  PatchInteger(header, kHeaderWord, headerWord);
  bytes += header;
  AppendTextPieces(bytes, titlePosition, title, layout::kLongLengthBytes);
}

}  // namespace

bool CheckOwnFormat(const File& file) {
  using namespace layout::file;
  return file.View(kMagicPosition, kMagic.size()) == kMagic && file.ByteAt(1) == kFirstByte;
}

bool CheckDbaseFormat(const File& file) {
  if (file.Length() == 0) return false;
  const std::uint8_t first = file.ByteAt(1);
  return first == layout::file::kDbaseFirstByte || first == layout::file::kDbaseDigit;
}

void CreateContainer(File& file, std::string_view title) {
  using namespace layout::file;
  std::string header(kBeginning);
  header.resize(static_cast<std::size_t>(kMagicPosition - 1), ' ');
  header.append(kMagic).append(kBanner);
  const auto root = static_cast<std::int32_t>(header.size()) + kRootGap;
  PatchInteger(header, kRootPointer - 1, root);
  header.resize(static_cast<std::size_t>(root - 1), '\0');
  AppendMatrixHeader(header, root, layout::matrix::kPlainCode, title,
                     layout::matrix::kHeaderWordValue);
  file.Write(1, header);  // in one write: a file is a whole container or none
}

void CreateMatrixHeader(File& file, std::int32_t position, std::int16_t code,
                        std::string_view title, std::int16_t headerWord) {
  std::string bytes;
  AppendMatrixHeader(bytes, position, code, title, headerWord);
  file.Write(position, bytes);
}

std::int32_t AppendFieldTable(File& file, std::int16_t n) {
  std::string bytes(layout::field_table::kChain, '\0');
  PatchInteger(bytes, layout::field_table::kFields, n);
  AppendInteger(bytes, std::int32_t{n});
  bytes.append(static_cast<std::size_t>(n) * layout::kPointerBytes + layout::kPointerBytes, '\0');
  const std::int32_t block = EndOfFile(file);
  file.Write(block, bytes);
  return block;
}

void SetFieldTable(File& file, std::int32_t matrix, std::int32_t table) {
  file.WriteInt32(std::int64_t{matrix} + layout::matrix::kFieldTable, table);
}

void CreateFieldTable(File& file, std::int32_t matrix, std::int16_t n) {
  SetFieldTable(file, matrix, AppendFieldTable(file, n));
}

std::int16_t ContainerFieldCount(const File& file, std::int32_t matrix) {
  const std::int32_t table = FieldTablePosition(file, matrix);
  return table < 1 ? std::int16_t{0}
                   : file.Int16At(std::int64_t{table} + layout::field_table::kFields);
}

std::int32_t FieldChain(const File& file, std::int32_t matrix) {
  const std::int32_t table = FieldTablePosition(file, matrix);
  if (!file.Contains(table, layout::field_table::kChain)) Raise(RunTimeError::kSubscript);
  return table + layout::field_table::kChain;
}

std::int32_t FindFieldDescriptor(File& file, std::int32_t matrix, std::int16_t f) {
  return CheckedDescriptor(
      file, ReadChainEntry(file, FieldChain(file, matrix), f, layout::kPointerBytes, false).value);
}

void DescriptorWalk::FindSlots() {
  slots_ = FindChainRun(file_, chain_, next_, layout::kPointerBytes);
  if (slots_.count == 0) Raise(RunTimeError::kSubscript);
}

std::int32_t AppendFieldDescriptor(File& file) {
  const std::int32_t position = EndOfFile(file);
  file.Write(position, NewDescriptor());
  return position;
}

void ResetFieldDescriptor(File& file, std::int32_t descriptor) {
  CheckedDescriptor(file, descriptor);
  file.Write(descriptor, NewDescriptor());
}

void CreateFieldDescriptor(File& file, std::int32_t matrix, std::int16_t f, ErrorCode& error) {
  if (f == 0) {
    error.Set(code::kBadArgument);
    return;
  }
  const std::int32_t table = FieldTablePosition(file, matrix);
  if (table < 1) Raise(RunTimeError::kInvalidCall);
  const ChainEntry slot =
      ReadChainEntry(file, table + layout::field_table::kChain, f, layout::kPointerBytes, false);
  if (slot.value > 0) return ResetFieldDescriptor(file, slot.value);
  file.WriteInt32(slot.position, AppendFieldDescriptor(file));
}

std::int32_t PlausibleRecordCount(const File& file, std::int32_t count) {
  const std::int64_t greatest = std::max(file.Length(), kPlausibleRecords);
  return static_cast<std::int32_t>(std::min<std::int64_t>(count, greatest));
}

std::int32_t ReadableRecordCount(const File& file, std::int32_t matrix) {
  return PlausibleRecordCount(file, ContainerRecordCount(file, matrix));
}

std::int32_t TrustedRecordCount(const File& file, std::int32_t matrix) {
  const std::int32_t records = ContainerRecordCount(file, matrix);
  if (records < 0 || records != ReadableRecordCount(file, matrix)) Raise(RunTimeError::kSubscript);
  return records;
}

void SetRecordCount(File& file, std::int32_t matrix, std::int32_t n) {
  const std::int32_t table = FieldTablePosition(file, matrix);
  if (!file.Contains(table, layout::field_table::kChain)) Raise(RunTimeError::kSubscript);
  file.WriteInt32(std::int64_t{table} + layout::field_table::kRecords, n);
}

}  // namespace orv::storage
