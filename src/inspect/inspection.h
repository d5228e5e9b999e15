// What a whole file looks like from inside: its findings and its figures.
#pragma once

#include <cstdint>

#include "inspect/finding.h"
#include "platform/file.h"

namespace orv::inspect {

enum class FileKind { kUnknown, kContainer, kDbase };

/// What was found in a file.
struct Inspection {
  FileKind kind = FileKind::kUnknown;
  FindingList findings;
  std::int64_t matrices = 0;  ///< property matrices included; 1 for a dBASE III table
  std::int64_t fields = 0;
  std::int64_t records = 0;
  std::int64_t cells = 0;  ///< those of free fields that are not empty, all of the others
  std::int64_t bytes = 0;
  std::int64_t liveBytes = 0;  ///< bytes that belong to a structure

  bool IsClean() const { return findings.empty(); }
  std::int64_t DeadBytes() const { return bytes - liveBytes; }
};

/// Inspects a file of either kind without changing it. A container whose header is damaged is still
/// taken for one when half of its marks are there. Needs time and memory in proportion to the
/// file's size, whatever it holds.
Inspection Inspect(platform::File& file);

/// The kind as an inspection takes it.
FileKind KindOf(const platform::File& file);

}  // namespace orv::inspect
