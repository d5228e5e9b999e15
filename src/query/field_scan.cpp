#include "query/field_scan.h"

#include <vector>

#include "query/dictionary_scan.h"
#include "query/fixed_scan.h"
#include "query/free_scan.h"
#include "storage/field_reader.h"

namespace orv::query {

using platform::File;
using platform::Raise;
using platform::RunTimeError;
using storage::Location;
using storage::Storage;
using storage::TypeTables;

namespace {

class DbaseScan final : public FieldScan {
 public:
  DbaseScan(const storage::DbasePort& tables, File& file, std::int16_t fld,
            const TextPattern& pattern)
      : tables_(tables), file_(file), field_(fld), pattern_(pattern) {}

  std::int32_t FindNext(std::int32_t from, std::int32_t to) override {
    for (std::int32_t r = from; r <= to; ++r) {
      if (pattern_.Matches(tables_.ReadCell(file_, r, field_))) return r;
    }
    return 0;
  }

 private:
  const storage::DbasePort& tables_;
  File& file_;
  std::int16_t field_;
  const TextPattern& pattern_;
};

class RecordScan final : public FieldScan {
 public:
  explicit RecordScan(std::vector<std::unique_ptr<FieldScan>> fields)
      : fields_(std::move(fields)) {}

  std::int32_t FindNext(std::int32_t from, std::int32_t to) override {
    std::int32_t found = 0;
    for (const auto& field : fields_) {
      const std::int32_t r = field->FindNext(from, to);
      if (r == 0) continue;
      found = r;
      to = r - 1;  // only an earlier record is of interest from here on
    }
    return found;
  }

 private:
  std::vector<std::unique_ptr<FieldScan>> fields_;
};

}  // namespace

std::unique_ptr<FieldScan> OpenContainerScan(File& file, std::int32_t matrix,
                                             std::int32_t descriptor, TypeTables* types,
                                             const TextPattern& pattern) {
  if (descriptor < 1) Raise(RunTimeError::kSubscript);
  switch (storage::StyleOf(descriptor, file).freeSize) {
    case storage::free_size::kFree:
      return std::make_unique<FreeScan>(file, descriptor, pattern);
    case storage::free_size::kFixed:
      return std::make_unique<FixedScan>(file, matrix, descriptor, types, pattern);
    case storage::free_size::kDictionary:
      return OpenDictionaryScan(file, matrix, descriptor, types, pattern);
    default:
      return std::make_unique<EmptyScan>(pattern);
  }
}

std::unique_ptr<FieldScan> OpenFieldScan(Storage& storage, const Location& at, std::int16_t fld,
                                         const TextPattern& pattern) {
  if (at.IsDbase()) {
    return std::make_unique<DbaseScan>(*storage.ports.dbase, *at.file, fld, pattern);
  }
  const std::int32_t descriptor = storage.fields.GetFieldPos(at.position, fld, *at.file);
  return OpenContainerScan(*at.file, at.position, descriptor, &storage.types, pattern);
}

std::unique_ptr<FieldScan> OpenRecordScan(Storage& storage, const Location& at,
                                          const TextPattern& pattern) {
  std::vector<std::unique_ptr<FieldScan>> fields;
  const std::int16_t count = storage.fields.GetNumFld(at.position, *at.file);
  for (std::int32_t f = 1; f <= count; ++f) {
    fields.push_back(OpenFieldScan(storage, at, static_cast<std::int16_t>(f), pattern));
  }
  return std::make_unique<RecordScan>(std::move(fields));
}

}  // namespace orv::query
