#include "qt/progress_window.h"

#include <QVBoxLayout>

namespace orv::qt {

ProgressWindow::ProgressWindow(Dialog& dialog, QWidget* parent) : DialogWindow(dialog, parent) {
  auto* const column = new QVBoxLayout(this);
  for (std::size_t label = 0; label < dialog.labels().size(); label++) {
    column->addWidget(MakeLabel(label));
  }
  column->addWidget(MakeBar());
  column->addWidget(MakeCancelButton(), 0, Qt::AlignRight);
  Refresh();
}

}  // namespace orv::qt
