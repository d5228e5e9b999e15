// Copying what can still be read of a damaged container file into a new one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "inspect/finding.h"
#include "platform/file.h"

namespace orv::inspect {

/// Something that a rescue could not copy, or not as it was.
struct RescueRemark {
  std::string matrix;      ///< canonical steps, "/" for the top; empty for the file itself
  std::int32_t field = 0;  ///< 0 where no field is concerned
  std::int64_t record = Finding::kNoRecord;  ///< 0 is the field's name
  std::string what;                          ///< a sentence without its full stop
  bool isLoss = true;  ///< false when the values arrived, but differently stored
};

/// What became of a rescue.
struct Rescued {
  static constexpr std::size_t kGreatestListed = 10000;

  std::int64_t matrices = 0;
  std::int64_t fields = 0;
  std::int64_t records = 0;
  std::int64_t cells = 0;  ///< that are not empty
  std::vector<RescueRemark> remarks;
  std::int64_t unlisted = 0;  ///< remarks beyond those that are listed
  bool lost = false;          ///< some remark, listed or not, tells of a loss
};

/// Writes into the empty file `target` a sound container with everything that the engine can still
/// read of `source`: titles, fields with names and styles, records, cells, nested matrices and type
/// properties. It goes on past damage, cell by cell. Where the root pointer is wrong, the matrix
/// where new files have their root is taken.
///
/// A matrix inside itself arrives as its title; what a fixed or dictionary field cannot be read as
/// in the copy arrives as texts in the free style. The copy grows to sixteen times the source and
/// sixteen megabytes at most, so that structures reached again and again end somewhere.
/// Raises the run-time errors of writing, 61 for a full disk among them.
Rescued Rescue(platform::File& source, platform::File& target);

}  // namespace orv::inspect
