#include "query/selection.h"

#include <algorithm>
#include <limits>

namespace orv::query {

DoubleEndedSelection::DoubleEndedSelection(const SortKeys& keys)
    : count_(keys.Count()),
      ranks_(RankKeys(keys)),
      at_(static_cast<std::size_t>(count_)),
      positions_(ranks_.sorted),  // before the first pass key k stands at position k
      high_(count_ - 1) {
  const auto count = static_cast<std::size_t>(count_);
  for (std::size_t place = 0; place < count; ++place) {
    at_[static_cast<std::size_t>(positions_[place])] = static_cast<Place>(place);
  }
  if (count_ > 0) greatest_ = GroupOf(count_ - 1);
  FindLargeGroups();
}

void DoubleEndedSelection::FindLargeGroups() {
  for (Place group = 0; group < count_;) {
    Place end = group + 1;
    while (end < count_ && GroupOf(end) == group) ++end;
    if (end - group > kSmallGroup) {
      if (largeGroups_.empty()) largeGroups_.assign(static_cast<std::size_t>(count_), -1);
      largeGroups_[static_cast<std::size_t>(group)] = static_cast<std::int32_t>(large_.size());
      large_.push_back({end, group, {}});
    }
    group = end;
  }
}

DoubleEndedSelection::LargeGroup* DoubleEndedSelection::LargeGroupOf(Place group) {
  if (large_.empty()) return nullptr;
  const std::int32_t index = largeGroups_[static_cast<std::size_t>(group)];
  return index < 0 ? nullptr : &large_[static_cast<std::size_t>(index)];
}

void DoubleEndedSelection::Pass(std::int32_t i) {
  low_ = i - 1;
  high_ = count_ - i;
  const Position least = LeftmostLeast();
  const Position greatest = LeftmostGreatest();
  const Place leastKey = At(least);
  const Place greatestKey = At(greatest);
  At(least) = At(low_);
  At(greatest) = At(high_);
  At(low_) = leastKey;
  At(high_) = greatestKey;
  // The two keys that have found their ends leave the sort, unless the exchange left one of them
  // behind.
  positions_[static_cast<std::size_t>(leastKey)] = low_;
  positions_[static_cast<std::size_t>(greatestKey)] = high_;
  ++low_;
  --high_;
  NoteMove(least);
  if (greatest != least) NoteMove(greatest);
}

void DoubleEndedSelection::NoteMove(Position position) {
  if (!IsOpen(position)) return;
  const Place place = At(position);
  positions_[static_cast<std::size_t>(place)] = position;
  if (large_.empty()) return;
  if (LargeGroup* const large = LargeGroupOf(GroupOf(place))) large->moved.push(position);
}

DoubleEndedSelection::Position DoubleEndedSelection::LeftmostLeast() {
  for (;;) {
    const Position position = Leftmost(least_);
    if (position != kNowhere) return position;
    least_ = EndOfGroup(least_);
  }
}

DoubleEndedSelection::Position DoubleEndedSelection::LeftmostGreatest() {
  for (;;) {
    const Position position = Leftmost(greatest_);
    if (position != kNowhere) return position;
    greatest_ = GroupOf(greatest_ - 1);
  }
}

DoubleEndedSelection::Place DoubleEndedSelection::EndOfGroup(Place group) const {
  Place end = group + 1;
  while (end < count_ && GroupOf(end) == group) ++end;
  return end;
}

DoubleEndedSelection::Position DoubleEndedSelection::Leftmost(Place group) {
  LargeGroup* const large = LargeGroupOf(group);
  return large != nullptr ? LeftmostOfLarge(*large, group) : LeftmostOfSmall(group);
}

DoubleEndedSelection::Position DoubleEndedSelection::LeftmostOfSmall(Place group) const {
  constexpr Position kBehindAll = std::numeric_limits<Position>::max();
  Position leftmost = kBehindAll;
  for (Place place = group; place < count_ && GroupOf(place) == group; ++place) {
    const Position position = PositionOf(place);
    if (IsOpen(position)) leftmost = std::min(leftmost, position);
  }
  return leftmost == kBehindAll ? kNowhere : leftmost;
}

/// A key that was moved never comes back to its first position: that one lies outside the sort from
/// then on.
bool DoubleEndedSelection::IsUnmoved(Place place) const {
  const Position position = PositionOf(place);
  return IsOpen(position) && position == ranks_.sorted[static_cast<std::size_t>(place)];
}

DoubleEndedSelection::Position DoubleEndedSelection::LeftmostOfLarge(LargeGroup& group,
                                                                     Place first) {
  while (group.firstUnmoved < group.end && !IsUnmoved(group.firstUnmoved)) ++group.firstUnmoved;
  auto& moved = group.moved;
  while (!moved.empty() && (!IsOpen(moved.top()) || GroupOf(At(moved.top())) != first)) moved.pop();
  const Position unmoved =
      group.firstUnmoved < group.end ? PositionOf(group.firstUnmoved) : kNowhere;
  if (moved.empty()) return unmoved;
  return unmoved == kNowhere ? moved.top() : std::min(unmoved, moved.top());
}

}  // namespace orv::query
