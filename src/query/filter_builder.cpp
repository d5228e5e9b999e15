#include "query/filter_builder.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>

#include "dialogs/cancel_request.h"
#include "dialogs/cr_flt.h"
#include "dialogs/installed_interface.h"
#include "dialogs/message_boxes.h"
#include "platform/code_page.h"
#include "query/field_scan.h"
#include "query/filter_condition.h"
#include "query/held_location.h"
#include "query/run_collector.h"
#include "storage/layout.h"

namespace orv::query {

using platform::RunTimeError;
using platform::RunTimeFailure;
using storage::Location;

namespace {

/// A direct search looks at up to this share of the records it has passed before events run again:
/// often enough for a person, and in small tables after each record.
constexpr std::int32_t kStrideShare = 256;
/// As often as the label tells how far a direct search has come.
constexpr std::int32_t kLabelSteps = 100;

/// Only fields of the free and the dictionary style are searched directly; the others give no
/// records.
bool IsSearched(const Location& at, std::int32_t descriptor) {
  const std::uint8_t style =
      at.file->ByteAt(std::int64_t{descriptor} + storage::layout::descriptor::kStyle);
  return style < storage::style_code::kFixed || style == storage::style_code::kDictionary;
}

/// The building of one view, from the choice of its slot to its stamp.
class Process {
 public:
  Process(storage::Storage& storage, command::Evaluator& evaluator, FilterClass& filters,
          const std::wstring& pth, const std::wstring& flt, dialogs::CrFlt& dialog)
      : storage_(storage),
        evaluator_(evaluator),
        filters_(filters),
        path_(pth),
        condition_(flt),
        dialog_(dialog),
        base_(storage, BasePath(pth, flt)) {}

  void DoProcess();

 private:
  static std::wstring BasePath(const std::wstring& pth, const std::wstring& flt);

  bool Fill(FilterClass::Claim& claim);
  bool Collect(const FilterClass::Claim& claim);
  bool Evaluate(const FilterClass::Claim& claim, const FilterCondition& condition);
  bool SearchDirectly(const FilterClass::Claim& claim, const FilterCondition& condition);
  void AddMatches(const FilterCondition& condition, std::int32_t from, std::int32_t last,
                  bool found);
  void ShowRecord(std::int32_t record);
  bool Reopen();
  void Store(FilterClass::Claim& claim);
  void Fail(FilterClass::Claim& claim, RunTimeError number);

