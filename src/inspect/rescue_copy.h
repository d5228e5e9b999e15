// The copy that a rescue writes.
#pragma once

#include <cstdint>
#include <string_view>

#include "inspect/rescue_log.h"
#include "platform/file.h"
#include "storage/cell_batch.h"

namespace orv::inspect {

/// The growing copy: how far it may grow, and its new cells, which are written in large pieces.
class RescueCopy {
 public:
  /// The copy may grow to sixteen times `sourceBytes` and sixteen megabytes, but no further than
  /// positions reach.
  RescueCopy(platform::File& target, std::int64_t sourceBytes, RescueLog& log);

  platform::File& file() { return target_; }

  /// Whether the copy may grow by so many bytes. The first time that it may not, it is full, and
  /// the log is told.
  bool HasRoom(std::int64_t bytes);
  /// Whether something found no room. What comes to a full copy stays out of it.
  bool full() const { return full_; }

  /// A new cell whose position goes into the pointer slot at `slot`, when there is room for it.
  void AddText(std::int64_t slot, std::int16_t code, std::string_view text);
  /// Writes the cells that were added; without it the last of them are left out.
  void Flush() { batch_.Flush(); }

 private:
  platform::File& target_;
  RescueLog& log_;
  storage::CellBatch batch_;
  std::int64_t greatest_;  ///< the length that the copy may reach
  bool full_ = false;
};

/// What every step of a rescue works on. All three outlive the step.
struct RescueJob {
  platform::File& source;
  RescueCopy& copy;
  RescueLog& log;
};

}  // namespace orv::inspect
