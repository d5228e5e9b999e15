#include "storage/chained_text.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>
#include <vector>

#include "storage/bytes.h"
#include "storage/chain_array.h"
#include "storage/layout.h"

namespace orv::storage {

using layout::kPointerBytes;
using platform::File;
using platform::Raise;
using platform::RunTimeError;

namespace {

/// The longest piece a length field of this width can state.
std::size_t PieceLimit(int L) {
  constexpr std::size_t kInt16Limit = 32767;
  constexpr std::size_t kInt32Limit = 2147483647;
  if (L == layout::kShortLengthBytes) return kShortPieceLimit;
  return L == 2 ? kInt16Limit : kInt32Limit;
}

void AppendLength(std::string& bytes, std::size_t length, int L) {
  if (L == 1) {
    AppendInteger(bytes, static_cast<std::uint8_t>(length));
  } else if (L == 2) {
    AppendInteger(bytes, static_cast<std::int16_t>(length));
  } else {
    AppendInteger(bytes, static_cast<std::int32_t>(length));
  }
}

bool IsReadableLength(const File& file, std::int64_t length) {
  return length >= 0 && length < file.Length();
}

bool LeadsOn(const File& file, std::int32_t next) { return next >= 1 && next < file.Length(); }

/// The pieces a walk has met. Most texts have one or two.
class PieceTrail {
 public:
  /// False when the piece was met before: the chain loops.
  bool Enter(std::int32_t position) { return met_.insert(position).second; }

