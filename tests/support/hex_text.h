// Bytes as text that a reader can check.
#pragma once

#include <string>
#include <string_view>

namespace orv::test {

/// The bytes of a golden text. It consists of hex bytes ("01 ff"), quoted characters ("abc"),
/// repetitions (00*8) and, from "#" to the end of a line, remarks.
std::string FromHex(std::string_view text);

/// Bytes as lines of sixteen with their 1-based positions; two dumps differ where the bytes do.
std::string HexDump(std::string_view bytes);

}  // namespace orv::test
