#include "convert/field_conversion.h"

#include <limits>

#include "convert/dictionary_matrix.h"
#include "convert/storage_analysis.h"
#include "dialogs/message_boxes.h"
#include "platform/code_page.h"
#include "storage/bytes.h"
#include "storage/cell_batch.h"
#include "storage/chain_array.h"
#include "storage/dictionary.h"
#include "storage/field_reader.h"
#include "storage/layout.h"
#include "storage/matrix.h"
#include "storage/number_text.h"

namespace orv::convert {

using dialogs::CompressForm;
using platform::File;
using platform::Raise;
using platform::RunTimeError;
using storage::FieldReader;
using storage::Location;
using Step = CompressForm::Step;
namespace code = storage::code;
namespace descriptor_layout = storage::layout::descriptor;
namespace free_size = storage::free_size;
namespace style_code = storage::style_code;

namespace {

constexpr std::uint8_t kUniqueStep = 1;  ///< what the unique variant of a style adds to its code

const wchar_t* StyleName(std::int16_t freeSize) {
  switch (freeSize) {
    case free_size::kFree:
      return L"Свободный";
    case free_size::kFixed:
      return L"Фиксированный";
    case free_size::kDictionary:
      return L"Словарный";
    default:
      return nullptr;
  }
}

std::uint8_t StyleByte(std::uint8_t base, bool unique) {
  return static_cast<std::uint8_t>(base + (unique ? kUniqueStep : 0));
}

std::int16_t FieldNumber(const std::string& text) {
  using Limits = std::numeric_limits<std::int16_t>;
  const auto number = storage::RoundToInt32(storage::LeadingNumber(text));
  if (!number || *number < Limits::min() || *number > Limits::max()) Raise(RunTimeError::kOverflow);
  return static_cast<std::int16_t>(*number);
}

/// The loop's duties of one record. False when a cancel was confirmed.
bool ShowRecord(CompressForm& form, std::int32_t r) {
  form.SetValue(r);
  form.ServiceEvents();
  return !CompressForm::CancelRequested();
}

/// The first bytes of the descriptor as the conversion leaves them: all of it changes in one write,
/// so a field is never seen half converted.
class NewDescriptor {
 public:
  NewDescriptor(File& file, std::int32_t descriptor, std::size_t bytes)
      : file_(file),
        descriptor_(descriptor),
        head_(file.View(descriptor, static_cast<std::int64_t>(bytes))) {}

  template <typename Integer>
  NewDescriptor& Set(std::size_t offset, Integer value) {
    storage::PatchInteger(head_, offset, value);
    return *this;
  }
  void Write() { file_.Write(descriptor_, head_); }