  storage::Storage& storage_;
  command::Evaluator& evaluator_;
  FilterClass& filters_;
  const std::wstring& path_;
  const std::wstring& condition_;
  dialogs::CrFlt& dialog_;
  HeldLocation base_;
  std::int32_t records_ = 0;  ///< of the base
  std::int32_t labelAt_ = 0;  ///< the record from which on the label is due again
  RunCollector runs_;
};

/// The path without the separator and the condition.
std::wstring Process::BasePath(const std::wstring& pth, const std::wstring& flt) {
  return pth.substr(0, pth.size() - std::min(pth.size(), flt.size() + 1));
}

void Process::DoProcess() {
  dialogs::CancelRequest::Clear();
  storage_.error.Clear();
  dialog_.ServiceEvents();
  dialog_.SetLabel(condition_);
  FilterClass::Claim claim(filters_, path_);
  if (claim.slot() == 0) {
    dialogs::ShowNotice(L"Error in ID 'CreateFilter'", Icon::kCritical);
    return;
  }
  try {
    if (!Fill(claim)) claim.GiveUp();
  } catch (const RunTimeFailure& failure) {
    Fail(claim, failure.number());
  } catch (const std::bad_alloc&) {
    Fail(claim, RunTimeError::kOutOfMemory);
  }
}

void Process::Fail(FilterClass::Claim& claim, RunTimeError number) {
  claim.GiveUp();
  dialogs::ShowNotice(L"Ошибка создания фильтра.", Icon::kCritical);
  storage_.error.Set(number);
}

/// False when there is no view to store; why shows in the error code.
bool Process::Fill(FilterClass::Claim& claim) {
  if (platform::Trim(path_).empty() || !Reopen()) return false;
  const Location& base = base_.at();
  // A table's header can claim two thousand million records; nobody could wait for them.
  records_ = base.IsDbase() ? storage_.ReadableRecordCount(base) : storage_.RecordCount(base);
  if (records_ > 0 && !Collect(claim)) return false;
  if (!claim.Stands()) return false;
  Store(claim);
  return true;
}

/// Finds the base, again when its file was closed meanwhile.
bool Process::Reopen() {
  base_.Resolve();
  if (!storage_.error.IsSet() && !base_.at().IsTable())
    storage_.error.Set(storage::code::kBadArgument);
  return !storage_.error.IsSet();
}

bool Process::Collect(const FilterClass::Claim& claim) {
  FilterCondition condition(storage_, evaluator_, base_);
  if (!condition.Read(platform::ToBytes(condition_))) return false;
  dialog_.SetRange(0, records_);
  switch (condition.mode()) {
    case FilterMode::kDirect:
      return SearchDirectly(claim, condition);
    case FilterMode::kEvaluate:
      return Evaluate(claim, condition);
    case FilterMode::kUnique:
      dialogs::Beep();
      return true;
  }
  return false;
}

bool Process::Evaluate(const FilterClass::Claim& claim, const FilterCondition& condition) {
  auto matches = condition.MakeTest();
  for (std::int32_t r = 1; r <= records_; ++r) {
    dialog_.SetValue(r);
    if (dialogs::CrFlt::CancelRequested()) return true;
    dialog_.ServiceEvents();
    if (!claim.Stands()) return false;
    if (!base_.IsOpen()) {
      if (!Reopen()) return false;
      matches = condition.MakeTest();
    }
    if (matches(r)) runs_.Add(r, storage_.UnderlyingRecord(base_.at(), r));
  }
  return true;
}

bool Process::SearchDirectly(const FilterClass::Claim& claim, const FilterCondition& condition) {
  const TextPattern pattern(condition.value(), false, true);
  std::unique_ptr<FieldScan> scan;
  for (std::int32_t from = 1; from <= records_;) {
    const Location& at = base_.at();
    if (!scan) {
      if (at.IsMatrix() &&
          !IsSearched(at, storage_.fields.GetFieldPos(at.position, condition.field(), *at.file))) {
        dialog_.SetValue(records_);
        return true;
      }
      scan = OpenFieldScan(storage_, at, condition.field(), pattern);
    }
    const std::int32_t stride = std::min(from / kStrideShare, records_ - from);
    const std::int32_t found = scan->FindNext(from, from + stride);
    const std::int32_t last = found > 0 ? found : from + stride;
    AddMatches(condition, from, last, found > 0);
    from = last + 1;
    ShowRecord(last);
    dialog_.ServiceEvents();
    if (dialogs::CrFlt::CancelRequested()) return true;
    if (!claim.Stands()) return false;
    if (base_.IsOpen()) continue;
    scan.reset();
    if (!Reopen()) return false;
  }
  return true;
}

/// Adds what matches among the records from `from` to `last`, of which only the last can hold the
/// value.
void Process::AddMatches(const FilterCondition& condition, std::int32_t from, std::int32_t last,
                         bool found) {
  if (condition.op() == command::Operator::kEqual) {
    if (found) runs_.Add(last, last);
  } else {
    runs_.AddRange(from, found ? last - 1 : last);
  }
}

void Process::ShowRecord(std::int32_t record) {
  dialog_.SetValue(record);
  if (record < labelAt_ && record < records_) return;
  dialog_.SetLabel(condition_ + L": " + std::to_wstring(record));
  labelAt_ = record + records_ / kLabelSteps;
}

/// The view shows all fields in their order. Its stamp, which makes it complete, comes last.
void Process::Store(FilterClass::Claim& claim) {
  const std::int16_t slot = claim.slot();
  const std::int16_t fields = storage_.fields.GetNumFld(base_.at().position, *base_.at().file);
  filters_.CashFldsSetGet(slot, fields);
  filters_.ReDimCashFld(slot);
  for (std::int32_t f = 1; f <= fields; ++f) filters_.SetCashFld(slot, f, f);
  filters_.CashRecsSetGet(slot, runs_.matched());
  const auto count = static_cast<std::int32_t>(runs_.runs().size());
  if (count > 0) filters_.ReDimCashRec(slot, count);
  std::int32_t pos = 0;
  for (const RecordRun& run : runs_.runs()) filters_.SetCashRec(slot, ++pos, run.up, run.end);
  storage_.error.Clear();
  claim.Complete();
  dialog_.ServiceEvents();
}

}  // namespace

void FilterBuilder::Build(const std::wstring& pth, const std::wstring& flt) {
  // A filter is built wherever a path needs it: inside a conversion, an export, another filter.
  const dialogs::CancelRequest::Inner inner;
  dialogs::CrFlt dialog([&](dialogs::CrFlt& shown) {
    Process(storage_, evaluator_, filters_, pth, flt, shown).DoProcess();
  });
  dialog.RunModal();
}

}  // namespace orv::query
