#include "support/dbase_bytes.h"

namespace orv::test {
namespace {

constexpr std::size_t kDescriptorBytes = 32;
constexpr std::size_t kNameBytes = 11;
constexpr std::size_t kTypeOffset = 11;
constexpr std::size_t kWidthOffset = 16;

std::string Sized(std::string text, std::size_t size, char filling) {
  text.resize(size, filling);
  return text;
}

}  // namespace

DbaseBytes::DbaseBytes(std::vector<Field> fields) : fields_(std::move(fields)) {
  bytes_ = Sized("\x03\x7C\x01\x01", kDescriptorBytes, '\0');
  int recordLength = 1;
  for (const Field& field : fields_) {
    std::string descriptor = Sized(Sized(field.name, kNameBytes, '\0'), kDescriptorBytes, '\0');
    descriptor[kTypeOffset] = 'C';
    descriptor[kWidthOffset] = static_cast<char>(field.width);
    bytes_ += descriptor;
    recordLength += field.width;
  }
  bytes_ += '\r';
  ClaimHeaderLength(static_cast<std::uint16_t>(bytes_.size()));
  ClaimRecordLength(static_cast<std::uint16_t>(recordLength));
}

DbaseBytes& DbaseBytes::Add(const std::vector<std::string>& texts) {
  bytes_ += ' ';
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    bytes_ += Sized(texts[i], static_cast<std::size_t>(fields_[i].width), ' ');
  }
  return ClaimRecords(++records_);
}

DbaseBytes& DbaseBytes::PutInteger(std::size_t offset, int width, std::uint32_t value) {
  for (int i = 0; i < width; ++i) {
    bytes_[offset + static_cast<std::size_t>(i)] = static_cast<char>(value >> (8 * i));
  }
  return *this;
}

}  // namespace orv::test
