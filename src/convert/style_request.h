// The text that asks for a storage style.
#pragma once

#include <cstdint>
#include <string_view>

namespace orv::convert {

/// `NewType` taken apart: nine characters, of which the first and the last stand for the number one
/// below their code, and the second to sixth are the cell size as decimal text.
struct StyleRequest {
  std::int16_t freeSize = 0;
  std::int16_t cellSize = 0;
  bool fixedType = false;  ///< parsed; no conversion uses it
  bool unique = false;
  std::int16_t dataType = 0;
};

/// Raises 5 for a request that is not nine characters long and 6 for a cell size beyond 16 bits.
StyleRequest ParseStyleRequest(std::string_view newType);

}  // namespace orv::convert
