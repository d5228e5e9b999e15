#include "inspect/claimed_bytes.h"

#include <iterator>

namespace orv::inspect {

std::int64_t ClaimedBytes::Claim(std::int64_t position, std::int64_t count) {
  if (count < 1) return 0;
  std::int64_t end = position + count;
  const auto next = ends_.lower_bound(position);
  const auto before = next == ends_.begin() ? ends_.end() : std::prev(next);
  if (before != ends_.end() && before->second > position) return position;
  if (next != ends_.end() && next->first < end) return next->first;
  count_ += count;
  if (next != ends_.end() && next->first == end) {
    end = next->second;
    ends_.erase(next);
  }
  if (before != ends_.end() && before->second == position) {
    before->second = end;
  } else {
    ends_.emplace(position, end);
  }
  return 0;
}

}  // namespace orv::inspect
