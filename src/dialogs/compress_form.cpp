#include "dialogs/compress_form.h"

#include <array>
#include <cstddef>
#include <utility>

namespace orv::dialogs {
namespace {

using Step = CompressForm::Step;

constexpr std::size_t kHeading = 0;
constexpr std::size_t kSteps = 3;
constexpr std::array<const wchar_t*, kSteps> kStepNames = {
    L"Анализ данных таблицы", L"Создание словаря", L"Обновление данных"};

// The labels stand in this order: the heading, the steps, the results.
constexpr std::size_t StepLabel(Step step) { return kHeading + static_cast<std::size_t>(step); }
constexpr std::size_t ResultLabel(Step place) { return StepLabel(place) + kSteps; }

std::wstring StepName(Step step) { return kStepNames[static_cast<std::size_t>(step) - 1]; }

std::vector<DialogLabel> Labels() {
  return {{L"Label", L"Изменение способа хранения данных: "},
          {L"Steps(1)", StepName(Step::kAnalysis)},
          {L"Steps(2)", StepName(Step::kDictionary)},
          {L"Steps(3)", StepName(Step::kUpdate)},
          {L"StpRes(1)", L""},
          {L"StpRes(2)", L""},
          {L"StpRes(3)", L""}};
}

}  // namespace

CompressForm::CompressForm(Work work)
    : DialogModel(L"CompressForm", L"ORV DBServer", Labels()), work_(std::move(work)) {}

void CompressForm::RunModal() { ShowModal(); }

void CompressForm::AppendHeading(std::wstring_view styleName) {
  std::wstring heading = labels()[kHeading].text;
  heading.append(L"\"").append(styleName).append(L"\"");
  SetLabel(kHeading, std::move(heading));
}

void CompressForm::HideStep(Step step) { HideLabel(StepLabel(step)); }

void CompressForm::RunStep(Step step) {
  SetLabel(StepLabel(step), L"» " + StepName(step) + L"...", true);
}

void CompressForm::FinishStep(Step step) { SetLabel(StepLabel(step), StepName(step)); }

void CompressForm::ShowResult(Step place, std::wstring text) {
  SetLabel(ResultLabel(place), std::move(text));
}

void CompressForm::ShowDone(Step place) { ShowResult(place, L"Выполнено"); }

void CompressForm::OnTimer() {
  CancelRequest::Clear();
  Run([this] { work_(*this); });
}

void CompressForm::OnCancel() {
  ConfirmCancel(
      L"Вы действительно хотите отменить изменение способа храниения данных?\r"
      L"Никакие данные не будут повреждены в любом случае!",
      L"ORV DBServer");
}

}  // namespace orv::dialogs
