// Chained texts: texts of any length that can be rewritten in place.
//
// A text is a list of pieces: a length of 1, 2 or 4 bytes, the piece's bytes, and the int32
// position of the next piece. The length doubles as the piece's capacity.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/file.h"
#include "storage/layout.h"

namespace orv::storage {

/// The text at `position` with length width `L` (1, 2 or 4). A text of one piece is returned as a
/// view of the file; any other is gathered in `buffer`. The view is good until the next write to
/// the file or change of the buffer. Positions below 2 give the empty text. A damaged text (a
/// length that does not fit the file, a chain that loops) ends where the damage begins.
std::string_view ReadChainedText(const platform::File& file, std::int32_t position, int L,
                                 std::string& buffer);

/// What the length field of the piece at `position` says; 0 for a field outside the file.
inline std::int64_t PieceLength(const platform::File& file, std::int64_t position, int L) {
  if (L == layout::kShortLengthBytes) return file.ByteAt(position);
  return L == 2 ? std::int64_t{file.Int16At(position)} : std::int64_t{file.Int32At(position)};
}

/// Whether the text's pieces all lie inside the file and end with a next pointer of 0, so that
/// `ReadChainedText` gives the whole of it.
bool IsWholeText(const platform::File& file, std::int64_t position, int L);

/// Writes the text over the one at `position` and returns where it begins. Position 0 appends a new
/// text at the end of the file; a position behind the end writes a new text there. A text that fits
/// the present pieces shrinks the last piece it needs to its own length; a longer one gets a new
/// piece at the end of the file, written before anything else, so that a full disk changes nothing.
/// Present pieces are then rewritten one after the other, each in one write. Raises 9, with nothing
/// written, when a present piece does not lie inside the file.
std::int32_t WriteChainedText(platform::File& file, std::int32_t position, std::string_view text,
                              int L);

/// Appends the bytes of a new text that will stand at `position`: one piece, or several where the
/// length field cannot hold the whole length.
void AppendTextPieces(std::string& bytes, std::int64_t position, std::string_view text, int L);

/// The longest text of one piece with a 1-byte length, and room for such a piece.
inline constexpr std::size_t kShortPieceLimit = 255;
using ShortPiece =
    std::array<char, layout::kShortLengthBytes + kShortPieceLimit + layout::kPointerBytes>;
/// The bytes of a text that is one such piece.
inline std::int64_t ShortPieceBytes(std::string_view text) {
  return layout::kShortLengthBytes + std::ssize(text) + layout::kPointerBytes;
}
/// Stores them.
inline void StoreShortPiece(std::string_view text, char* bytes) {
  *bytes = static_cast<char>(text.size());
  text.copy(bytes + layout::kShortLengthBytes, text.size());
  std::memset(bytes + layout::kShortLengthBytes + text.size(), 0, layout::kPointerBytes);
}

}  // namespace orv::storage
