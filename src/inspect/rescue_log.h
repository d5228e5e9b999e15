// What a rescue tells of its work: remarks and counts.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "inspect/rescue.h"
#include "inspect/rescued_structure.h"

namespace orv::inspect {

/// Collects the remarks, those beyond `Rescued::kGreatestListed` as a number only, and the counts
/// of what arrived. To lose is to copy less than there was; to change is to store it differently.
class RescueLog {
 public:
  void LoseOfFile(std::string what);
  void LoseOfMatrix(std::string path, std::string what);
  void ChangeOfMatrix(std::string path, std::string what);
  void LoseOfField(const RescuedField& field, std::string what);
  void ChangeOfField(const RescuedField& field, std::string what);
  /// Of one cell, or with `record` 0 of the field's name.
  void LoseOfRecord(const RescuedField& field, std::int64_t record, std::string what);

  void CountMatrix() { ++rescued_.matrices; }
  void CountField() { ++rescued_.fields; }
  void CountRecords(std::int64_t records) { rescued_.records += records; }
  /// A negative number takes back what was counted too early.
  void CountCells(std::int64_t cells) { rescued_.cells += cells; }

  /// Hands everything out; the log is empty afterwards.
  Rescued Take() { return std::exchange(rescued_, {}); }

 private:
  void Add(RescueRemark remark);

  Rescued rescued_;
};

}  // namespace orv::inspect
