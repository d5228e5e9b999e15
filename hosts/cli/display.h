// Texts made ready for columns on a terminal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orv::cli {

/// The text with control characters written out ("\n", "\t", "\x07"), so that it stays on one line
/// and every character takes one column.
std::wstring Visible(std::wstring_view text);

/// At most `columns` characters, the last one an ellipsis where the text is longer; 0 sets no
/// limit.
std::wstring Shortened(std::wstring text, std::size_t columns);

/// Blanks in front up to `columns`.
std::string PadLeft(const std::string& text, std::size_t columns);

/// The number with its thousands set apart: "1,234,567".
std::string GroupedNumber(std::int64_t number);

/// "1 record", "1,234 records".
std::string Counted(std::int64_t count, const std::string& noun);

}  // namespace orv::cli
