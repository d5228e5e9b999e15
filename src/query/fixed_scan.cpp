#include "query/fixed_scan.h"

#include <algorithm>
#include <cstring>

#include "platform/code_page.h"
#include "storage/cell_primitives.h"
#include "storage/chain_array.h"
#include "storage/field_reader.h"
#include "storage/number_text.h"

namespace orv::query {

using platform::kBlank;

namespace {

constexpr std::size_t kWordBytes = 8;

std::uint64_t LoadWord(const char* bytes, std::size_t size) {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, size);
  return word;
}

}  // namespace

FixedScan::FixedScan(platform::File& file, std::int32_t matrix, std::int32_t descriptor,
                     storage::TypeTables* types, const TextPattern& pattern)
    : file_(file),
      start_(file.Int32At(descriptor)),
      pattern_(pattern),
      emptyMatches_(pattern.Matches({})),
      format_(storage::FixedFormatOf(file, matrix, descriptor, storage::StyleOf(descriptor, file),
                                     types)),
      kind_(Choose()) {}

FixedScan::Kind FixedScan::Choose() {
  const bool exact = !pattern_.inCell() && pattern_.caseMatters();
  if (format_.IsNumeric()) {
    if (!pattern_.inCell()) image_ = ImageOfNumber();
    return image_.empty() ? Kind::kNumberText : Kind::kNumber;
  }
  const auto size = static_cast<std::size_t>(std::max<std::int16_t>(format_.cellSize, 0));
  // A text read has no blanks around it.
  const bool hasImage =
      pattern_.value().size() <= size && platform::Trim(pattern_.value()) == pattern_.value();
  if (!exact || !hasImage) return Kind::kText;
  image_ = storage::PaddedText(pattern_.value(), size);
  return Kind::kPaddedText;
}

/// The bytes whose text is the value sought, empty when they are not easily had. Different numbers
/// have different texts, so no other bytes have this text.
std::string FixedScan::ImageOfNumber() const {
  std::string digits = pattern_.value();
  std::erase(digits, '.');
  const auto number = storage::RoundToInt32(storage::LeadingNumber(digits));
  const auto size = static_cast<std::size_t>(std::max<std::int16_t>(format_.cellSize, 0));
  if (!number || size == 0 || size > sizeof *number) return {};
  std::string image(size, '\0');
  std::memcpy(image.data(), &*number, size);
  return storage::FixedCellText(image, format_) == pattern_.value() ? image : std::string();
}

std::int32_t FixedScan::FindNext(std::int32_t from, std::int32_t to) {
  while (from <= to) {
    const storage::ChainRun run = storage::FindChainRun(file_, start_, from, format_.cellSize);
    if (run.count == 0) return emptyMatches_ ? from : 0;
    const auto last = static_cast<std::int32_t>(std::min<std::int64_t>(to, from + run.count - 1));
    const std::int64_t bytes = std::int64_t{last - from + 1} * format_.cellSize;
    const std::int32_t found = ScanBlock(file_.View(run.position, bytes).data(), from, last);
    if (found > 0) return found;
    from = last + 1;
  }
  return 0;
}

std::int32_t FixedScan::ScanBlock(const char* cells, std::int32_t from, std::int32_t to) const {
  const auto size = static_cast<std::size_t>(format_.cellSize);
  if (image_.empty()) {
    for (std::int32_t r = from; r <= to; ++r, cells += size) {
      if (Matches(cells)) return r;
    }
    return 0;
  }
  // Most cells differ within their first bytes; one comparison of a word settles them.
  const std::size_t head = std::min(size, kWordBytes);
  const std::uint64_t wanted = LoadWord(image_.data(), head);
  const bool blanksInFront = kind_ == Kind::kPaddedText;
  for (std::int32_t r = from; r <= to; ++r, cells += size) {
    const std::uint64_t word =
        head == kWordBytes ? LoadWord(cells, kWordBytes) : LoadWord(cells, head);
    if (word == wanted) {
      if (std::memcmp(cells + head, image_.data() + head, size - head) == 0) return r;
    }
    if (blanksInFront && *cells == kBlank && TextMatches(cells)) return r;
  }
  return 0;
}

bool FixedScan::Matches(const char* cell) const {
  if (kind_ != Kind::kNumberText) return TextMatches(cell);
  const std::string_view bytes(cell, static_cast<std::size_t>(format_.cellSize));
  return pattern_.Matches(storage::FixedCellText(bytes, format_));
}

bool FixedScan::TextMatches(const char* cell) const {
  return pattern_.Matches(
      platform::Trim(std::string_view(cell, static_cast<std::size_t>(format_.cellSize))));
}

}  // namespace orv::query
