#include "inspect/field_table_rescue.h"

#include <algorithm>
#include <limits>
#include <string>

#include "inspect/chain_entries.h"
#include "inspect/descriptor_rescue.h"
#include "storage/error_code.h"
#include "storage/field_style.h"
#include "storage/layout.h"
#include "storage/matrix.h"

namespace orv::inspect {

namespace layout = storage::layout;
namespace free_size = storage::free_size;

namespace {

RescuedField FieldAt(const RescueJob& job, const RescuedMatrix& matrix, std::int32_t number,
                     std::int32_t descriptor) {
  RescuedField field{&matrix, number, 0, 0, {}, 0};
  if (!job.source.Contains(descriptor, layout::descriptor::kBytes)) {
    job.log.LoseOfField(field, "the field has no descriptor: it arrives empty");
    return field;
  }
  field.from = descriptor;
  field.style = storage::StyleOf(descriptor, job.source);
  field.start = job.source.Int32At(descriptor);
  return field;
}

/// How many fields there are; what is counted and cannot be reached is told.
std::int64_t CountFields(const RescueJob& job, const RescuedMatrix& matrix, ChainEntries& slots) {
  const std::int64_t counted = storage::ContainerFieldCount(job.source, matrix.from);
  const std::int64_t reached = slots.Count();
  const auto count = std::min<std::int64_t>(
      {std::max(counted, slots.LastUsed()), reached, std::numeric_limits<std::int16_t>::max()});
  if (counted > count) {
    job.log.LoseOfMatrix(matrix.Path(), "of " + std::to_string(counted) + " fields only " +
                                            std::to_string(count) + " can be reached");
  }
  return count;
}

/// Bytes of an entry of the field's data, 0 for a field without an array of entries.
std::int32_t EntryWidth(const RescuedField& field) {
  if (field.from == 0 || field.start == 0) return 0;
  if (field.style.freeSize == free_size::kFree) return layout::kPointerBytes;
  return field.style.freeSize == free_size::kFixed ? std::max<std::int32_t>(field.style.cellSize, 0)
                                                   : 0;
}

/// For how many records fields have data.
struct DataReach {
  std::int64_t least = std::numeric_limits<std::int32_t>::max();  ///< all of them
  std::int64_t used = 0;                                          ///< one of them
};

DataReach ReachOf(platform::File& source, const std::vector<RescuedField>& fields) {
  DataReach reach;
  for (const RescuedField& field : fields) {
    const std::int32_t width = EntryWidth(field);
    if (width == 0) continue;
    ChainEntries entries(source, field.start, width);
    const std::int64_t count = entries.Count();
    const bool isFree = field.style.freeSize == free_size::kFree;
    reach.least = std::min(reach.least, count);
    reach.used = std::max(reach.used, isFree ? entries.LastUsed() : count);
  }
  return reach;
}

}  // namespace

std::vector<RescuedField> FindFields(const RescueJob& job, const RescuedMatrix& matrix) {
  const std::int64_t table = storage::FieldTablePosition(job.source, matrix.from);
  if (!job.source.Contains(table, layout::field_table::kChain)) {
    job.log.LoseOfMatrix(matrix.Path(),
                         "the field table cannot be read: the matrix arrives without fields");
    return {};
  }
  ChainEntries slots(job.source, static_cast<std::int32_t>(table + layout::field_table::kChain),
                     layout::kPointerBytes);
  const std::int64_t count = CountFields(job, matrix, slots);
  if (!job.copy.HasRoom(count * (layout::descriptor::kBytes + layout::kPointerBytes))) return {};
  std::vector<RescuedField> fields;
  for (std::int64_t f = 1; f <= count; ++f) {
    const std::int32_t descriptor = job.source.Int32At(slots.Run(f).position);
    fields.push_back(FieldAt(job, matrix, static_cast<std::int32_t>(f), descriptor));
  }
  return fields;
}

std::int32_t CountRecords(const RescueJob& job, const RescuedMatrix& matrix,
                          const std::vector<RescuedField>& fields) {
  const std::int64_t counted = storage::ContainerRecordCount(job.source, matrix.from);
  const bool plausible =
      counted >= 0 && counted == storage::ReadableRecordCount(job.source, matrix.from);
  const DataReach reach = ReachOf(job.source, fields);
  const std::int64_t records =
      plausible && reach.least <= counted ? counted : std::max(reach.used, plausible ? counted : 0);
  if (records != counted) {
    job.log.ChangeOfMatrix(
        matrix.Path(),
        std::to_string(counted) + " records are counted, the copy has " + std::to_string(records));
  }
  return static_cast<std::int32_t>(records);
}

void CreateFields(const RescueJob& job, const RescuedMatrix& matrix,
                  std::vector<RescuedField>& fields, std::int32_t records) {
  platform::File& target = job.copy.file();
  storage::CreateFieldTable(target, matrix.to, static_cast<std::int16_t>(fields.size()));
  storage::SetRecordCount(target, matrix.to, records);
  job.log.CountRecords(records);
  storage::ErrorCode error;
  for (RescuedField& field : fields) {
    const auto number = static_cast<std::int16_t>(field.number);
    job.log.CountField();
    storage::CreateFieldDescriptor(target, matrix.to, number, error);
    field.to = storage::FindFieldDescriptor(target, matrix.to, number);
    if (field.from != 0) CopyDescriptor(job, field);
  }
}

}  // namespace orv::inspect
