// The dialog of storage conversion.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "dialogs/dialog_model.h"

namespace orv::dialogs {

/// `CompressForm`: a heading, three steps each with a result label, and the bar. The work closes
/// the dialog itself; work that returns without closing leaves it open until a person closes it.
class CompressForm final : public DialogModel {
 public:
  using Work = std::function<void(CompressForm&)>;
  /// The steps, and the places of the result labels, which need not go together.
  enum class Step { kAnalysis = 1, kDictionary = 2, kUpdate = 3 };

  explicit CompressForm(Work work);

  /// Runs the work behind the dialog. What the work throws is thrown again after the dialog has
  /// closed. The cancel request is cleared before the work starts.
  void RunModal();

  /// Appends a style's name in double quotes to the heading.
  void AppendHeading(std::wstring_view styleName);
  void HideStep(Step step);
  /// Shows the step as running, in bold.
  void RunStep(Step step);
  /// Shows the step as finished, in normal weight. Its result is shown apart.
  void FinishStep(Step step);
  void ShowResult(Step place, std::wstring text);
  /// Shows "Выполнено" at a result place.
  void ShowDone(Step place);

  void OnTimer() override;
  void OnCancel() override;

 private:
  Work work_;
};

}  // namespace orv::dialogs
