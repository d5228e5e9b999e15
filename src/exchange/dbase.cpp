#include "exchange/dbase.h"

#include <algorithm>
#include <array>

#include "platform/code_page.h"
#include "platform/run_time_error.h"
#include "storage/cell_primitives.h"

namespace orv::exchange {

using platform::File;
using platform::Raise;
using platform::RunTimeError;

namespace {

// Offsets of the published dBASE III format, from 0.
constexpr std::int64_t kRecordsOffset = 4;
constexpr std::int64_t kHeaderLengthOffset = 8;
constexpr std::int64_t kRecordLengthOffset = 10;
constexpr std::int64_t kDescriptorBytes = 32;
constexpr std::int64_t kNameBytes = 11;
constexpr std::int64_t kFieldLengthOffset = 16;
constexpr std::int64_t kFlagBytes = 1;  ///< the deletion flag in front of a record's fields

/// A position for a zero-based offset.
constexpr std::int64_t At(std::int64_t offset) { return offset + 1; }

std::uint16_t Unsigned16At(const File& file, std::int64_t offset) {
  return static_cast<std::uint16_t>(file.Int16At(At(offset)));
}

/// Code page 866 to 1251: the Russian capital and small letters are moved, everything else, Ё and ё
/// included, stays.
constexpr std::array<char, 256> MakeConversion() {
  std::array<char, 256> table{};
  for (int c = 0; c < 256; ++c) {
    int to = c;
    if (c >= 128 && c <= 175) to = c + 64;
    if (c >= 224 && c <= 239) to = c + 16;
    table[static_cast<std::size_t>(c)] = static_cast<char>(to);
  }
  return table;
}
constexpr std::array<char, 256> kConversion = MakeConversion();

void Convert(std::string_view bytes, std::string& text) {
  text.resize(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    text[i] = kConversion[static_cast<unsigned char>(bytes[i])];
  }
}

std::uint8_t WidthByte(const File& file, std::int16_t f) {
  return file.ByteAt(At(kDescriptorBytes * f + kFieldLengthOffset));
}

/// Where the cell's bytes begin.
std::int64_t CellPosition(const File& file, std::int32_t r, std::int16_t f) {
  std::int64_t offset = Unsigned16At(file, kHeaderLengthOffset) + kFlagBytes +
                        (std::int64_t{r} - 1) * Unsigned16At(file, kRecordLengthOffset);
  const std::string_view before = file.View(At(kDescriptorBytes), kDescriptorBytes * (f - 1));
  for (std::size_t width = kFieldLengthOffset; width < before.size(); width += kDescriptorBytes) {
    offset += static_cast<unsigned char>(before[width]);
  }
  return At(offset);
}

/// The bytes of the range; another program may have lengthened the file since it was last looked
/// at.
std::string_view Bytes(File& file, std::int64_t position, std::int64_t count) {
  if (!file.Contains(position, count)) [[unlikely]] {
    file.RefreshLength();
  }
  return file.View(position, count);
}

}  // namespace

std::int32_t DbaseTables::RecordCount(File& file) const { return file.Int32At(At(kRecordsOffset)); }

std::int32_t DbaseTables::ReadableRecordCount(File& file) const {
  constexpr std::int64_t kBelieved = 1000;
  file.RefreshLength();
  const std::int64_t room = file.Length() - Unsigned16At(file, kHeaderLengthOffset);
  const std::int64_t width = std::max<std::int64_t>(Unsigned16At(file, kRecordLengthOffset), 1);
  const std::int64_t held = (room + width - 1) / width;
  return static_cast<std::int32_t>(
      std::min<std::int64_t>(RecordCount(file), std::max(held, kBelieved)));
}

std::int16_t DbaseTables::FieldCount(File& file) const {
  return static_cast<std::int16_t>((Unsigned16At(file, kHeaderLengthOffset) - kDescriptorBytes) /
                                   kDescriptorBytes);
}

std::int16_t DbaseTables::FieldWidth(File& file, std::int16_t f) const {
  return WidthByte(file, f);
}

std::string DbaseTables::FieldName(File& file, std::int16_t f) const {
  const std::string_view bytes = Bytes(file, At(kDescriptorBytes * f), kNameBytes);
  const std::size_t end = bytes.find('\0');
  // A name that fills all its bytes is returned as it stands, in the table's own code page.
  if (end == std::string_view::npos) return std::string(bytes);
  std::string name;
  Convert(platform::Trim(bytes.substr(0, end)), name);
  return name;
}

std::string_view DbaseTables::ReadCell(File& file, std::int32_t r, std::int16_t f) const {
  const std::string_view bytes = Bytes(file, CellPosition(file, r, f), WidthByte(file, f));
  const std::string_view text = platform::Trim(bytes);
  if (platform::IsAscii(text)) return text;
  Convert(text, converted_);
  return converted_;
}

void DbaseTables::WriteCell(File& file, std::int32_t r, std::int16_t f, std::string_view text) {
  if (r < 1) Raise(RunTimeError::kPermissionDenied);
  if (r > RecordCount(file) || f < 1 || f > FieldCount(file)) Raise(RunTimeError::kSubscript);
  const std::int64_t position = CellPosition(file, r, f);
  const std::int64_t width = WidthByte(file, f);
  if (!file.Contains(position, width)) file.RefreshLength();
  if (!file.Contains(position, width)) Raise(RunTimeError::kSubscript);
  file.Write(position, storage::PaddedText(text, static_cast<std::size_t>(width)));
}

}  // namespace orv::exchange
