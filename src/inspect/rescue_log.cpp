#include "inspect/rescue_log.h"

namespace orv::inspect {

void RescueLog::LoseOfFile(std::string what) { Add({{}, 0, Finding::kNoRecord, std::move(what)}); }

void RescueLog::LoseOfMatrix(std::string path, std::string what) {
  Add({std::move(path), 0, Finding::kNoRecord, std::move(what)});
}

void RescueLog::ChangeOfMatrix(std::string path, std::string what) {
  Add({std::move(path), 0, Finding::kNoRecord, std::move(what), false});
}

void RescueLog::LoseOfField(const RescuedField& field, std::string what) {
  LoseOfRecord(field, Finding::kNoRecord, std::move(what));
}

void RescueLog::ChangeOfField(const RescuedField& field, std::string what) {
  Add({field.matrix->Path(), field.number, Finding::kNoRecord, std::move(what), false});
}

void RescueLog::LoseOfRecord(const RescuedField& field, std::int64_t record, std::string what) {
  Add({field.matrix->Path(), field.number, record, std::move(what)});
}

void RescueLog::Add(RescueRemark remark) {
  rescued_.lost = rescued_.lost || remark.isLoss;
  if (rescued_.remarks.size() >= Rescued::kGreatestListed) {
    ++rescued_.unlisted;
  } else {
    rescued_.remarks.push_back(std::move(remark));
  }
}

}  // namespace orv::inspect
