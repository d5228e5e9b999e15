#include "support/container_bytes.h"

#include <stdexcept>

namespace orv::test {

std::int64_t ContainerBytes::Integer(std::int64_t position, int width, bool isSigned) const {
  if (position < 1 || position - 1 + width > size()) {
    throw std::out_of_range("position " + std::to_string(position));
  }
  if (reads_ != nullptr) reads_->insert({position, width});
  std::uint64_t value = 0;
  for (int i = width - 1; i >= 0; --i) {
    value =
        value << 8 | static_cast<unsigned char>(bytes_[static_cast<std::size_t>(position - 1 + i)]);
  }
  const auto sign = std::uint64_t{1} << (8 * width - 1);
  const auto number = static_cast<std::int64_t>(value);
  return isSigned && (value & sign) != 0 ? number - static_cast<std::int64_t>(sign << 1) : number;
}

void ContainerBytes::Put(std::int64_t position, int width, std::int64_t value) {
  Integer(position, width, false);
  for (int i = 0; i < width; ++i) {
    bytes_[static_cast<std::size_t>(position - 1 + i)] =
        static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * i));
  }
}

std::int64_t ContainerBytes::Append(std::string_view bytes) {
  bytes_ += bytes;
  return size() - static_cast<std::int64_t>(bytes.size()) + 1;
}

std::int64_t ContainerBytes::Descriptor(std::int64_t matrix, std::int64_t f) const {
  return Int32(Entry(FieldTable(matrix) + 6, f, 4));
}

std::int64_t ContainerBytes::Entry(std::int64_t start, std::int64_t k, std::int64_t w) const {
  std::int64_t before = 0;
  for (std::int64_t block = start; block != 0;) {
    const std::int64_t n = Int32(block);
    if (k <= before + n) return block + 4 + (k - before - 1) * w;
    before += n;
    block = Int32(block + 4 + n * w);
  }
  return 0;
}

std::int64_t ContainerBytes::Cell(std::int64_t matrix, std::int64_t r, std::int64_t f) const {
  const std::int64_t slot = Entry(Int32(Descriptor(matrix, f)), r, 4);
  return slot == 0 ? 0 : Int32(slot);
}

void ContainerBytes::MakeFixed(std::int64_t matrix, std::int64_t f, int cellSize, int dataType) {
  const std::int64_t descriptor = Descriptor(matrix, f);
  PutInt32(descriptor, 0);
  PutByte(descriptor + 8, 5);
  PutInt16(descriptor + 9, cellSize);
  PutInt16(descriptor + 11, dataType);
}

void ContainerBytes::MakeDictionary(std::int64_t matrix, std::int64_t f, int width) {
  const std::int64_t descriptor = Descriptor(matrix, f);
  const auto entries = static_cast<std::size_t>(Records(matrix) * width);
  const std::int64_t index =
      Append(std::string("\x03\x00\x00\x00", 4) + std::string(entries + 4, '\0'));
  PutInt32(descriptor, index);
  PutByte(descriptor + 8, 11);
  PutInt32(descriptor + 9, width);
}

}  // namespace orv::test
