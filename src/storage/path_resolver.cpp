#include "storage/path_resolver.h"

#include "platform/code_page.h"
#include "platform/file_names.h"
#include "storage/matrix.h"

namespace orv::storage {

using platform::File;
using platform::RunTimeFailure;

namespace {

/// Whether a matrix header can stand at this position. Positions come from files and are not
/// trusted.
bool IsMatrixPosition(const File& file, std::int32_t position) {
  return file.Contains(position, layout::matrix::kHeaderBytes);
}

bool EqualIgnoringCase(const std::wstring& a, const std::wstring& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && platform::FoldCase(a[i]) != platform::FoldCase(b[i])) return false;
  }
  return true;
}

/// Whether two spellings of the path that differ in letter case may mean different things.
bool CaseMatters(const std::wstring& path, const MatrixPath& parts) {
  for (const PathStep& step : parts.steps) {
    if (step.kind == PathStep::Kind::kFilter) return true;
  }
  const std::size_t fileEnd = path.find(parts.fileName) + parts.fileName.size() + 1;
  return path.find(L'"', fileEnd) != std::wstring::npos;
}

}  // namespace

Location PathResolver::ResolveOther(const std::wstring& path) {
  try {
    if (Matches(path) && Revive()) return last_.location;
    if (error_.IsSet()) return {};
    return ResolveAfresh(path);
  } catch (const RunTimeFailure& failure) {
    error_.Set(failure.number());
    return {};
  }
}

bool PathResolver::Matches(const std::wstring& path) const {
  if (last_.location.position == 0) return false;
  if (path == last_.key) return true;
  if (last_.caseMatters || !EqualIgnoringCase(path, last_.key)) return false;
  // Names that differ in case only may name two files.
  ErrorCode ignored;
  const std::wstring fileName = SplitPath(path, nullptr, ignored).fileName;
  return platform::IdentityOf(platform::ExistingSpelling(fileName)) == last_.identity;
}

/// Makes the remembered location usable again. False when the path must be resolved anew, or with
/// an error code when its file is gone.
bool PathResolver::Revive() { return ReviveFile() && ReviveFilter(); }

bool PathResolver::ReviveFile() {
  File* file = files_.Find(last_.location.number);
  if (file != nullptr && file->opening() == last_.opening) return true;
  if (file != nullptr) return false;
  using Reopening = OpenFileTable::Reopening;
  const Reopening reopening =
      openFiles_.Reopen(last_.location.number, last_.fileName, last_.identity);
  if (reopening == Reopening::kMissing) error_.Set(code::kFileMissing);
  if (reopening != Reopening::kDone) return false;
  file = files_.Find(last_.location.number);
  last_.location.file = file;
  last_.opening = file->opening();
  return true;
}

bool PathResolver::ReviveFilter() {
  if (last_.viewKey.empty()) return true;
  const std::int16_t present = ports_.filters->GetFilterID(last_.viewKey);
  if (present > 0) {
    last_.location.filter = present;
    return true;
  }
  // Building the view resolves its base, which takes the place of the remembered path.
  HandleCache remembered = last_;
  remembered.location.filter = UseFilter(remembered.viewKey, remembered.condition);
  if (error_.IsSet() || !IsOpen(remembered.location.number, remembered.opening)) return false;
  last_ = std::move(remembered);
  return true;
}

Location PathResolver::ResolveAfresh(const std::wstring& path) {
  const MatrixPath parts = SplitPath(path, ports_.subscripts, error_);
  if (error_.IsSet()) return {};
  Walk walk;
  if (!OpenRoot(parts.fileName, walk)) return walk.location;
  for (std::size_t i = 0; i < parts.steps.size(); ++i) {
    TakeStep(parts, i, walk);
    if (error_.IsSet()) return {};
    // Building a view may have closed the file under this path: by trying an eleventh file, or by a
    // host's call from the events.
    if (!IsOpen(walk.location.number, walk.opening)) return ResolveAfresh(path);
  }
  Store(path, parts, walk);
  return walk.location;
}

