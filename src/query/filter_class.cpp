#include "query/filter_class.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "dialogs/message_boxes.h"
#include "platform/clock.h"
#include "platform/code_page.h"
#include "platform/file_names.h"
#include "platform/run_time_error.h"
#include "query/filter_builder.h"
#include "storage/matrix_path.h"
#include "storage/number_text.h"

namespace orv::query {

using platform::Raise;
using platform::RunTimeError;

namespace {

constexpr std::int16_t kNoFilter = -1;
constexpr wchar_t kStep = L'/';

bool BeginsWithStep(const std::wstring& path, const std::wstring& base) {
  return path.size() > base.size() && path[base.size()] == kStep && path.starts_with(base);
}

/// The file that a view's path begins with, whatever its spelling.
std::optional<platform::FileIdentity> FileOf(const std::wstring& path) {
  const std::size_t end = path.find(L'"', 1);
  if (end == std::wstring::npos) return std::nullopt;
  return platform::IdentityOf(platform::ExistingSpelling(path.substr(1, end - 1)));
}

}  // namespace

std::size_t FilterClass::PlaceOf(std::int16_t index) {
  if (!IsSlot(index)) Raise(RunTimeError::kSubscript);
  return static_cast<std::size_t>(index - 1);
}

const FilterSlot& FilterClass::At(std::int16_t index) const { return slots_[PlaceOf(index)]; }

FilterSlot& FilterClass::At(std::int16_t index) { return slots_[PlaceOf(index)]; }

const FilterSlot& FilterClass::Named(const std::wstring& pth) const {
  const std::int16_t index = GetFilterID(pth);
  if (index == kNoFilter) Raise(RunTimeError::kInvalidCall);
  return At(index);
}

void FilterClass::Pth(std::int16_t index, const std::wstring& /*ignored*/) {
  At(index).path.clear();
}

std::int16_t FilterClass::GetFilterID(const std::wstring& pthVlu) const {
  for (std::int16_t index = 1; index <= kSlots; ++index) {
    if (At(index).path == pthVlu) return index;
  }
  return kNoFilter;
}

void FilterClass::ClearFilter(std::int16_t index) {
  if (IsSlot(index)) {
    At(index) = {};
  } else {
    dialogs::ShowNotice(L"Error in Clear Filter", Icon::kCritical);
  }
}

void FilterClass::CreateFilter(const std::wstring& pth, const std::wstring& flt) {
  if (builder_ == nullptr) Raise(RunTimeError::kInvalidCall);
  builder_->Build(pth, flt);
}

void FilterClass::ReDimCashFld(std::int16_t index) {
  if (!IsSlot(index)) return;
  FilterSlot& slot = At(index);
  slot.fieldMap.assign(static_cast<std::size_t>(std::max<std::int16_t>(slot.fields, 0)), 0);
}

void FilterClass::ReDimCashRec(std::int16_t index, std::int32_t vlu) { At(index).runs.Resize(vlu); }

void FilterClass::SetCashFld(std::int16_t index, std::int32_t pos, std::int32_t vlu) {
  if (!IsSlot(index)) return;
  std::vector<std::int16_t>& map = At(index).fieldMap;
  if (pos < 1 || static_cast<std::size_t>(pos) > map.size()) Raise(RunTimeError::kSubscript);
  if (vlu < std::numeric_limits<std::int16_t>::min() ||
      vlu > std::numeric_limits<std::int16_t>::max()) {
    Raise(RunTimeError::kOverflow);
  }
  map[static_cast<std::size_t>(pos - 1)] = static_cast<std::int16_t>(vlu);
}

std::int16_t FilterClass::GetCashFld(std::int16_t index, std::int32_t pos) const {
  if (!IsSlot(index)) return 0;
  const std::vector<std::int16_t>& map = At(index).fieldMap;
  if (pos < 1 || static_cast<std::size_t>(pos) > map.size()) return 0;
  return map[static_cast<std::size_t>(pos - 1)];
}

void FilterClass::SetCashRec(std::int16_t index, std::int32_t pos, std::int32_t vluUp,
                             std::int32_t vluEnd) {
  if (IsSlot(index)) At(index).runs.Set(pos, {vluUp, vluEnd});
}

std::int32_t FilterClass::GetCashRec(std::int16_t index, std::int32_t pos, bool end) const {
  if (!IsSlot(index)) return 0;
  const RecordRun& run = At(index).runs.Get(pos);
  return end ? run.end : run.up;
}

std::int32_t FilterClass::GetFilterValue(std::int16_t index, std::int32_t r) const {
  return At(index).runs.Find(r);
}

std::string FilterClass::Records(const std::wstring& pth) const {
  return storage::NumberText(Named(pth).records);
}

std::string FilterClass::Fields(const std::wstring& pth) const {
  return storage::NumberText(std::int32_t{Named(pth).fields});
}

std::string FilterClass::RecUndFlt(const std::wstring& pth, std::int32_t r) const {
  return storage::NumberText(Named(pth).runs.Find(r));
}

std::string FilterClass::FldUndFlt(const std::wstring& pth, std::int16_t r) const {
  const std::int16_t index = GetFilterID(pth);
  if (index == kNoFilter) Raise(RunTimeError::kInvalidCall);
  return storage::NumberText(std::int32_t{GetCashFld(index, r)});
}

void FilterClass::EraseCash() {
  for (std::int16_t index = 1; index <= kSlots; ++index) ClearFilter(index);
}

void FilterClass::DropFile(const std::wstring& fileName) {
  const std::wstring file = platform::FoldCase(storage::QuotedFile(fileName));
  const auto identity = platform::IdentityOf(platform::ExistingSpelling(fileName));
  for (std::int16_t index = 1; index <= kSlots; ++index) {
    const std::wstring& path = At(index).path;
    if (BeginsWithStep(platform::FoldCase(path), file) || (identity && FileOf(path) == identity)) {
      ClearFilter(index);
    }
  }
}

/// Whether the slot holds a view that `pth` or a view under construction is built on.
bool FilterClass::IsNeeded(std::int16_t index, const std::wstring& pth) const {
  const FilterSlot& slot = At(index);
  if (slot.path.empty()) return false;
  if (BeginsWithStep(pth, slot.path)) return true;
  for (std::int16_t other = 1; other <= kSlots; ++other) {
    if (underConstruction_[static_cast<std::size_t>(other - 1)] == 0) continue;
    if (BeginsWithStep(At(other).path, slot.path)) return true;
  }
  return false;
}

/// The free slot, or else the one that was completed first; 0 when there is none to be had.
std::int16_t FilterClass::ChooseSlot(const std::wstring& pth) const {
  float best = NewStamp();
  std::int16_t chosen = 0;
  for (std::int16_t index = 1; index <= kSlots; ++index) {
    if (underConstruction_[static_cast<std::size_t>(index - 1)] != 0) continue;
    if (At(index).timer >= best || IsNeeded(index, pth)) continue;
    best = At(index).timer;
    chosen = index;
  }
  return chosen;
}

/// The time of day, but later than every stamp given since midnight: the clock is too coarse to
/// keep the slots in the order in which they were filled. A clock that went back has passed
/// midnight.
float FilterClass::NewStamp() const {
  const float now = platform::SecondsSinceMidnight();
  if (now > lastStamp_ || now < lastReading_) return now;
  return std::nextafter(lastStamp_, std::numeric_limits<float>::max());
}

FilterClass::Claim::Claim(FilterClass& filters, const std::wstring& pth)
    : filters_(filters), slot_(filters.ChooseSlot(pth)) {
  if (slot_ == 0) return;
  filters_.ClearFilter(slot_);
  number_ = ++filters_.claims_;
  filters_.At(slot_).path = pth;
  filters_.At(slot_).claim = number_;
  filters_.underConstruction_[static_cast<std::size_t>(slot_ - 1)] = number_;
}

FilterClass::Claim::~Claim() {
  if (slot_ != 0) filters_.underConstruction_[static_cast<std::size_t>(slot_ - 1)] = 0;
}

bool FilterClass::Claim::Stands() const {
  return slot_ != 0 && filters_.At(slot_).claim == number_;
}

void FilterClass::Claim::Complete() {
  const float stamp = filters_.NewStamp();
  filters_.At(slot_).timer = stamp;
  filters_.lastStamp_ = stamp;
  filters_.lastReading_ = platform::SecondsSinceMidnight();
}

void FilterClass::Claim::GiveUp() {
  if (Stands()) filters_.ClearFilter(slot_);
}

}  // namespace orv::query
