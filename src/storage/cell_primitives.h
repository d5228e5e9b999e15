// Cells as stored: finding, reading and writing them in free and fixed-width storage.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/file.h"
#include "storage/error_code.h"

namespace orv::storage {

/// The position of record `r`'s cell in the field with descriptor `p`, 0 for an empty cell; `ep`
/// receives the position of the pointer slot. A descriptor below 1 sets error code 255 and gives 0;
/// a record beyond the field's data raises 9.
std::int32_t GetCellPos(std::int32_t p, std::int32_t r, platform::File& nm, std::int32_t& ep,
                        ErrorCode& error);

/// The text of the cell at `p`, a title for a cell that holds a matrix; `tp` receives the cell
/// code. Empty, with `tp` untouched, for a position below 1 or behind the file's end. The view is
/// good until the next write to the file or change of the buffer.
std::string_view GetCell(std::int32_t p, const platform::File& nm, std::int16_t& tp,
                         std::string& buffer);

/// Writes the cell's text. With `p` 0 a cell is created at the end of the file with code `tp` (0
/// chooses it by the text's length), `p` receives its position and the pointer slot `ep` gets it
/// last. Otherwise a `tp` other than 0 replaces the code. The text may not be a view of the file.
///
/// A long text for a short cell is stored in the long form at the old position, although it is
/// longer than what stood there; callers with live neighbours give the cell the long form first
/// (`SetCellForm`).
void PutCell(std::int32_t& p, std::int16_t& tp, std::string_view cellValue, platform::File& nm,
             std::int32_t ep);

/// The fixed-width cell of record `rec` in the data chain at `writePos`. Type "int": 1 byte
/// unsigned, 2 and 4 bytes signed, as decimal text; any other size or type: the bytes without the
/// blanks around them. A record beyond the data raises 9.
std::string GetFixedData(std::int32_t rec, std::int32_t writePos, platform::File& nm,
                         std::int16_t cellSize, std::string_view fldType);

/// Writes the fixed-width cell of record `rec`. Type "int", 2 bytes: the rounded number, -27860
/// from 32768 on; 4 bytes: the rounded number; everything else, integers of one byte included, the
/// first `cellSize` characters padded with blanks. A number outside int32 raises 6 and writes
/// nothing.
void SetFixedData(std::int32_t rec, std::int32_t writePos, platform::File& nm,
                  std::int16_t cellSize, std::string_view vlu, std::string_view fldType);

/// Makes room for `quantity` fixed-width records, the first of them number `rec`, at the end of a
/// data chain.
void AddFixedRecords(std::int32_t rec, std::int32_t writePos, std::int32_t quantity,
                     platform::File& nm, std::int16_t cellSize);

/// The text cut or padded with blanks to `size` characters.
std::string PaddedText(std::string_view text, std::size_t size);

}  // namespace orv::storage
