#include "query/search.h"

#include <algorithm>
#include <memory>
#include <string>

#include "platform/run_time_error.h"
#include "query/field_scan.h"
#include "query/record_reader.h"
#include "storage/fixed_cells.h"
#include "storage/matrix.h"
#include "storage/number_text.h"

namespace orv::query {

using platform::RunTimeFailure;
using storage::Location;

namespace {

/// Less than no cell: what the least text is compared with while record 1 has none.
constexpr std::string_view kGreatestByte = "\xFF";
/// Nothing was found, and nothing forbids to look further.
constexpr std::int32_t kGoOn = 0;

/// Runs a search for its record number; a run-time failure becomes the error code and no record.
template <typename Find>
std::int32_t Guarded(storage::ErrorCode& error, Find find) {
  try {
    return find();
  } catch (const RunTimeFailure& failure) {
    error.Set(failure.number());
    return Search::kNotFound;
  }
}

std::int32_t FoundOr(std::int32_t found) { return found > 0 ? found : Search::kNotFound; }

}  // namespace

std::int32_t Search::MtxFindFirst(const std::wstring& pth, FindRequest& request) {
  return Guarded(storage_.error, [&] { return FindFirst(pth, request); });
}

std::int32_t Search::FindFirst(const std::wstring& pth, FindRequest& request) {
  const Location at = storage_.resolver.ResolvePath(pth);
  if (!at.IsMatrix()) return kNotFound;
  const std::int32_t fields = storage_.FieldCount(at);
  if (storage_.error.IsSet()) return kNotFound;
  if (!at.endsInProperties && IsInteger(at, request.field)) request.caseMatters = true;
  if (request.region != 0) return kNotFound;
  const TextPattern pattern(request.value, request.inCell, request.caseMatters);
  if (request.field == 0) return fields < 1 ? kNotFound : FindInAnyField(at, request, pattern);
  return FoundOr(at.IsView() ? FindInView(at, request.field, pattern)
                             : FindInField(at, request, pattern));
}

/// Whether the field's type is "int": such fields always compare exactly.
bool Search::IsInteger(const Location& at, std::int16_t field) {
  if (field == 0) return false;
  const std::int16_t underlying =
      at.IsView() ? storage_.ports.filters->GetCashFld(at.filter, field) : field;
  const std::int32_t descriptor = storage_.fields.GetFieldPos(at.position, underlying, *at.file);
  if (descriptor < 1) return false;
  const storage::TypeProperty* const type = storage_.types.Find(
      *at.file, at.position, storage::FieldTypeNumber(descriptor, *at.file), "type");
  return type != nullptr && type->text == storage::kIntType;
}

std::int32_t Search::FindInField(const Location& at, const FindRequest& request,
                                 const TextPattern& pattern) {
  const auto scan = request.field == 0 ? OpenRecordScan(storage_, at, pattern)
                                       : OpenFieldScan(storage_, at, request.field, pattern);
  const std::int32_t records = storage::TrustedRecordCount(*at.file, at.position);
  return FoundOr(scan->FindNext(std::max(request.record, 1), records));
}

std::int32_t Search::FindInView(const Location& at, std::int16_t field,
                                const TextPattern& pattern) {
  const std::int32_t records = storage_.RecordCount(at);
  if (records < 1) return kNotFound;
  RecordReader reader(storage_, at, field);
  for (std::int32_t r = 1; r <= records; ++r) {
    const std::string_view text = reader.Read(r);
    // The first record of another length ends the search; hosts rely on it.
    if (!pattern.inCell() && text.size() != pattern.value().size()) return kNotFound;
    if (pattern.Matches(text)) return r;
  }
  return kGoOn;
}

/// There is a pass for each field, but each hands field 0 to the same scan of the matrix, so that
/// one scan tells what all of them find, and a match is always that of the first pass. In a view
/// the passes go on with their own field; what the scan found stays the result when none of them
/// finds anything.
std::int32_t Search::FindInAnyField(const Location& at, FindRequest& request,
                                    const TextPattern& pattern) {
  const std::int32_t scanned = FindInField(at, request, pattern);
  if (!at.IsView()) {
    if (scanned > 0) request.field = 1;
    return scanned;
  }
  const std::int32_t fields = storage_.FieldCount(at);
  for (std::int32_t f = 1; f <= fields; ++f) {
    const std::int32_t found = FindInView(at, static_cast<std::int16_t>(f), pattern);
    if (found != kGoOn) return found;
  }
  return scanned;
}

std::int32_t Search::FindEqual(const std::wstring& pth, std::int16_t field,
                               std::string_view value) {
  return Guarded(storage_.error, [&]() -> std::int32_t {
    const Location at = storage_.resolver.ResolvePath(pth);
    if (!at.IsMatrix()) return kNotFound;
    const TextPattern pattern(value, false, true);
    const std::int32_t records = storage_.RecordCount(at);
    if (!at.IsView())
      return FoundOr(OpenFieldScan(storage_, at, field, pattern)->FindNext(1, records));
    RecordReader reader(storage_, at, field);
    for (std::int32_t r = 1; r <= records; ++r) {
      if (pattern.Matches(reader.Read(r))) return r;
    }
    return kNotFound;
  });
}

/// The cells of a column of the matrix behind the path, with the number of its records. The path
/// may fail, and a matrix without records leaves 5: then there are none.
template <typename Find>
std::int32_t Search::FindExtreme(const std::wstring& pth, std::int16_t col, Find find) {
  return Guarded(storage_.error, [&]() -> std::int32_t {
    Location at = storage_.resolver.ResolvePath(pth);
    if (!at.IsMatrix()) return kNotFound;
    at.filter = 0;
    RecordReader reader(storage_, at, col);
    const std::int32_t records = storage_.RecordCount(at);
    if (records == 0) storage_.error.Set(storage::code::kInvalidCall);
    if (storage_.error.IsSet()) return kNotFound;
    return find(reader, records);
  });
}

/// The least text is first taken from record 1, and the search then starts with record 1 again: it
/// never finds what it began with. A record 1 that holds the least text is therefore not found;
/// hosts rely on that.
std::int32_t Search::MtxFindMin(const std::wstring& pth, std::int16_t col) {
  return FindExtreme(pth, col, [](RecordReader& reader, std::int32_t records) {
    std::string least(reader.Read(1));
    if (!reader.HasCell()) least = kGreatestByte;
    std::int32_t found = kNotFound;
    for (std::int32_t r = 1; r <= records; ++r) {
      const std::string_view text = reader.Read(r);
      if (text >= least) continue;
      least = text;
      found = r;
    }
    return found;
  });
}

std::int32_t Search::MtxFindMax(const std::wstring& pth, std::int16_t col) {
  return FindExtreme(pth, col, [](RecordReader& reader, std::int32_t records) {
    std::string greatest;
    std::int32_t found = kNotFound;
    for (std::int32_t r = 1; r <= records; ++r) {
      const std::string_view text = reader.Read(r);
      if (text <= greatest) continue;
      greatest = text;
      found = r;
    }
    return found;
  });
}

std::int32_t Search::FindMaxNumber(const std::wstring& pth, std::int16_t col) {
  return FindExtreme(pth, col, [](RecordReader& reader, std::int32_t records) {
    double greatest = 0;
    std::int32_t found = kNotFound;
    for (std::int32_t r = 1; r <= records; ++r) {
      const double number = storage::LeadingNumber(reader.Read(r));
      if (number <= greatest) continue;
      greatest = number;
      found = r;
    }
    return found;
  });
}

}  // namespace orv::query
