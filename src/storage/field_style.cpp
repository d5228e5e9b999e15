#include "storage/field_style.h"

#include "storage/layout.h"

namespace orv::storage {

using platform::File;

void GFStyle(std::int32_t fldPos, FieldStyle& style, const File& nm) {
  const std::int64_t at = fldPos;
  const std::uint8_t styleCode = nm.ByteAt(at + layout::descriptor::kStyle);
  style.fixedType = styleCode >= style_code::kFreeFixedType;
  style.unique = styleCode % 2 == 0;
  if (styleCode < style_code::kFixed) style.freeSize = free_size::kFree;
  if (styleCode == style_code::kFixed || styleCode == style_code::kFixedUnique) {
    style.freeSize = free_size::kFixed;
    style.cellSize = nm.Int16At(at + layout::descriptor::kCellSize);
  }
  if (styleCode == style_code::kCompressed) style.freeSize = free_size::kCompressed;
  if (styleCode == style_code::kDictionary) {
    style.freeSize = free_size::kDictionary;
    style.unique = false;
    style.cellSize = nm.Int16At(at + layout::descriptor::kCellSize);
  }
  style.dataType = nm.Int16At(at + layout::descriptor::kDataType);
}

FieldStyle StyleOf(std::int32_t fldPos, const File& nm) {
  FieldStyle style;
  GFStyle(fldPos, style, nm);
  return style;
}

}  // namespace orv::storage
