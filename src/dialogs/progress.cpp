#include "dialogs/progress.h"

#include <utility>

namespace orv::dialogs {

Progress::Progress() : DialogModel(L"Progress", L"", {{L"Label", L""}}) {}

void Progress::Show(std::wstring caption) {
  CancelRequest::Clear();
  SetCaption(std::move(caption));
  ShowModeless();
  SetBusyPointer(true);
}

void Progress::SetLabel(std::wstring text) { DialogModel::SetLabel(0, std::move(text)); }

void Progress::OnCancel() { RequestCancel(); }

}  // namespace orv::dialogs
