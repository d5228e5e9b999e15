// The structures of a container file taken apart into the fields that the format's description
// names.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "inspect/structure.h"
#include "platform/file.h"
#include "storage/matrix_path.h"

namespace orv::inspect {

/// One field of a structure.
struct DumpRow {
  std::int64_t offset = 0;  ///< from the structure's position
  std::string label;
  std::string value;  ///< a number, perhaps with its meaning; empty for a text
  std::string text;   ///< bytes of a text, as they stand
  bool isText = false;
};

/// One structure, or a remark about one that cannot be shown.
struct DumpItem {
  std::string name;  ///< "descriptor of field 2 of /[3,1]"
  std::int64_t position = 0;
  std::int64_t bytes = 0;
  std::vector<DumpRow> rows;
  bool isRemark = false;  ///< the name is a sentence about damage; there are no rows
};

struct DumpLimits {
  static constexpr std::int64_t kNone = INT64_MAX;
  std::int64_t entries = 16;  ///< of an array that are taken apart; the others are only counted
};

using DumpSink = std::function<void(const DumpItem&)>;

/// Hands every structure of the file to the sink, in the order of a walk from the header.
void DumpFile(platform::File& file, const DumpLimits& limits, const DumpSink& sink);
/// Likewise the matrix that the steps lead to, with everything in it. False when they lead to none.
bool DumpMatrix(platform::File& file, const std::vector<storage::PathStep>& steps,
                const DumpLimits& limits, const DumpSink& sink);

}  // namespace orv::inspect
