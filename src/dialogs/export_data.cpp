#include "dialogs/export_data.h"

#include <utility>

#include "dialogs/message_boxes.h"

namespace orv::dialogs {
namespace {

constexpr std::size_t kSourceTitle = 0;

}  // namespace

ExportData::ExportData(ExportWork& work, Format format, bool withProperties)
    : DialogModel(L"ExportData", L"ORV DB Server", {{L"LabelS1(7)", L""}}),
      work_(work),
      format_(format) {
  settings_.withProperties = withProperties;
  settings_.fieldSeparator = L"табуляция";
  settings_.recordSeparator = L"перенос строки";
}

void ExportData::RunModal() { ShowModal(); }

void ExportData::Finish() {
  step_ = Step::kFinished;
  Report(DialogChange::kPage);
}

void ExportData::ShowSourceTitle(std::wstring title) {
  if (!title.empty()) SetLabel(kSourceTitle, std::move(title));
}

void ExportData::ShowWriteFailure() {
  ShowNotice(L"Произошла ошибка во время записи данных. Попробуйте повторить попытку.",
             Icon::kCritical);
}

bool ExportData::AwaitsForward() const { return ready_ && step_ == Step::kSettings && !closed(); }

void ExportData::OnTimer() {
  const bool container = format_ == Format::kContainer;
  settings_.choicesAvailable = container;
  settings_.separatorsAvailable = !container;
  Report(DialogChange::kPage);
  CheckTarget();
  if (closed()) return;
  ready_ = true;
  Report(DialogChange::kPage);
}

// Leaves the dialog open only when the way to the target is free.
void ExportData::CheckTarget() {
  try {
    if (!work_.TargetExists()) return;
    if (ConfirmOverwrite()) {
      work_.DeleteTarget();
    } else {
      Close();
    }
  } catch (...) {
    KeepFailure();
    ShowNotice(L"Произошла ошибка открытия фала получателя данных. Попробуйте повторить попытку.",
               Icon::kCritical);
    Close();
  }
}

void ExportData::OnForward() {
  if (!AwaitsForward()) return;
  step_ = Step::kRunning;
  CancelRequest::Clear();
  Run([this] { StepUpDate(); });
  Close();
}

void ExportData::StepUpDate() {
  Report(DialogChange::kPage);
  Export();
  if (CancelRequested()) work_.DiscardTarget();
}

void ExportData::Export() {
  const bool withProperties = format_ == Format::kContainer && settings_.withProperties;
  try {
    if (withProperties) {
      work_.SaveAsOrvWithProp(*this);
    } else if (format_ == Format::kContainer) {
      work_.SaveAsOrvImage(*this);
    } else {
      work_.SaveAsText(*this);
    }
  } catch (...) {
    KeepFailure();
    if (!withProperties) ShowWriteFailure();
  }
}

void ExportData::OnCancel() {
  if (step_ != Step::kRunning) {
    Close();
  } else {
    ConfirmCancel(L"Вы действительно хотите прервать экспорт?", L"ORV DB Server");
  }
}

}  // namespace orv::dialogs
