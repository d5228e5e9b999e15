// The double-ended selection: sorting by moving the least key to the front and the greatest to the
// back.
#pragma once

#include <cstdint>
#include <functional>
#include <queue>
#include <vector>

#include "query/key_ranks.h"
#include "query/sort_keys.h"

namespace orv::query {

/// Sorts N keys in N / 2 passes. Pass i looks at positions i to h = N - i + 1, takes the leftmost
/// least and the leftmost greatest key there and exchanges them, in this order, with the keys at i
/// and h:
///
///   the key at i goes to the least one's position; the key at h goes to the greatest one's
///   position; the least goes to i; the greatest goes to h.
///
/// The order of the exchange is fixed and has its price: when the greatest key stands at i, it has
/// been moved before its turn, so it stays in the sort a second time and the key at h is lost. The
/// arrangement after each pass is exactly that of the plain selection, which compares every
/// position in every pass.
///
/// Here the keys are ranked once. After that a pass needs to know where the leftmost key of the
/// least and of the greatest remaining rank stands, which is kept up as keys are moved: at once for
/// keys of their own rank, by a heap of positions where many are equal.
class DoubleEndedSelection {
 public:
  explicit DoubleEndedSelection(const SortKeys& keys);

  std::int32_t Passes() const { return count_ / 2; }
  /// Carries out pass `i`, from 1. Passes come in order, each once.
  void Pass(std::int32_t i);
  /// The number of the key at position `position`, both from 0.
  std::int32_t KeyAt(std::int32_t position) const {
    return ranks_.sorted[static_cast<std::size_t>(at_[static_cast<std::size_t>(position)])];
  }

 private:
  /// A key's place in the ranking, and the first place of the keys equal to it, their group.
  using Place = std::int32_t;
  using Position = std::int32_t;
  static constexpr Position kNowhere = -1;
  /// Groups up to this size are searched through.
  static constexpr std::int32_t kSmallGroup = 8;

  struct LargeGroup {
    Place end = 0;
    Place firstUnmoved = 0;  ///< the members in front of it have been moved or used up
    std::priority_queue<Position, std::vector<Position>, std::greater<>> moved;
  };

  Place GroupOf(Place place) const { return ranks_.first[static_cast<std::size_t>(place)]; }
  Place EndOfGroup(Place group) const;
  Position PositionOf(Place place) const { return positions_[static_cast<std::size_t>(place)]; }
  Place& At(Position position) { return at_[static_cast<std::size_t>(position)]; }
  bool IsOpen(Position position) const { return position >= low_ && position <= high_; }
  bool IsUnmoved(Place place) const;
  LargeGroup* LargeGroupOf(Place group);
  void FindLargeGroups();
  Position Leftmost(Place group);
  Position LeftmostOfSmall(Place group) const;
  Position LeftmostOfLarge(LargeGroup& group, Place first);
  Position LeftmostLeast();
  Position LeftmostGreatest();
  void NoteMove(Position position);

  std::int32_t count_;
  KeyRanks ranks_;
  std::vector<Place> at_;                  ///< which key stands at a position
  std::vector<Position> positions_;        ///< where a key stands that is still in the sort
  std::vector<std::int32_t> largeGroups_;  ///< by group, an index into `large_`, or -1
  std::vector<LargeGroup> large_;
  Place least_ = 0;     ///< no group before it has a key in the sort
  Place greatest_ = 0;  ///< no group behind it has
  Position low_ = 0;    ///< the open positions, both included
  Position high_ = 0;
};

}  // namespace orv::query
