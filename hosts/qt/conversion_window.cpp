#include "qt/conversion_window.h"

#include <QGridLayout>

namespace orv::qt {
namespace {

// The model's labels: the heading, three steps, three results.
constexpr int kSteps = 3;
constexpr int kStepColumns = 2;
constexpr int kResultColumnWidth = 200;

}  // namespace

ConversionWindow::ConversionWindow(Dialog& dialog, QWidget* parent) : DialogWindow(dialog, parent) {
  auto* const grid = new QGridLayout(this);
  QLabel* const heading = MakeLabel(0);
  grid->addWidget(heading, 0, 0, 1, kStepColumns);
  for (int step = 1; step <= kSteps; step++) {
    const auto label = static_cast<std::size_t>(step);
    grid->addWidget(MakeLabel(label), step, 0);
    grid->addWidget(MakeLabel(label + kSteps), step, 1);
  }
  grid->addWidget(MakeBar(), kSteps + 1, 0, 1, kStepColumns);
  grid->addWidget(MakeCancelButton(), kSteps + 2, 0, 1, kStepColumns, Qt::AlignRight);
  grid->setColumnMinimumWidth(0, kResultColumnWidth);
  grid->setColumnMinimumWidth(1, kResultColumnWidth);
  Refresh();
}

}  // namespace orv::qt
