// UTF-8 at the command's edge; wide text inside.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orv::cli {

/// The text as UTF-8. A surrogate without its partner becomes U+FFFD.
std::string ToUtf8(std::wstring_view text);

/// The text that the bytes encode, or nothing when they are not valid UTF-8 (overlong forms,
/// surrogates and numbers above U+10FFFF included).
std::optional<std::wstring> FromUtf8(std::string_view bytes);

}  // namespace orv::cli
