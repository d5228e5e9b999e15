// The export wizard.
#pragma once

#include <string>

#include "dialogs/dialog_model.h"

namespace orv::dialogs {

class ExportData;

/// What the wizard asks of the export behind it. Every function may throw; the wizard shows the
/// message of the step that failed and throws again after it has closed.
class ExportWork {
 public:
  virtual ~ExportWork() = default;

  virtual bool TargetExists() = 0;
  virtual void DeleteTarget() = 0;
  /// The three exports. They show their progress in the dialog, return when they have ended or
  /// found the cancel request, and leave the target file closed after a failure.
  virtual void SaveAsText(ExportData& dialog) = 0;
  virtual void SaveAsOrvImage(ExportData& dialog) = 0;
  virtual void SaveAsOrvWithProp(ExportData& dialog) = 0;
  /// After a cancel: drops the filter caches, closes all files and deletes the target.
  virtual void DiscardTarget() = 0;
};

/// `ExportData`: a wizard of a settings page (step 1), the running export (2) and its end (3). The
/// timer checks the target and then waits for the forward button, which runs the export.
class ExportData final : public DialogModel {
 public:
  enum class Format { kContainer, kText };
  enum class Step { kSettings = 1, kRunning = 2, kFinished = 3 };

  /// The work outlives the dialog.
  ExportData(ExportWork& work, Format format, bool withProperties);

  /// Shows the wizard until it has closed. The cancel request is cleared before the export starts.
  void RunModal();

  Step step() const { return step_; }
  /// The last page's step: called by an export that has come to its end.
  void Finish();
  /// Shows the title of the matrix being exported; an empty one changes nothing.
  void ShowSourceTitle(std::wstring title);
  /// The message of an error while writing. The wizard shows it for a failure thrown by
  /// `SaveAsText` or `SaveAsOrvImage`; an export that fails without throwing shows it itself.
  static void ShowWriteFailure();

  ExportSettings* settings() override { return &settings_; }
  bool AwaitsForward() const override;
  void OnTimer() override;
  void OnForward() override;
  void OnCancel() override;

 private:
  void CheckTarget();
  void StepUpDate();
  void Export();

  ExportWork& work_;
  const Format format_;
  ExportSettings settings_;
  Step step_ = Step::kSettings;
  bool ready_ = false;
};

}  // namespace orv::dialogs
