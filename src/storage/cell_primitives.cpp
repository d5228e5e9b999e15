#include "storage/cell_primitives.h"

#include <cstring>
#include <optional>

#include "platform/code_page.h"
#include "storage/bytes.h"
#include "storage/cell_code.h"
#include "storage/chain_array.h"
#include "storage/chained_text.h"
#include "storage/fixed_cells.h"
#include "storage/layout.h"
#include "storage/number_text.h"

namespace orv::storage {

using platform::File;
using platform::Raise;
using platform::RunTimeError;

namespace {

/// Stored in two bytes in place of every number from 32768 on.
constexpr std::int16_t kTooGreatForInt16 = -27860;
constexpr std::int32_t kInt16End = 32768;

std::int32_t RoundedNumber(std::string_view text) {
  const std::optional<std::int32_t> number = RoundToInt32(LeadingNumber(text));
  if (!number) Raise(RunTimeError::kOverflow);
  return *number;
}

std::int64_t FixedEntry(std::int32_t rec, std::int32_t writePos, File& nm, std::int16_t cellSize) {
  const ChainRun run = FindChainRun(nm, writePos, rec, cellSize);
  if (run.count == 0) Raise(RunTimeError::kSubscript);
  return run.position;
}

/// The long form over the short cell, in the order that stores the old end of file in the pointer
/// slot.
void SwitchToLongForm(std::int32_t p, std::int16_t& tp, std::string_view text, File& nm,
                      std::int32_t ep) {
  tp = layout::cell::kPlainLong;
  const std::int32_t end = EndOfFile(nm);
  std::string bytes;
  AppendInteger(bytes, tp);
  AppendTextPieces(bytes, std::int64_t{p} + layout::cell::kText, text, layout::kLongLengthBytes);
  nm.Write(p, bytes);
  nm.WriteInt32(ep, end);
}

/// The usual cell: code and one piece.
void AppendShortCell(std::int32_t p, std::int16_t tp, std::string_view text, File& nm) {
  nm.Compose(p, layout::cell::kText + ShortPieceBytes(text), [&](char* bytes) {
    std::memcpy(bytes, &tp, sizeof tp);
    StoreShortPiece(text, bytes + layout::cell::kText);
  });
}

void AppendCell(std::int32_t p, std::int16_t tp, std::string_view text, File& nm) {
  std::string bytes;
  AppendInteger(bytes, tp);
  AppendTextPieces(bytes, std::int64_t{p} + layout::cell::kText, text, LengthBytes(tp));
  nm.Write(p, bytes);
}

void CreateCell(std::int32_t& p, std::int16_t& tp, std::string_view text, File& nm,
                std::int32_t ep) {
  if (tp == 0) {
    tp = text.size() < layout::cell::kShortTextLimit ? layout::cell::kPlainType
                                                     : layout::cell::kPlainLong;
  }
  p = EndOfFile(nm);
  if (LengthBytes(tp) == layout::kShortLengthBytes && text.size() <= kShortPieceLimit) {
    AppendShortCell(p, tp, text, nm);
  } else {
    AppendCell(p, tp, text, nm);
  }
  nm.WriteInt32(ep, p);
}

/// Writes over the present cell at `p`.
void Overwrite(std::int32_t p, std::int16_t& tp, std::string_view text, File& nm, std::int32_t ep) {
  if (!nm.Contains(p, layout::cell::kText)) Raise(RunTimeError::kSubscript);
  if (tp != 0) {
    nm.WriteInt16(p, tp);
  } else {
    tp = nm.Int16At(p);
  }
  if (text.size() >= layout::cell::kShortTextLimit && !DecodeCellCode(tp).longForm && tp >= 0) {
    return SwitchToLongForm(p, tp, text, nm, ep);
  }
  const std::int64_t inCell = std::int64_t{p} + layout::cell::kText;
  const std::int32_t position = tp < 0 ? nm.Int32At(inCell) : static_cast<std::int32_t>(inCell);
  if (position < 1) Raise(RunTimeError::kSubscript);
  WriteChainedText(nm, position, text, LengthBytes(tp));
}

}  // namespace

std::int32_t GetCellPos(std::int32_t p, std::int32_t r, File& nm, std::int32_t& ep,
                        ErrorCode& error) {
  if (p < 1) {
    error.Set(code::kBadArgument);
    return 0;
  }
  const std::int32_t start = nm.Int32At(p);
  const ChainEntry entry = ReadChainEntry(nm, start, r, layout::kPointerBytes, false);
  ep = entry.position;
  return entry.value;
}

std::string_view GetCell(std::int32_t p, const File& nm, std::int16_t& tp, std::string& buffer) {
  if (p < 1 || p > nm.Length()) return {};
  tp = nm.Int16At(p);
  const std::int64_t inCell = std::int64_t{p} + layout::cell::kText;
  if (inCell > platform::kGreatestLength) return {};
  const std::int32_t text = tp < 0 ? nm.Int32At(inCell) : static_cast<std::int32_t>(inCell);
  return ReadChainedText(nm, text, LengthBytes(tp), buffer);
}

void PutCell(std::int32_t& p, std::int16_t& tp, std::string_view cellValue, File& nm,
             std::int32_t ep) {
  if (p != 0 || tp < 0) return Overwrite(p, tp, cellValue, nm, ep);
  const bool tooLong = tp != 0 && cellValue.size() >= layout::cell::kShortTextLimit &&
                       LengthBytes(tp) == layout::kShortLengthBytes;
  if (!tooLong) return CreateCell(p, tp, cellValue, nm, ep);
  p = EndOfFile(nm);
  SwitchToLongForm(p, tp, cellValue, nm, ep);
}

std::string GetFixedData(std::int32_t rec, std::int32_t writePos, File& nm, std::int16_t cellSize,
                         std::string_view fldType) {
  const std::int64_t position = FixedEntry(rec, writePos, nm, cellSize);
  const std::string_view bytes = nm.View(position, cellSize);
  if (fldType == kIntType) {
    if (auto number = IntCellText(bytes)) return *number;
  }
  return std::string(platform::Trim(bytes));
}

void SetFixedData(std::int32_t rec, std::int32_t writePos, File& nm, std::int16_t cellSize,
                  std::string_view vlu, std::string_view fldType) {
  const std::int64_t position = FixedEntry(rec, writePos, nm, cellSize);
  if (fldType == kIntType && cellSize == 2) {
    const std::int32_t number = RoundedNumber(vlu);
    if (number < INT16_MIN) Raise(RunTimeError::kOverflow);
    nm.WriteInt16(position,
                  number < kInt16End ? static_cast<std::int16_t>(number) : kTooGreatForInt16);
  } else if (fldType == kIntType && cellSize == 4) {
    nm.WriteInt32(position, RoundedNumber(vlu));
  } else {
    nm.Write(position, PaddedText(vlu, static_cast<std::size_t>(cellSize)));
  }
}

void AddFixedRecords(std::int32_t rec, std::int32_t writePos, std::int32_t quantity, File& nm,
                     std::int16_t cellSize) {
  GrowChain(nm, writePos, std::int64_t{rec} + quantity - 1, cellSize);
}

std::string PaddedText(std::string_view text, std::size_t size) {
  std::string padded(text.substr(0, size));
  padded.resize(size, platform::kBlank);
  return padded;
}

}  // namespace orv::storage
