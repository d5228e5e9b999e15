#include "dialogs/cr_flt.h"

#include <utility>

namespace orv::dialogs {

CrFlt::CrFlt(Work work)
    : DialogModel(L"CrFlt", L"ORV DB Server", {{L"Label", L""}}), work_(std::move(work)) {}

void CrFlt::RunModal() { ShowModal(); }

void CrFlt::SetLabel(std::wstring text) { DialogModel::SetLabel(0, std::move(text)); }

void CrFlt::OnTimer() {
  CancelRequest::Clear();
  Run([this] { work_(*this); });
  Close();
}

void CrFlt::OnCancel() {
  ConfirmCancel(
      L"Если прервать создание фильтра то возможно будут паказаны не все записи удовлетворяющие "
      L"условие.\rВы хотите прервать создание фильтра в любом случае?",
      L"ORV DB Server");
}

}  // namespace orv::dialogs
