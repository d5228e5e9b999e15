// Which cell codes can be true.
#pragma once

#include <cstdint>

#include "storage/cell_code.h"
#include "storage/layout.h"

namespace orv::inspect {

/// Whether the code's type number is one: never 0, and it leaves room for the two flags.
constexpr bool HasTypeNumber(storage::CellCode code) {
  return code.type >= storage::layout::cell::kPlainType &&
         code.type < storage::layout::cell::kLongForm;
}

/// The code with its type number where that is one, else with the plain type; form and flag stay.
constexpr storage::CellCode SoundCode(std::int16_t word) {
  storage::CellCode code = storage::DecodeCellCode(word);
  if (!HasTypeNumber(code)) code.type = storage::layout::cell::kPlainType;
  return code;
}

/// Likewise as the code of a text: positive.
constexpr std::int16_t SoundTextCode(std::int16_t word) {
  storage::CellCode code = SoundCode(word);
  code.matrix = false;
  return storage::EncodeCellCode(code);
}

/// Likewise as the code of a matrix: negative.
constexpr std::int16_t SoundMatrixCode(std::int16_t word) {
  storage::CellCode code = SoundCode(word);
  code.matrix = true;
  return storage::EncodeCellCode(code);
}

}  // namespace orv::inspect
