// Proving that fields that were copied as bytes read as before.
#pragma once

#include <cstdint>
#include <string>

#include "inspect/rescue_copy.h"
#include "inspect/rescued_structure.h"
#include "storage/field_reader.h"
#include "storage/type_tables.h"

namespace orv::inspect {

/// How packed cells read depends on type properties and dictionaries, and those may have arrived
/// differently. So this comes last, when the copy has everything else.
class PackedCheck {
 public:
  explicit PackedCheck(const RescueJob& job) : job_(job) {}

  /// Leaves the field as it is when each cell that can be read in the source reads the same in the
  /// copy. Otherwise gives it the free style and writes its texts one by one, and tells the log.
  void Verify(const PackedField& packed);

 private:
  bool HasDictionary(const PackedField& packed);
  bool ReadsAsBefore(const PackedField& packed);
  void Unpack(const PackedField& packed, const std::string& why);
  void MakeFree(const RescuedField& field);
  std::int64_t CopyTexts(const PackedField& packed, storage::FieldReader& before);
  void TellMissingValues(const PackedField& packed, storage::FieldReader& before);
  storage::FieldReader SourceReader(const RescuedField& field);

  RescueJob job_;
  storage::TypeTables sourceTypes_;
  storage::TypeTables targetTypes_;
};

}  // namespace orv::inspect
