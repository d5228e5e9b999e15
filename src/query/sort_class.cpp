#include "query/sort_class.h"

#include "dialogs/message_boxes.h"
#include "query/selection.h"

namespace orv::query {

using storage::Location;

namespace {

constexpr const wchar_t* kCaption = L"ORV DataBase Server";
constexpr std::int32_t kFewestRecords = 2;

bool Refuse(std::wstring text, Icon icon) {
  dialogs::ShowNotice(std::move(text), icon, kCaption);
  return false;
}

bool RefuseForError(std::int16_t code) {
  return Refuse(L"Произошла ошибка № " + std::to_wstring(code) + L"\rПроцесс сортировки невозможен",
                Icon::kCritical);
}

/// Reads the field's cells while events run between them. A file that cannot be opened again has no
/// texts left.
class KeyReader {
 public:
  KeyReader(storage::Storage& storage, HeldLocation& held, std::int16_t f)
      : storage_(storage), held_(held), field_(f) {
    reader_.emplace(storage_, held_.at(), field_);
  }

  std::string_view Read(std::int32_t r) {
    if (!held_.IsOpen()) OpenAgain();
    return reader_ ? reader_->Read(r) : std::string_view();
  }

 private:
  void OpenAgain() {
    reader_.reset();
    if (held_.Resolve().IsMatrix()) reader_.emplace(storage_, held_.at(), field_);
  }

  storage::Storage& storage_;
  HeldLocation& held_;
  std::int16_t field_;
  std::optional<RecordReader> reader_;
};

}  // namespace

void SortClass::SortData(const std::wstring& pth, std::int16_t f) {
  HeldLocation held(storage_, pth);
  if (!MayBeSorted(held.Resolve(), f)) return;
  const std::int32_t records = storage_.RecordCount(held.at());
  dialogs::Progress dialog;
  dialog.Show(L"Сортировка данных");
  SortKeys keys;
  keys.Reserve(records);
  Load(held, f, records, dialog, keys);
  // A cancelled loading does not end the sort; what was not loaded is sorted as empty.
  keys.PadTo(records);
  Sort(keys, dialog);
  dialog.Close();
}

bool SortClass::MayBeSorted(const Location& at, std::int16_t f) {
  const storage::ErrorCode& error = storage_.error;
  if (at.IsView()) {
    return Refuse(
        L"Невозможно сортироварь данные под фильтром!\rОчистите фильтр и повторите попытку.",
        Icon::kCritical);
  }
  const std::int32_t records = storage_.RecordCount(at);
  if (error.IsSet()) return RefuseForError(error.value());
  if (records < kFewestRecords) {
    return Refuse(L"Недостаточно данных для сортировки!\rТаблица содержит менее двух записей.",
                  Icon::kExclamation);
  }
  const std::int32_t fields = storage_.FieldCount(at);
  if (error.IsSet()) return RefuseForError(error.value());
  if (fields < 1) return Refuse(L"Таблица пуста!", Icon::kExclamation);
  if (f < 1 || f > fields) return Refuse(L"Неверно указан номер поля!", Icon::kCritical);
  if (at.IsDbase()) {
    return Refuse(L"Сортировка не возможна Неверно указан номер поля!", Icon::kCritical);
  }
  return true;
}

void SortClass::Load(HeldLocation& held, std::int16_t f, std::int32_t records,
                     dialogs::Progress& dialog, SortKeys& keys) {
  KeyReader reader(storage_, held, f);
  dialog.SetLabel(L"Загрузка...");
  dialog.SetRange(1, records);
  for (std::int32_t r = 1; r <= records; ++r) {
    dialog.ServiceEvents();
    dialog.SetValue(r);
    keys.Add(reader.Read(r));
    dialog.ServiceEvents();
    if (dialogs::Progress::CancelRequested()) {
      dialog.Close();
      return;
    }
  }
}

/// A cancel request is tested after each pass only, so one left from the loading lets the first
/// pass through.
void SortClass::Sort(const SortKeys& keys, dialogs::Progress& dialog) {
  DoubleEndedSelection selection(keys);
  dialog.SetLabel(L"Сортировка...");
  dialog.SetRange(1, selection.Passes());
  for (std::int32_t i = 1; i <= selection.Passes(); ++i) {
    selection.Pass(i);
    dialog.SetValue(i);
    dialog.ServiceEvents();
    if (dialogs::Progress::CancelRequested()) {
      dialog.Close();
      return;
    }
  }
}

void SortClass::Indexing(const std::wstring& /*pth*/, std::int16_t /*fld*/) {}

}  // namespace orv::query