 private:
  std::unordered_set<std::int32_t> met_;
};

struct Piece {
  std::int64_t textPosition = 0;
  std::int64_t capacity = 0;
  std::int32_t next = 0;
};

/// A piece that may be written over; raises 9 when it does not lie inside the file.
Piece WritablePiece(const File& file, std::int32_t position, int L) {
  if (!file.Contains(position, L)) Raise(RunTimeError::kSubscript);
  const Piece piece{std::int64_t{position} + L, PieceLength(file, position, L), 0};
  if (piece.capacity < 0 || !file.Contains(piece.textPosition, piece.capacity + kPointerBytes)) {
    Raise(RunTimeError::kSubscript);
  }
  return {piece.textPosition, piece.capacity, file.Int32At(piece.textPosition + piece.capacity)};
}

std::int32_t AppendText(File& file, std::int32_t position, std::string_view text, int L) {
  std::string bytes;
  AppendTextPieces(bytes, position, text, L);
  file.Write(position, bytes);
  return position;
}

/// Writes the text's bytes and the pointer behind them in one write.
void WriteTextAndNext(File& file, std::int64_t position, std::string_view text, std::int32_t next) {
  std::string bytes(text);
  AppendInteger(bytes, next);
  file.Write(position, bytes);
}

void ShrinkPiece(File& file, const Piece& piece, std::string_view text, int L) {
  // The usual overwriting touches nothing but the text, so that not even a process killed in the
  // middle of the store leaves a wrong length or pointer.
  if (std::ssize(text) == piece.capacity && piece.next == 0) {
    return file.Write(piece.textPosition, text);
  }
  if (L == layout::kShortLengthBytes) {
    ShortPiece bytes;
    StoreShortPiece(text, bytes.data());
    file.Write(piece.textPosition - L,
               {bytes.data(), static_cast<std::size_t>(ShortPieceBytes(text))});
    return;
  }
  std::string bytes;
  bytes.reserve(text.size() + static_cast<std::size_t>(L + kPointerBytes));
  AppendLength(bytes, text.size(), L);
  bytes.append(text);
  AppendInteger(bytes, std::int32_t{0});
  file.Write(piece.textPosition - L, bytes);
}

/// The present pieces that a rewriting with `length` bytes will touch, all of them checked, so that
/// it is refused as a whole.
std::vector<Piece> PiecesFor(const File& file, std::int32_t position, std::size_t length, int L) {
  std::vector<Piece> pieces;
  PieceTrail trail;
  auto rest = static_cast<std::int64_t>(length);
  while (trail.Enter(position)) {
    pieces.push_back(WritablePiece(file, position, L));
    rest -= pieces.back().capacity;
    if (rest <= 0 || !LeadsOn(file, pieces.back().next)) break;
    position = pieces.back().next;
  }
  return pieces;
}

/// Rewrites the pieces with the text, which may be too long for them. What is too long goes to a
/// new piece, which stands before anything is rewritten: a full disk changes nothing.
void RewritePieces(File& file, const std::vector<Piece>& pieces, std::string_view text, int L) {
  std::size_t capacity = 0;
  for (const Piece& piece : pieces) capacity += static_cast<std::size_t>(piece.capacity);
  std::int32_t added = 0;
  if (text.size() > capacity) {
    added = AppendText(file, EndOfFile(file), text.substr(capacity), L);
    text = text.substr(0, capacity);
  }
  for (const Piece& piece : pieces) {
    const bool isLast = &piece == &pieces.back();
    if (isLast && added == 0) return ShrinkPiece(file, piece, text, L);
    const auto here = static_cast<std::size_t>(piece.capacity);
    WriteTextAndNext(file, piece.textPosition, text.substr(0, here), isLast ? added : piece.next);
    text.remove_prefix(here);
  }
}

/// The whole text of a chain whose first piece, read already, leads to the one at `next`.
std::string_view GatherPieces(const File& file, std::int32_t position, std::string_view first,
                              std::int32_t next, int L, std::string& buffer) {
  PieceTrail trail;
  trail.Enter(position);
  buffer.assign(first);
  while (LeadsOn(file, next) && trail.Enter(next)) {
    const std::int64_t length = PieceLength(file, next, L);
    if (!IsReadableLength(file, length)) break;
    buffer.append(file.View(std::int64_t{next} + L, length));
    // Pieces that overlap are damage; without this a file of n bytes could hold a text of n * n.
    if (static_cast<std::int64_t>(buffer.size()) > file.Length()) break;
    next = file.Int32At(std::int64_t{next} + L + length);
  }
  return buffer;
}

}  // namespace

std::string_view ReadChainedText(const File& file, std::int32_t position, int L,
                                 std::string& buffer) {
  if (position < 2) return {};
  const std::int64_t length = PieceLength(file, position, L);
  if (!IsReadableLength(file, length)) return {};
  const std::string_view first = file.View(std::int64_t{position} + L, length);
  const std::int32_t next = file.Int32At(std::int64_t{position} + L + length);
  if (!LeadsOn(file, next)) return first;
  return GatherPieces(file, position, first, next, L, buffer);
}

bool IsWholeText(const File& file, std::int64_t position, int L) {
  std::int64_t rest = file.Length();  // pieces that take more than the file has loop
  while (rest > 0) {
    const std::int64_t length = PieceLength(file, position, L);
    const std::int64_t bytes = L + length + kPointerBytes;
    if (length < 0 || !file.Contains(position, bytes)) return false;
    position = file.Int32At(position + L + length);
    if (position == 0) return true;
    rest -= bytes;
  }
  return false;
}

std::int32_t WriteChainedText(File& file, std::int32_t position, std::string_view text, int L) {
  if (position == 0) position = EndOfFile(file);
  if (position > file.Length()) return AppendText(file, position, text, L);
  const Piece first = WritablePiece(file, position, L);
  if (static_cast<std::int64_t>(text.size()) <= first.capacity) {
    ShrinkPiece(file, first, text, L);
    return position;
  }

  const std::string own(
      text);  // the text may be a view of the bytes that are about to be written over
  RewritePieces(file, PiecesFor(file, position, own.size(), L), own, L);
  return position;
}

void AppendTextPieces(std::string& bytes, std::int64_t position, std::string_view text, int L) {
  const std::size_t limit = PieceLimit(L);
  while (text.size() > limit) {
    AppendLength(bytes, limit, L);
    bytes.append(text.substr(0, limit));
    position += L + static_cast<std::int64_t>(limit) + kPointerBytes;
    if (position > platform::kGreatestLength) Raise(RunTimeError::kOverflow);
    AppendInteger(bytes, static_cast<std::int32_t>(position));
    text.remove_prefix(limit);
  }
  AppendLength(bytes, text.size(), L);
  bytes.append(text);
  AppendInteger(bytes, std::int32_t{0});
}

}  // namespace orv::storage
