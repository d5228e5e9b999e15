// Inspections of bytes in memory, for the tests of this folder.
#pragma once

#include <string>
#include <string_view>

#include "inspect/inspection.h"
#include "support/temp_file.h"

namespace orv::test {

/// The inspection of a file with this content.
inline inspect::Inspection InspectBytes(std::string_view bytes) {
  const TempFile file(bytes);
  return inspect::Inspect(*file);
}

/// The findings as lines "/, field 1, record 2, 345: words: what; readable".
inline std::string FindingText(const inspect::Inspection& inspection) {
  std::string text;
  for (const inspect::Finding& finding : inspection.findings.listed()) {
    text += finding.matrix;
    if (finding.field > 0) text += ", field " + std::to_string(finding.field);
    if (finding.record >= 0) text += ", record " + std::to_string(finding.record);
    text += ", " + std::to_string(finding.position) + ": " +
            std::string(inspect::DamageWords(finding.damage)) + ": " + finding.what + "; " +
            finding.readable + "\n";
  }
  return text;
}

}  // namespace orv::test
