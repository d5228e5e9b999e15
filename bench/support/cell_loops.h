// The loops over cells, the same for every store that has ReadCell and WriteCell.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "support/table_data.h"
#include "support/workload.h"

namespace orv::bench {

inline std::string_view AsView(std::string_view text) { return text; }
inline std::wstring_view AsView(const std::wstring& text) { return text; }

using CellList = std::shared_ptr<const std::vector<CellAt>>;

template <typename Store>
Pass ReadList(Store& store, const std::vector<CellAt>& cells) {
  Check check;
  for (const CellAt& cell : cells) check.Add(AsView(store.ReadCell(cell.record, cell.field)));
  return {static_cast<std::int64_t>(cells.size()), check.sum()};
}

template <typename Store>
Pass ReadAll(Store& store, std::int32_t records) {
  Check check;
  for (std::int32_t record = 1; record <= records; ++record) {
    for (std::int16_t field = 1; field <= kFields; ++field) {
      check.Add(AsView(store.ReadCell(record, field)));
    }
  }
  return {std::int64_t{records} * kFields, check.sum()};
}

template <typename Store>
Pass ReadColumn(Store& store, std::int32_t records, std::int16_t field) {
  Check check;
  for (std::int32_t record = 1; record <= records; ++record) {
    check.Add(AsView(store.ReadCell(record, field)));
  }
  return {records, check.sum()};
}

/// Writes 8 letters over the 8 letters of each record of the list.
template <typename Store>
Pass Overwrite(Store& store, const std::vector<CellAt>& cells, std::vector<Text>& texts) {
  std::size_t next = 0;
  for (const CellAt& cell : cells) {
    store.WriteCell(cell.record, kLetters, texts[next]);
    next = (next + 1) % texts.size();
  }
  return {static_cast<std::int64_t>(cells.size()), 0};
}

}  // namespace orv::bench
