#include "exchange/text_export.h"

#include <algorithm>

#include "platform/clock.h"
#include "platform/code_page.h"
#include "storage/cell_code.h"

namespace orv::exchange {
namespace {

constexpr std::size_t kFlushSize = std::size_t{1} << 20;
constexpr std::string_view kTypeProperty = "type";
constexpr std::size_t kTypeNumbers = 32769;  ///< as many as a damaged cell code can give
constexpr signed char kUnknown = -1;

/// The separator of a box: the word's meaning, or the text itself.
std::string SeparatorOf(const std::wstring& typed, std::wstring_view word,
                        std::string_view meaning) {
  const std::wstring_view view = typed;
  const bool isWord = platform::FoldCase(platform::Trim(view)) == word;
  return isWord ? std::string{meaning} : platform::ToBytes(typed);
}

}  // namespace

Separators SeparatorsOf(const ExportSettings& settings) {
  return {SeparatorOf(settings.fieldSeparator, L"табуляция", "\t"),
          SeparatorOf(settings.recordSeparator, L"перенос строки", "\r\n")};
}

TextExport::TextExport(storage::Storage& storage, const storage::Location& source,
                       std::wstring target, Separators separators)
    : storage_(storage),
      source_(source),
      reader_(storage, source),
      target_(std::move(target)),
      targetBytes_(platform::ToBytes(target_)),
      separators_(std::move(separators)),
      kinds_(kTypeNumbers, kUnknown) {}

bool TextExport::Run(dialogs::ExportData& dialog) {
  const std::int32_t records = std::max(reader_.records(), 0);
  file_ = platform::CreateOutputFile(target_);
  buffer_.reserve(kFlushSize * 2);
  dialog.SetRange(0, records);
  for (std::int64_t r = 0; r <= records; ++r) {
    dialog.SetValue(static_cast<std::int32_t>(r));
    dialog.ServiceEvents();
    if (dialogs::ExportData::CancelRequested()) return false;
    AppendRecord(static_cast<std::int32_t>(r));
    if (r != records) buffer_ += separators_.record;
    Flush(kFlushSize);
  }
  Flush(0);
  file_->Close();
  return true;
}

void TextExport::AppendRecord(std::int32_t r) {
  const std::int32_t fields = reader_.fields();
  for (std::int32_t f = 1; f <= fields; ++f) {
    AppendCell(r, f);
    if (f != fields) buffer_ += separators_.field;
  }
}

void TextExport::AppendCell(std::int32_t r, std::int32_t f) {
  const std::string_view text = reader_.Read(r, f);
  const ContentKind kind = r == 0 ? ContentKind::kText : KindOfCell(f);
  if (kind == ContentKind::kText) {
    buffer_ += text;
  } else {
    ExtractCell(kind, r, f, text);
  }
}

/// What the cell read last holds. Properties belong to types, so each type is asked once.
ContentKind TextExport::KindOfCell(std::int32_t f) {
  const std::int16_t code = reader_.Code(f);
  if (code == 0 || code == storage::layout::cell::kPlainType) return ContentKind::kText;
  const std::int16_t type = storage::DecodeCellCode(code).type;
  if (type < 0) return ContentKind::kText;
  signed char& kind = kinds_[static_cast<std::size_t>(type)];
  if (kind == kUnknown) {
    const storage::TypeProperty* property =
        storage_.types.Find(*source_.file, source_.position, type, kTypeProperty);
    kind =
        static_cast<signed char>(property == nullptr ? ContentKind::kText : KindOf(property->text));
  }
  return static_cast<ContentKind>(kind);
}

void TextExport::ExtractCell(ContentKind kind, std::int32_t r, std::int32_t f,
                             std::string_view text) {
  const Extract extract = ExtractOf(kind, text);
  const auto seconds = static_cast<std::int32_t>(platform::SecondsSinceMidnight());
  const std::string name = ExtractName(seconds, r, f, extract.extension);
  const auto file = platform::CreateOutputFile(target_ + platform::ToWide(name));
  file->Write(extract.data);
  file->Close();
  buffer_.append("<file://").append(targetBytes_).append(name).append(">");
}

/// Hands the text to the file once it has grown to `least` bytes.
void TextExport::Flush(std::size_t least) {
  if (buffer_.size() < least) return;
  file_->Write(buffer_);
  buffer_.clear();
}

}  // namespace orv::exchange