/// Opens the file and stands on its root. False when there is nothing to walk.
bool PathResolver::OpenRoot(const std::wstring& fileName, Walk& walk) {
  const std::int16_t number = openFiles_.OpenFile(fileName);
  if (error_.IsSet()) return false;
  walk.location.number = number;
  walk.location.file = &files_.At(number);
  const File& file = *walk.location.file;
  walk.opening = file.opening();
  walk.location.position = 0;
  if (CheckOwnFormat(file)) {
    const std::int32_t root = file.Int32At(layout::file::kRootPointer);
    if (IsMatrixPosition(file, root)) walk.location.position = root;
  } else if (CheckDbaseFormat(file)) {
    walk.location.position = layout::kDbaseTable;
  }
  return walk.location.position != 0;
}

void PathResolver::TakeStep(const MatrixPath& parts, std::size_t index, Walk& walk) {
  if (!walk.location.IsTable()) {
    error_.Set(code::kNotAMatrix);
    return;
  }
  const PathStep& step = parts.steps[index];
  switch (step.kind) {
    case PathStep::Kind::kFilter:
      return EnterFilter(parts, index, walk);
    case PathStep::Kind::kProperties:
      return EnterProperties(walk);
    case PathStep::Kind::kCell:
      return EnterCell(step, walk);
  }
}

void PathResolver::EnterFilter(const MatrixPath& parts, std::size_t index, Walk& walk) {
  walk.viewKey = CanonicalPath(parts, index + 1);
  walk.condition = parts.steps[index].condition;
  walk.location.filter = UseFilter(walk.viewKey, walk.condition);
  walk.location.endsInProperties = false;
}

/// The slot of the view, built now if it is missing. 0 with an error code when it cannot be had.
std::int16_t PathResolver::UseFilter(const std::wstring& key, const std::wstring& condition) {
  if (ports_.filters == nullptr) {
    error_.Set(code::kInvalidCall);
    return 0;
  }
  std::int16_t slot = ports_.filters->GetFilterID(key);
  if (slot > 0) return slot;
  ports_.filters->CreateFilter(key, condition);
  if (error_.IsSet()) return 0;
  slot = ports_.filters->GetFilterID(key);
  if (slot > 0) return slot;
  error_.Set(code::kInvalidCall);
  return 0;
}

void PathResolver::EnterProperties(Walk& walk) {
  Location& at = walk.location;
  std::int32_t properties = 0;
  if (at.IsMatrix()) {
    properties = at.file->Int32At(std::int64_t{at.position} + layout::matrix::kProperties);
  }
  at.position = IsMatrixPosition(*at.file, properties) ? properties : 0;
  at.filter = 0;
  at.endsInProperties = true;
  at.throughProperties = true;
  walk.viewKey.clear();
}

void PathResolver::EnterCell(const PathStep& step, Walk& walk) {
  Location& at = walk.location;
  if (!at.IsMatrix()) {
    error_.Set(code::kNotAMatrix);
    return;
  }
  const std::int32_t record =
      at.IsView() ? ports_.filters->GetFilterValue(at.filter, step.record) : step.record;
  const std::int32_t nested =
      record < 1 ? 0 : cells_->FindNestedMatrix(at.position, record, step.field, *at.file);
  if (!IsMatrixPosition(*at.file, nested)) {
    error_.Set(code::kNotAMatrix);
    return;
  }
  at.position = nested;
  at.filter = 0;
  at.endsInProperties = false;
  walk.viewKey.clear();
}

void PathResolver::Store(const std::wstring& path, const MatrixPath& parts, const Walk& walk) {
  last_ = {.key = path,
           .location = walk.location,
           .fileName = parts.fileName,
           .viewKey = walk.viewKey,
           .condition = walk.condition,
           .identity = walk.location.file->Identity(),
           .opening = walk.opening,
           .caseMatters = CaseMatters(path, parts)};
}

void PathResolver::ForgetFile(const platform::FileIdentity& identity) {
  if (last_.location.position != 0 && last_.identity == identity) last_ = {};
}

}  // namespace orv::storage
