#include "engine/titles.h"

#include "platform/code_page.h"
#include "storage/chained_text.h"
#include "storage/layout.h"

namespace orv::engine {

namespace code = storage::code;
namespace layout = storage::layout;

namespace {

std::int64_t TitlePointer(const storage::Location& at) {
  return std::int64_t{at.position} + layout::matrix::kTitle;
}

}  // namespace

std::wstring GetTitle(storage::Storage& storage, const std::wstring& pth) {
  const storage::Location at = storage.resolver.ResolvePath(pth);
  if (storage.error.IsSet() || !at.IsMatrix()) return {};
  std::string buffer;
  return platform::ToWide(storage::ReadChainedText(*at.file, at.file->Int32At(TitlePointer(at)),
                                                   layout::kLongLengthBytes, buffer));
}

void SetTitle(storage::Storage& storage, const std::wstring& vlu, const std::wstring& pth) {
  const storage::Location at = storage.resolver.ResolvePath(pth);
  if (storage.error.IsSet()) return;
  if (!at.IsMatrix()) {
    storage.error.Set(at.IsDbase() ? code::kNotOnDbase : code::kBadArgument);
    return;
  }
  const std::int32_t before = at.file->Int32At(TitlePointer(at));
  // A title that is missing is made; one that is said to stand behind the file's end is damage.
  if (before > at.file->Length()) platform::Raise(platform::RunTimeError::kSubscript);
  const std::int32_t title =
      storage::WriteChainedText(*at.file, before, platform::ToBytes(vlu), layout::kLongLengthBytes);
  if (title != before) at.file->WriteInt32(TitlePointer(at), title);
  if (at.throughProperties) storage.types.Clear();
}

}  // namespace orv::engine
