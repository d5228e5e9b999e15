#include "storage/dictionary.h"

#include <limits>

#include "storage/bytes.h"
#include "storage/value_types.h"

namespace orv::storage {

namespace {

/// Where the number stands behind the tag of a tagged value.
constexpr std::int64_t kTagBytes = 2;
constexpr std::int32_t kTaggedWidth = 8;

}  // namespace

std::int32_t DictionaryIndex::Read(const platform::File& file, std::int64_t r) const {
  const std::int64_t at = EntryPosition(r);
  if (width_ == 1) return file.ByteAt(at);
  if (width_ == 2) return file.Int16At(at);
  return file.Int32At(width_ == kTaggedWidth ? at + kTagBytes : at);
}

void DictionaryIndex::Write(platform::File& file, std::int64_t r, std::int32_t index) const {
  std::string bytes;
  AppendEntry(bytes, width_, index);
  file.Write(EntryPosition(r), bytes);
}

std::int32_t DictionaryIndex::WidthFor(std::int64_t distinct) {
  constexpr std::int64_t kEndOfByte = 256;
  constexpr std::int64_t kEndOfInt16 = 32000;
  constexpr std::int64_t kEndOfInt32 = 2000000000;
  if (distinct < kEndOfByte) return 1;
  if (distinct < kEndOfInt16) return 2;
  return distinct < kEndOfInt32 ? 4 : kTaggedWidth;
}

std::int32_t DictionaryIndex::Greatest(std::int32_t width) {
  if (width == 1) return std::numeric_limits<std::uint8_t>::max();
  if (width == 2) return std::numeric_limits<std::int16_t>::max();
  return std::numeric_limits<std::int32_t>::max();
}

void DictionaryIndex::AppendEntry(std::string& bytes, std::int32_t width, std::int32_t index) {
  if (width == 1) {
    AppendInteger(bytes, static_cast<std::uint8_t>(index));
  } else if (width == 2) {
    AppendInteger(bytes, static_cast<std::int16_t>(index));
  } else if (width == 4) {
    AppendInteger(bytes, index);
  } else {
    AppendInteger(bytes, kTag);
    AppendInteger(bytes, index);
    AppendInteger(bytes, std::int16_t{0});
  }
}

}  // namespace orv::storage
