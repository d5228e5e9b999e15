#include "cli/style_text.h"

#include <algorithm>
#include <array>

namespace orv::cli {
namespace {

// By type code; there is no type 5.
constexpr std::array<std::string_view, 12> kTypeNames = {
    "variant",   "integer", "number", "real",  "currency", "",
    "date&time", "logic",   "path",   "image", "string",   "file"};

std::string SelectorText(const FieldStyle& style) {
  const std::string size = std::to_string(style.cellSize);
  switch (style.freeSize) {
    case kFreeStyle:
      return "free";
    case kFixedStyle:
      return "fixed, " + size + (style.cellSize == 1 ? " byte" : " bytes");
    case kCompressedStyle:
      return "compressed";
    case kDictionaryStyle:
      return "dictionary, " + size + "-byte index";
    default:
      return "unknown style " + std::to_string(style.freeSize);
  }
}

}  // namespace

std::string DataTypeName(std::int16_t code) {
  const bool named = code >= 0 && code < static_cast<std::int16_t>(kTypeNames.size());
  const std::string_view name = named ? kTypeNames[static_cast<std::size_t>(code)] : "";
  return name.empty() ? "type " + std::to_string(code) : std::string(name);
}

std::optional<std::int16_t> DataTypeCode(std::string_view name) {
  const auto* const found = std::ranges::find(kTypeNames, name);
  if (name.empty() || found == kTypeNames.end()) return std::nullopt;
  return static_cast<std::int16_t>(found - kTypeNames.begin());
}

std::optional<std::int16_t> StyleSelector(std::string_view name) {
  if (name == "free") return kFreeStyle;
  if (name == "fixed") return kFixedStyle;
  if (name == "dictionary") return kDictionaryStyle;
  return std::nullopt;
}

std::string StyleText(const FieldStyle& style) {
  std::string text = SelectorText(style);
  // The dictionary style keeps its index width where the data type would be.
  if (style.dataType != 0 && style.freeSize != kDictionaryStyle) {
    text += ", " + DataTypeName(style.dataType);
  }
  if (style.unique) text += ", unique";
  return text;
}

}  // namespace orv::cli
