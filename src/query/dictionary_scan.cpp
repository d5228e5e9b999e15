#include "query/dictionary_scan.h"

#include <algorithm>
#include <cstring>

#include "storage/field_style.h"
#include "storage/matrix.h"
#include "storage/type_tables.h"

namespace orv::query {

using platform::File;
using storage::DictionaryIndex;

namespace {

/// Where the number stands in an entry of the widest kind, behind its type tag.
constexpr int kTagBytes = 2;
constexpr int kTaggedStride = 8;

/// Which values match: entry 0, the empty text, then those of the dictionary matrix.
std::vector<bool> MatchingValues(File& file, std::int32_t dictionary, std::int32_t descriptor,
                                 const TextPattern& pattern) {
  const std::int32_t records = storage::ReadableRecordCount(file, dictionary);
  std::vector<bool> matching(static_cast<std::size_t>(std::max(records, 0)) + 1);
  matching[0] = pattern.Matches({});
  // The values' own types are not consulted: dictionaries could lead in circles.
  const auto scan = OpenContainerScan(file, dictionary, descriptor, nullptr, pattern);
  for (std::int32_t r = scan->FindNext(1, records); r > 0; r = scan->FindNext(r + 1, records)) {
    matching[static_cast<std::size_t>(r)] = true;
    if (r == records) break;
  }
  return matching;
}

}  // namespace

DictionaryScan::DictionaryScan(const File& file, DictionaryIndex index,
                               const std::vector<bool>& matching)
    : file_(file), index_(index), matching_(matching.begin(), matching.end()) {
  matches_ = static_cast<std::int32_t>(std::count(matching_.begin(), matching_.end(), 1));
  only_ = static_cast<std::int32_t>(std::find(matching_.begin(), matching_.end(), 1) -
                                    matching_.begin());
}

std::int32_t DictionaryScan::FindNext(std::int32_t from, std::int32_t to) {
  if (matches_ == 0 || from > to) return 0;
  // Records whose entries the file does not have are empty.
  const std::int64_t entries =
      std::max<std::int64_t>((file_.Length() + 1 - index_.EntryPosition(1)) / index_.width(), 0);
  const auto last = static_cast<std::int32_t>(std::min<std::int64_t>(to, entries));
  if (from <= last) {
    const std::int32_t found = ScanEntries(from, last);
    if (found > 0) return found;
  }
  return last < to && matching_[0] != 0 ? std::max(from, last + 1) : 0;
}

std::int32_t DictionaryScan::ScanEntries(std::int32_t from, std::int32_t to) const {
  const std::int64_t bytes = std::int64_t{to - from + 1} * index_.width();
  const char* const entries = file_.View(index_.EntryPosition(from), bytes).data();
  if (index_.width() == 1) {
    if (matches_ > 1) return Scan<std::uint8_t, 1>(entries, from, to);
    if (only_ > UINT8_MAX) return 0;
    const void* const found = std::memchr(entries, only_, static_cast<std::size_t>(bytes));
    if (found == nullptr) return 0;
    return from + static_cast<std::int32_t>(static_cast<const char*>(found) - entries);
  }
  if (index_.width() == 2) return Scan<std::int16_t, 2>(entries, from, to);
  if (index_.width() == 4) return Scan<std::int32_t, 4>(entries, from, to);
  return Scan<std::int32_t, kTaggedStride>(entries + kTagBytes, from, to);
}

template <typename Integer, int kStride>
std::int32_t DictionaryScan::Scan(const char* entries, std::int32_t from, std::int32_t to) const {
  const bool single = matches_ == 1;
  for (std::int32_t r = from; r <= to; ++r, entries += kStride) {
    Integer value;
    std::memcpy(&value, entries, sizeof value);
    const auto index = static_cast<std::int32_t>(value);
    if (single ? index == only_
               : static_cast<std::uint32_t>(index) < matching_.size() &&
                     matching_[static_cast<std::uint32_t>(index)] != 0) {
      return r;
    }
  }
  return 0;
}

std::unique_ptr<FieldScan> OpenDictionaryScan(File& file, std::int32_t matrix,
                                              std::int32_t descriptor, storage::TypeTables* types,
                                              const TextPattern& pattern) {
  const storage::FieldStyle style = storage::StyleOf(descriptor, file);
  const std::int32_t start = file.Int32At(descriptor);
  if (types == nullptr || start < 1 || !DictionaryIndex::IsWidth(style.cellSize)) {
    return std::make_unique<EmptyScan>(pattern);
  }
  const storage::TypeProperty* const dictionary = types->Find(
      file, matrix, storage::FieldTypeNumber(descriptor, file), storage::kDictionaryProperty);
  if (dictionary == nullptr || dictionary->matrix < 1) return std::make_unique<EmptyScan>(pattern);
  const std::int32_t values =
      storage::FindFieldDescriptor(file, dictionary->matrix, storage::kDictionaryValueField);
  if (values < 1) return std::make_unique<EmptyScan>(pattern);
  return std::make_unique<DictionaryScan>(
      file, DictionaryIndex(start, style.cellSize),
      MatchingValues(file, dictionary->matrix, values, pattern));
}

}  // namespace orv::query
