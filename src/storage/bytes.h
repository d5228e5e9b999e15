// Little-endian integers as bytes, for structures that are written in one piece.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

namespace orv::storage {

/// Appends the integer's bytes, lowest first.
template <typename Integer>
void AppendInteger(std::string& bytes, Integer value) {
  char raw[sizeof value];
  std::memcpy(raw, &value, sizeof value);
  bytes.append(raw, sizeof value);
}

/// Stores the integer's bytes over existing ones.
template <typename Integer>
void PatchInteger(std::string& bytes, std::size_t offset, Integer value) {
  std::memcpy(bytes.data() + offset, &value, sizeof value);
}

}  // namespace orv::storage
