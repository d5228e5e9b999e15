// Changing the slots of a field table and its field count as one.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/file.h"

namespace orv::storage {

/// A field table's change: fields `first` and up get these descriptors, and the count becomes
/// `after`. Slots behind the count mean nothing.
struct FieldSlotsChange {
  int first = 1;
  std::vector<std::int32_t> slots;
  std::int16_t before = 0;
  std::int16_t after = 0;
};

/// The descriptors in slots `first` to `last` of the table. Raises 9 for a slot that does not
/// exist.
std::vector<std::int32_t> ReadFieldSlots(platform::File& file, std::int32_t table, int first,
                                         int last);

/// Stores the change; all slots must exist. When the first block of slots, which stands behind the
/// count, holds all slots up to the count, one write makes the whole change: a reader sees the old
/// fields or the new ones. Otherwise block after block is written, in an order in which every
/// descriptor that stays is found in some slot within the count all the time; between two of these
/// writes it may be found in two slots, and when fields are taken away the last slot may be empty.
void StoreFieldSlots(platform::File& file, std::int32_t table, const FieldSlotsChange& change);

}  // namespace orv::storage
