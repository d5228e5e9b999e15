#include "qt/export_window.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace orv::qt {

ExportWindow::ExportWindow(Dialog& dialog, QWidget* parent)
    : DialogWindow(dialog, parent),
      pages_(new QStackedWidget(this)),
      forward_(new QPushButton(u"Далее >"_qs, this)) {
  pages_->addWidget(MakeSettingsPage());
  pages_->addWidget(MakeRunningPage());

  forward_->setObjectName("forward");
  forward_->setDefault(true);
  connect(forward_, &QPushButton::clicked, this, [this] { GoForward(); });

  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(forward_);
  buttons->addWidget(MakeCancelButton());
  auto* const column = new QVBoxLayout(this);
  column->addWidget(pages_);
  column->addLayout(buttons);
  Refresh();
}

QWidget* ExportWindow::MakeSettingsPage() {
  const ExportSettings& settings = *dialog().settings();
  auto* const page = new QWidget(this);
  withProperties_ = new QRadioButton(u"Копия со всеми свойствами"_qs, page);
  withProperties_->setObjectName("withProperties");
  withProperties_->setChecked(settings.withProperties);
  valuesOnly_ = new QRadioButton(u"Копия значений"_qs, page);
  valuesOnly_->setObjectName("valuesOnly");
  valuesOnly_->setChecked(!settings.withProperties);
  fieldSeparator_ = MakeSeparatorBox("fieldSeparator", {u"табуляция"_qs, u";"_qs, u","_qs},
                                     settings.fieldSeparator);
  recordSeparator_ =
      MakeSeparatorBox("recordSeparator", {u"перенос строки"_qs}, settings.recordSeparator);

  form_ = new QFormLayout(page);
  form_->addRow(withProperties_);
  form_->addRow(valuesOnly_);
  form_->addRow(u"Разделитель полей:"_qs, fieldSeparator_);
  form_->addRow(u"Разделитель записей:"_qs, recordSeparator_);
  return page;
}

QComboBox* ExportWindow::MakeSeparatorBox(const char* name, const QStringList& choices,
                                          const std::wstring& text) {
  auto* const box = new QComboBox(this);
  box->setObjectName(QString::fromLatin1(name));
  box->setEditable(true);
  // A separator is taken as typed; completing it to one of the choices would change it.
  box->setCompleter(nullptr);
  box->addItems(choices);
  box->setCurrentText(QString::fromStdWString(text));
  return box;
}

QWidget* ExportWindow::MakeRunningPage() {
  auto* const page = new QWidget(this);
  auto* const column = new QVBoxLayout(page);
  column->addStretch();
  for (std::size_t label = 0; label < dialog().labels().size(); label++) {
    column->addWidget(MakeLabel(label));
  }
  column->addWidget(MakeBar());
  column->addStretch();
  return page;
}

void ExportWindow::Update() {
  DialogWindow::Update();
  const ExportSettings& settings = *dialog().settings();
  withProperties_->setEnabled(settings.choicesAvailable);
  valuesOnly_->setEnabled(settings.choicesAvailable);
  for (QComboBox* const box : {fieldSeparator_, recordSeparator_}) {
    box->setEnabled(settings.separatorsAvailable);
    form_->labelForField(box)->setEnabled(settings.separatorsAvailable);
  }
  forward_->setEnabled(dialog().AwaitsForward());
  pages_->setCurrentIndex(wentForward_ ? 1 : 0);
}

void ExportWindow::GoForward() {
  ExportSettings& settings = *dialog().settings();
  settings.withProperties = withProperties_->isChecked();
  settings.fieldSeparator = fieldSeparator_->currentText().toStdWString();
  settings.recordSeparator = recordSeparator_->currentText().toStdWString();
  wentForward_ = true;
  MarkChanged();
  dialog().OnForward();
}

}  // namespace orv::qt
