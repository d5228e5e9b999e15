#include "engine/creation.h"

#include "dialogs/message_boxes.h"
#include "platform/code_page.h"
#include "platform/file_names.h"
#include "storage/cell_primitives.h"
#include "storage/cell_writer.h"
#include "storage/chain_array.h"
#include "storage/matrix.h"
#include "storage/records.h"

namespace orv::engine {

using platform::File;
using platform::NumberedFiles;
using storage::Storage;
namespace code = storage::code;
namespace layout = storage::layout;

namespace {

std::wstring WithoutQuotes(const std::wstring& file) {
  const bool quoted = file.size() >= 2 && file.front() == L'"' && file.back() == L'"';
  return quoted ? file.substr(1, file.size() - 2) : file;
}

/// Writes the new file under number 255; what cannot be written whole is not left behind.
void WriteContainer(Storage& storage, const std::wstring& name, const std::wstring& title) {
  try {
    storage::CreateContainer(storage.files.Open(NumberedFiles::kCreation, name),
                             platform::ToBytes(title));
  } catch (...) {
    storage.files.Close(NumberedFiles::kCreation);
    if (platform::FileExists(name)) platform::DeleteFile(name);
    throw;
  }
  storage.files.Close(NumberedFiles::kCreation);
}

/// The new top matrix at the end of the file, complete: one field, one record, the old root nested
/// in its cell.
std::int32_t AppendTopMatrix(Storage& storage, File& file, std::int32_t oldRoot) {
  const std::int32_t top = storage::EndOfFile(file);
  storage::CreateMatrixHeader(file, top, layout::matrix::kPlainCode, "First",
                              layout::matrix::kHeaderWordValue);
  storage::CreateFieldTable(file, top, 1);
  storage::CreateFieldDescriptor(file, top, 1, storage.error);
  storage::InsertRecords(top, 1, 1, file, storage.types, storage.error);
  // The text only makes the cell exist.
  const std::int32_t descriptor = storage::FindFieldDescriptor(file, top, 1);
  storage::CellWriter(file, top, storage.types, storage.error).Write(descriptor, 1, 1, "Test");
  std::int32_t slot = 0;
  storage::GetCellPos(descriptor, 1, file, slot, storage.error);
  file.WriteInt32(slot, oldRoot);
  return top;
}

}  // namespace

void CmdNewOrvDB(Storage& storage, const std::wstring& file, const std::wstring& mtxName) {
  storage.error.Clear();
  const std::wstring name = platform::ExistingSpelling(WithoutQuotes(file));
  const bool hasData = storage.files.Open(NumberedFiles::kCreation, name).Length() > 0;
  if (hasData && !dialogs::ConfirmOverwrite()) {
    storage.error.Set(code::kOverwriteRefused);
    return;
  }
  storage.DropFile(name);
  if (hasData) platform::DeleteFile(name);
  WriteContainer(storage, name, mtxName);
}

void InsFirstLvlMtx(Storage& storage, const std::wstring& pth) {
  storage.error.Clear();
  const std::size_t quote = pth.find(L'"', 1);
  if (quote == std::wstring::npos) {
    storage.error.Set(code::kPathSyntax);
    return;
  }
  const std::wstring filePart = pth.substr(0, quote + 1);
  const storage::Location root = storage.resolver.ResolvePath(filePart);
  if (storage.error.IsSet()) return;
  if (!root.IsMatrix()) {
    storage.error.Set(root.IsDbase() ? code::kNotOnDbase : code::kBadArgument);
    return;
  }
  const std::int32_t top = AppendTopMatrix(storage, *root.file, root.position);
  if (storage.error.IsSet()) return;
  root.file->WriteInt32(layout::file::kRootPointer, top);
  storage.CloseAll();
  storage.resolver.ForgetLast();
  storage.resolver.ResolvePath(filePart);
}

}  // namespace orv::engine
