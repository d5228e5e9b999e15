// The matrices and fields of a rescue, in the damaged file and in the copy.
#pragma once

#include <cstdint>
#include <string>

#include "storage/field_style.h"

namespace orv::inspect {

/// A matrix that has a header in the copy.
struct RescuedMatrix {
  std::int32_t from = 0;                  ///< position in the source
  std::int32_t to = 0;                    ///< position in the copy
  const RescuedMatrix* parent = nullptr;  ///< nullptr for the root
  std::string steps;                      ///< canonical, empty for the root
  std::int32_t depth = 0;                 ///< matrices around it

  /// The steps, "/" for the root.
  std::string Path() const { return steps.empty() ? "/" : steps; }
};

/// One field on its way.
struct RescuedField {
  const RescuedMatrix* matrix = nullptr;  ///< never nullptr; outlives the field
  std::int32_t number = 0;
  std::int32_t from = 0;      ///< descriptor in the source; 0 when it is not to be had
  std::int32_t to = 0;        ///< descriptor in the copy
  storage::FieldStyle style;  ///< in the source
  std::int32_t start = 0;     ///< of the data in the source
};

/// A field whose data was copied as bytes, so that it must be proved to read as before.
struct PackedField {
  RescuedField field;
  std::int32_t records = 0;  ///< that the copied data has entries for
};

}  // namespace orv::inspect
