// Inserting records, and the room that a field's data has for them.
#pragma once

#include <cstdint>

#include "platform/file.h"
#include "storage/error_code.h"
#include "storage/type_tables.h"

namespace orv::storage {

/// Inserts `quantity` empty records so that the first gets number `position`: a position above the
/// count n becomes n + 1; at position n itself nothing moves, so the new records follow record n. A
/// position below 1 sets 255, a matrix without fields 5; a quantity below 1 or matrix -1 does
/// nothing. More records than an int32 counts raise 6. All data is grown before anything moves, so
/// an insertion that fails for want of room leaves every record where it was. Then the count is
/// stored, and the entries move, the highest first: one that is interrupted has lost nothing.
void InsertRecords(std::int32_t matrix, std::int32_t quantity, std::int32_t position,
                   platform::File& file, TypeTables& types, ErrorCode& error);

/// Gives the field's data an entry for every record of the matrix, empty where it had none:
/// pointers 0, fixed cells blank or zero by their type, dictionary indexes 0.
void MakeRoom(std::int32_t matrix, std::int32_t descriptor, platform::File& file,
              TypeTables& types);

/// Gives a free text cell of a container matrix the short (width 1) or long form (width 4): the
/// text is written as a new cell at the end of the file and the record's pointer repointed. 20 for
/// a record, 21 for a field below 1; a record above the record count raises 9. Empty cells, cells
/// that hold a matrix and fields without cells are left alone.
void SetCellForm(std::int32_t matrix, std::int32_t r, std::int16_t f, std::int16_t width,
                 platform::File& file, ErrorCode& error);

}  // namespace orv::storage
