// Encodings of text that comes from other programs.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orv::cli {

enum class Encoding { kUtf8, kCp1251, kCp866 };

/// "utf-8", "cp1251" or "cp866", letter case ignored; nothing for any other name.
std::optional<Encoding> EncodingNamed(std::string_view name);

/// The text that the bytes stand for; nothing when they are not valid in the encoding, which can
/// happen with UTF-8 only.
std::optional<std::wstring> Decode(std::string_view bytes, Encoding encoding);

/// The text in code page 866, one byte a character; "?" for what the page does not have.
std::string ToCp866(std::wstring_view text);

}  // namespace orv::cli
