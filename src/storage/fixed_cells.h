// The texts of fixed-width cells.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "storage/error_code.h"

namespace orv::storage {

/// The property "type" that makes a fixed-width cell an integer cell.
inline constexpr std::string_view kIntType = "int";

/// How the cells of a fixed-width field are to be understood: by the property "type" when it is
/// "int", else by the descriptor's data type, for which numbers take their decimals from the
/// property "decimals".
struct FixedFormat {
  std::int16_t cellSize = 0;
  std::int16_t dataType = 0;
  std::int32_t decimals = 0;
  bool intProperty = false;

  /// Whether an empty cell is zeros instead of blanks.
  bool IsNumeric() const;
};

/// The text of a cell of type "int": one byte unsigned, two and four bytes signed; nothing for
/// other sizes.
std::optional<std::string> IntCellText(std::string_view bytes);

/// The text that a cell's bytes stand for.
std::string FixedCellText(std::string_view bytes, const FixedFormat& format);

/// The bytes of a cell for a text by the descriptor's data type: integers and numbers packed,
/// integers of four bytes as int32, everything else padded with blanks. A value without an image
/// sets the error code and gives the empty text.
std::string FixedCellBytes(std::string_view text, const FixedFormat& format, ErrorCode& error);

/// The image of a text in a field that becomes fixed-width: what `EncodeFixed` packs for the data
/// type, integers of four bytes as int32. Under the property "int" it is what the reading of such a
/// field turns back into the number. A value without an image leaves its error code (6 when the
/// packing names none) and gives the empty text.
std::string FixedImage(std::string_view text, const FixedFormat& format, ErrorCode& error);

}  // namespace orv::storage
