// Cell codes: one int16 that packs a type number, the length form and the matrix flag.
#pragma once

#include <cstdint>

#include "storage/layout.h"

namespace orv::storage {

/// The three things a cell code says. Type numbers run from 1 to 16379.
struct CellCode {
  std::int16_t type = layout::cell::kPlainType;
  bool longForm = false;  ///< 4-byte lengths instead of 1-byte ones
  bool matrix = false;    ///< the cell holds a nested matrix
};

constexpr std::int16_t EncodeCellCode(CellCode code) {
  int word = code.type == 0 ? layout::cell::kPlainType : code.type;
  if (code.longForm) word += layout::cell::kLongForm;
  return static_cast<std::int16_t>(code.matrix ? -word : word);
}

constexpr CellCode DecodeCellCode(std::int16_t word) {
  const int size = word < 0 ? -int{word} : int{word};
  const bool longForm = size >= layout::cell::kLongForm;
  return {static_cast<std::int16_t>(longForm ? size - layout::cell::kLongForm : size), longForm,
          word < 0};
}

/// The width of the length fields of a cell's text: 4 for the long form and for matrices, else 1.
constexpr int LengthBytes(std::int16_t word) {
  return word < 0 || word >= layout::cell::kLongForm ? layout::kLongLengthBytes
                                                     : layout::kShortLengthBytes;
}

}  // namespace orv::storage
