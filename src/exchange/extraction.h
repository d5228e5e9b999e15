// Pictures and files held in cells, written out as files of their own.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orv::exchange {

/// What a cell holds by its property "type".
enum class ContentKind : std::uint8_t { kText, kContent, kFile };

/// "image" and "wave" cells hold content, "file" cells a file with its extension in front.
ContentKind KindOf(std::string_view typeProperty);

/// The extension and the data of a cell's text.
struct Extract {
  std::string extension;
  std::string_view data;  ///< a part of the cell's text
};

/// Content tells its extension by its first bytes ("jpg", "gif", "bmp", otherwise "tmp"). A file
/// cell's first character is the length of the extension that follows it; characters that could
/// lead out of the target's folder become "_".
Extract ExtractOf(ContentKind kind, std::string_view text);

/// "_", the last four digits of the whole seconds since midnight, "-", the record, "x", the field,
/// "." and the extension.
std::string ExtractName(std::int32_t seconds, std::int32_t r, std::int32_t f,
                        std::string_view extension);

}  // namespace orv::exchange
