// Counting and adding records, and the kinds of their cells.
#pragma once

#include <cstdint>
#include <string>

#include "storage/storage.h"

namespace orv::engine {

/// Records of the matrix or view, -1 when the path resolves to none.
std::int32_t Records(storage::Storage& storage, const std::wstring& p);

/// Inserts `number` empty records so that the first gets number `row`.
void CmdAddRecord(storage::Storage& storage, const std::wstring& pth, std::int32_t number,
                  std::int32_t row);

/// The cell code of cell (`r`, `f`): of the field for -2, of the title cell for 0, of the cell
/// above; 0 for an empty cell, other negative records and dBASE III tables.
std::int16_t GetID(storage::Storage& storage, const std::wstring& pth, std::int32_t r,
                   std::int16_t f);

/// The same for a resolved container matrix. Raises 9 for a record or field beyond it.
std::int16_t CellCodeAt(storage::Storage& storage, const storage::Location& at, std::int32_t r,
                        std::int16_t f);

/// Gives the cell the short (`b` 1) or long (4) length form. 26 for another `b`, 70 on a dBASE III
/// table, 255 for no matrix, 20 and 21 for a record or field below 1.
void ReBit(storage::Storage& storage, const std::wstring& pth, std::int32_t r, std::int16_t f,
           std::int16_t b);

/// The code of the data type of the cell's value: the one its type's property "type" names, else
/// the field's, else 0.
std::int16_t GetCellDataType(storage::Storage& storage, const std::wstring& pth, std::int32_t r,
                             std::int16_t f);

}  // namespace orv::engine