 private:
  File& file_;
  std::int32_t descriptor_;
  std::string head_;
};

}  // namespace

void FieldConversion::ConvertField(const std::wstring& path, const std::string& field,
                                   const std::string& request) {
  CompressForm form([&](CompressForm& shown) { ProcessDetector(shown, path, field, request); });
  form.RunModal();
  // A conversion gives fields types and dictionaries.
  storage_.types.Clear();
}

void FieldConversion::ProcessDetector(CompressForm& form, const std::wstring& path,
                                      const std::string& field, const std::string& newType) {
  const StyleRequest request = ParseStyleRequest(newType);
  Target target;
  if (!FindTarget(path, field, target)) {
    form.Close();
    return;
  }
  const wchar_t* const name = StyleName(request.freeSize);
  if (name == nullptr) return;  // nobody knows what to do: the dialog stays
  form.AppendHeading(name);
  Run(form, target, request);
  form.Close();
}

bool FieldConversion::FindTarget(const std::wstring& path, const std::string& field,
                                 Target& target) {
  const Location at = storage_.resolver.ResolvePath(path);
  if (storage_.error.IsSet()) return false;
  if (!at.IsMatrix()) {
    storage_.error.Set(at.IsDbase() ? code::kNotOnDbase : code::kBadArgument);
    return false;
  }
  const std::int16_t asked = FieldNumber(field);
  target.path = path;
  target.throughView = at.IsView();
  target.field = storage_.UnderlyingField(at, asked);
  target.matrix = at;
  target.matrix.filter = 0;
  target.descriptor = storage_.fields.GetFieldPos(at.position, target.field, *at.file);
  if (at.file->Contains(target.descriptor, descriptor_layout::kBytes)) return true;
  storage_.error.Set(code::kBadArgument);
  return false;
}

void FieldConversion::Run(CompressForm& form, const Target& target, const StyleRequest& request) {
  const std::uint8_t present =
      target.matrix.file->ByteAt(std::int64_t{target.descriptor} + descriptor_layout::kStyle);
  if (request.freeSize == free_size::kDictionary) {
    if (present != style_code::kDictionary) return SetAsCompressed(form, target);
    dialogs::ShowNotice(L"Стиль поля уже установлен как \"Сжатый\".", Icon::kExclamation);
    return;
  }
  form.HideStep(Step::kAnalysis);
  form.HideStep(Step::kDictionary);
  form.RunStep(Step::kUpdate);
  if (request.freeSize == free_size::kFixed) {
    SetAsFixed(form, target, request.cellSize, request.unique, request.dataType);
  } else if (present < style_code::kFixed) {
    dialogs::ShowNotice(L"Стиль поля уже установлен как \"Свободный\".", Icon::kExclamation);
  } else {
    SetAsFree(form, target, false, request.unique, request.dataType);
  }
}

FieldReader FieldConversion::ReaderOf(const Target& target) {
  return {*target.matrix.file, target.matrix.position, target.descriptor, &storage_.types};
}

void FieldConversion::SetAsFixed(CompressForm& form, const Target& target, std::int16_t cellsize,
                                 bool unique, std::int16_t dataType) {
  File& file = *target.matrix.file;
  FieldReader reader = ReaderOf(target);
  const std::int32_t records = storage::TrustedRecordCount(file, target.matrix.position);
  if (cellsize < 1) Raise(RunTimeError::kInvalidCall);
  if (std::int64_t{records} * cellsize > platform::kGreatestLength) Raise(RunTimeError::kOverflow);
  const storage::FixedFormat format = storage::FixedFormatOf(
      file, target.matrix.position, target.descriptor,
      {.freeSize = free_size::kFixed, .cellSize = cellsize, .dataType = dataType}, &storage_.types);

  form.SetBusyPointer(true);
  form.SetRange(0, records);
  std::string block;
  block.reserve(static_cast<std::size_t>(records) * static_cast<std::size_t>(cellsize) +
                2 * sizeof records);
  storage::AppendInteger(block, records);
  for (std::int32_t r = 1; r <= records; ++r) {
    if (!ShowRecord(form, r)) return;
    block += storage::FixedImage(reader.Read(r), format, storage_.error);
    if (storage_.error.IsSet()) return;
  }
  storage::AppendInteger(block, std::int32_t{0});
  const std::int32_t start = storage::EndOfFile(file);
  file.Write(start, block);

  NewDescriptor(file, target.descriptor, descriptor_layout::kDataType + 1)
      .Set(descriptor_layout::kData, start)
      .Set(descriptor_layout::kStyle, StyleByte(style_code::kFixed, unique))
      .Set(descriptor_layout::kCellSize, cellsize)
      .Set(descriptor_layout::kDataType, static_cast<std::uint8_t>(dataType))
      .Write();
}

void FieldConversion::SetAsFree(CompressForm& form, const Target& target, bool flag, bool unique,
                                std::int16_t dataType) {
  File& file = *target.matrix.file;
  FieldReader reader = ReaderOf(target);
  const std::int16_t type = reader.typeNumber();
  const std::int32_t records = storage::TrustedRecordCount(file, target.matrix.position);
  const std::int32_t start =
      storage::AppendChainBlock(file, records, storage::layout::kPointerBytes);
  std::int64_t slot = std::int64_t{start} + storage::layout::kChainHeadBytes;
  storage::CellBatch cells(file);
  form.SetRange(0, records);
  for (std::int32_t r = 1; r <= records; ++r, slot += storage::layout::kPointerBytes) {
    if (!ShowRecord(form, r)) return;
    const std::string_view text = reader.Read(r);
    const bool holdsMatrix = reader.code() < 0;
    if (!holdsMatrix) cells.Add(slot, storage::NewCellCode(type, text), text);
  }
  cells.Flush();

  const std::uint8_t base = flag ? style_code::kFreeFixedType : style_code::kFree;
  NewDescriptor(file, target.descriptor, descriptor_layout::kDataType + 1)
      .Set(descriptor_layout::kData, start)
      .Set(descriptor_layout::kStyle, StyleByte(base, unique))
      .Set(descriptor_layout::kDataType, static_cast<std::uint8_t>(dataType))
      .Write();
}

void FieldConversion::SetAsCompressed(CompressForm& form, const Target& target) {
  if (target.throughView) {
    dialogs::ShowNotice(
        L"Невозможно создать словарь из под фильтра. Очистите фильтр и попробуйте еще раз.",
        Icon::kCritical);
    return;
  }
  if (target.matrix.throughProperties) {
    // Type tables and dictionaries are read without asking for the types of their own fields.
    storage_.error.Set(code::kPropertyRefused);
    return;
  }
  File& file = *target.matrix.file;
  FieldReader reader = ReaderOf(target);
  const std::int32_t records = storage::TrustedRecordCount(file, target.matrix.position);
  form.RunStep(Step::kAnalysis);
  Analysis analysis;
  if (!AnalyseField(form, reader, records, analysis)) return;
  form.ShowResult(Step::kAnalysis, std::to_wstring(Efficiency(records, analysis.values.size())) +
                                       L"% - Эфективность метода");
  form.SetValue(records);
  form.FinishStep(Step::kAnalysis);
  form.RunStep(Step::kDictionary);

  DictionaryMatrix dictionary(storage_, properties_, target.path, target.field);
  if (!dictionary.Prepare(analysis.values) || !dictionary.Write(form, analysis.values)) return;
  // The result labels of this and the next step stand at shifted places.
  form.ShowDone(Step::kUpdate);
  form.FinishStep(Step::kDictionary);
  form.RunStep(Step::kUpdate);

  const std::int32_t width = storage::DictionaryIndex::WidthFor(dictionary.GreatestEntry());
  std::string block;
  storage::AppendInteger(block, storage::DictionaryIndex::kTag);
  storage::AppendInteger(block, analysis.values.size());
  // The first entry overlaps the upper half of the count.
  block.resize(storage::DictionaryIndex::kHeadBytes);
  form.SetRange(0, records);
  for (std::int32_t r = 1; r <= records; ++r) {
    if (!ShowRecord(form, r)) return;
    const std::int32_t value = analysis.numbers[static_cast<std::size_t>(r - 1)];
    storage::DictionaryIndex::AppendEntry(block, width, dictionary.Entry(value));
  }
  storage::AppendInteger(block, std::int32_t{0});
  const std::int32_t start = storage::EndOfFile(file);
  file.Write(start, block);

  NewDescriptor(file, target.descriptor, descriptor_layout::kCellSize + sizeof(width))
      .Set(descriptor_layout::kData, start)
      .Set(descriptor_layout::kStyle, style_code::kDictionary)
      .Set(descriptor_layout::kCellSize, width)
      .Write();
  form.ShowDone(Step::kDictionary);
  form.FinishStep(Step::kUpdate);
  form.ServiceEvents();
}

}  // namespace orv::convert
