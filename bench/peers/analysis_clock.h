// Timing the first step of a conversion from the side of its user.
#pragma once

#include <optional>

#include "orv/dialogs.h"

#include "support/timing.h"

namespace orv::bench {

/// The user interface while it lives: it notes when the analysis shows its result, and then presses
/// the cancel button.
class AnalysisClock final : public UserInterface {
 public:
  explicit AnalysisClock(TimeKind kind) : kind_(kind), former_(InstallUserInterface(this)) {}
  ~AnalysisClock() override { InstallUserInterface(former_); }

  /// How long the analysis took; ends the workload if it did not come to its end.
  double nanoseconds() const;

  Button ShowMessage(const Message& message) override;
  void Show(Dialog&) override {}
  void RunModal(Dialog& dialog) override;
  void Changed(Dialog& dialog, DialogChange change, std::size_t label) override;
  void ServiceEvents() override {}
  void Close(Dialog&) override {}
  void SetBusyPointer(bool) override {}
  void Beep() override {}

 private:
  TimeKind kind_;
  UserInterface* former_;
  double start_ = 0;
  std::optional<double> end_;
};

}  // namespace orv::bench
