// Reading a block of records into a host's array.
#pragma once

#include <cstdint>
#include <string>

#include "orv/text_matrix.h"

#include "storage/storage.h"

namespace orv::engine {

/// Stores the texts of records `r1` to `r2`, all fields, in the elements of their own numbers;
/// record 0 gives the field names. At the first record beyond the last, `r2` receives its number
/// and the call ends. Any failure on the way (an element outside `m`) ends the call with 20, what
/// was stored stays.
void ValueMatrix(storage::Storage& storage, TextMatrix& m, const std::wstring& pth, std::int32_t r1,
                 std::int32_t& r2, bool frml);

}  // namespace orv::engine
