#include "support/floor_table.h"

#include "storage/layout.h"
#include "support/workload.h"

namespace orv::bench {

namespace layout = storage::layout;

FloorTable::FloorTable(const std::string& file) : map_(file) {
  const std::int64_t root = map_.Int32At(layout::file::kRootPointer);
  const std::int64_t table = map_.Int32At(root + layout::matrix::kFieldTable);
  const std::int64_t slots = table + layout::field_table::kChain;
  for (int f = 1; f <= kFields; ++f) {
    const std::int64_t descriptor = map_.Int32At(slots + std::int64_t{f} * layout::kPointerBytes);
    const std::int32_t data = map_.Int32At(descriptor + layout::descriptor::kData);
    data_[static_cast<std::size_t>(f)] = data;
  }
}

namespace {

constexpr std::int64_t kPointerBlockBytes = 12;    ///< count, one pointer, successor
constexpr std::int64_t kCellBytesBesidesText = 7;  ///< code, length, successor
constexpr std::int64_t kGreatestRowBytes = 256;

}  // namespace

FloorAppender::FloorAppender(const std::string& file, std::int32_t records)
    : map_(file, (records + 1) * (kGreatestRowBytes + kFields * kPointerBlockBytes)) {
  links_.fill(1);
  end_ = 1 + kPointerBlockBytes;
}

void FloorAppender::AppendRecord(const Text* cells) {
  std::int64_t pointers = end_;
  for (std::int64_t& link : links_) {
    const std::int32_t block[3] = {1, 0, 0};
    std::memcpy(map_.At(end_), block, sizeof block);
    const auto position = static_cast<std::int32_t>(end_);
    std::memcpy(map_.At(link), &position, sizeof position);
    link = end_ + 8;
    end_ += kPointerBlockBytes;
  }
  for (int f = 0; f < kFields; ++f, pointers += kPointerBlockBytes) {
    const std::string& text = cells[f].bytes;
    if (text.empty()) continue;
    char* cell = map_.At(end_);
    cell[0] = 1;
    cell[1] = 0;
    cell[2] = static_cast<char>(text.size());
    std::memcpy(cell + 3, text.data(), text.size());
    std::memset(cell + 3 + text.size(), 0, 4);
    const auto position = static_cast<std::int32_t>(end_);
    std::memcpy(map_.At(pointers + 4), &position, sizeof position);
    end_ += kCellBytesBesidesText + static_cast<std::int64_t>(text.size());
  }
}

FloorDbase::FloorDbase(const std::string& file)
    : map_(file),
      header_(map_.IntegerAt<std::uint16_t>(9)),
      recordBytes_(map_.IntegerAt<std::uint16_t>(11)) {
  std::int64_t offset = 1;
  for (std::size_t f = 1; f <= kFields; ++f) {
    width_[f] = map_.IntegerAt<std::uint8_t>(static_cast<std::int64_t>(f) * 32 + 17);
    offset_[f] = offset;
    offset += static_cast<std::int64_t>(width_[f]);
  }
}

}  // namespace orv::bench
