// Storage styles of fields.
#pragma once

#include <cstdint>

#include "platform/file.h"
#include "storage/cell_code.h"
#include "storage/layout.h"

namespace orv::storage {

/// The storage styles as `FreeSize` names them.
namespace free_size {
inline constexpr std::int16_t kFree = 0;
inline constexpr std::int16_t kFixed = 1;
inline constexpr std::int16_t kCompressed = 2;
inline constexpr std::int16_t kDictionary = 11;
}  // namespace free_size

/// The style byte's codes, stored in files. Unique variants of free and fixed are one higher.
namespace style_code {
inline constexpr std::uint8_t kFree = 1;
inline constexpr std::uint8_t kFreeFixedType = 3;
inline constexpr std::uint8_t kFixed = 5;
inline constexpr std::uint8_t kFixedUnique = 6;
inline constexpr std::uint8_t kCompressed = 7;
inline constexpr std::uint8_t kDictionary = 11;
}  // namespace style_code

/// The five style parameters of a field.
struct FieldStyle {
  std::int16_t freeSize = free_size::kFree;
  std::int16_t cellSize = 0;  ///< bytes a cell, of fixed and dictionary fields
  bool fixedType = false;
  bool unique = false;
  std::int16_t dataType = 0;
};

/// Decodes the style of the descriptor at `fldPos`. What no rule of the style code sets keeps its
/// value.
void GFStyle(std::int32_t fldPos, FieldStyle& style, const platform::File& nm);
/// The style of a descriptor, with nothing set in advance.
FieldStyle StyleOf(std::int32_t fldPos, const platform::File& nm);
/// Whether the style of the descriptor keeps each cell by itself: the style's `freeSize` is free.
inline bool HoldsFreeCells(std::int32_t fldPos, const platform::File& nm) {
  const std::uint8_t styleCode = nm.ByteAt(std::int64_t{fldPos} + layout::descriptor::kStyle);
  return styleCode < style_code::kFixed || StyleOf(fldPos, nm).freeSize == free_size::kFree;
}
/// The decoded type number of the field's own cell code.
inline std::int16_t FieldTypeNumber(std::int32_t fldPos, const platform::File& nm) {
  return DecodeCellCode(nm.Int16At(std::int64_t{fldPos} + layout::descriptor::kFieldCode)).type;
}

}  // namespace orv::storage
