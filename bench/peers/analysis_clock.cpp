#include "peers/analysis_clock.h"

#include "support/workload.h"

namespace orv::bench {

double AnalysisClock::nanoseconds() const {
  if (!end_) throw NotMeasured("the analysis did not show its result");
  return *end_ - start_;
}

Button AnalysisClock::ShowMessage(const Message& message) {
  return message.buttons == Buttons::kYesNo ? Button::kYes : SafeButton(message.buttons);
}

void AnalysisClock::RunModal(Dialog& dialog) {
  start_ = Now(kind_);
  dialog.OnTimer();
  if (!dialog.closed()) dialog.OnClose();
}

void AnalysisClock::Changed(Dialog& dialog, DialogChange change, std::size_t label) {
  const bool isResult = change == DialogChange::kLabel &&
                        dialog.labels()[label].text.find(L'%') != std::wstring::npos;
  if (!isResult || end_) return;
  end_ = Now(kind_);
  dialog.OnCancel();
}

}  // namespace orv::bench
