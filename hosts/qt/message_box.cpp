#include "qt/message_box.h"

#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>
#include <array>

namespace orv::qt {
namespace {

struct Key {
  Button button;
  QMessageBox::ButtonRole role;
  const char16_t* text;
  const char* name;
};

constexpr std::array<Key, 4> kKeys = {
    {{Button::kOk, QMessageBox::AcceptRole, u"OK", "ok"},
     {Button::kCancel, QMessageBox::RejectRole, u"Отмена", "cancel"},
     {Button::kYes, QMessageBox::YesRole, u"Да", "yes"},
     {Button::kNo, QMessageBox::NoRole, u"Нет", "no"}}};

QMessageBox::Icon BoxIcon(Icon icon) {
  switch (icon) {
    case Icon::kCritical:
      return QMessageBox::Critical;
    case Icon::kQuestion:
      return QMessageBox::Question;
    case Icon::kExclamation:
      return QMessageBox::Warning;
    case Icon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

QString BoxText(const std::wstring& text) {
  return QString::fromStdWString(text).replace(u'\r', u'\n');
}

QString BoxCaption(const std::wstring& caption) {
  return caption.empty() ? QGuiApplication::applicationDisplayName()
                         : QString::fromStdWString(caption);
}

}  // namespace

Button ShowMessageBox(const Message& message, QWidget* parent) {
  QMessageBox box(parent);
  box.setWindowTitle(BoxCaption(message.caption));
  box.setIcon(BoxIcon(message.icon));
  // A text may hold anything, a cell's content or a condition with "<" among it.
  box.setTextFormat(Qt::PlainText);
  box.setText(BoxText(message.text));
  for (const Key& key : kKeys) {
    if (!HasButton(message.buttons, key.button)) continue;
    QPushButton* const button = box.addButton(QString::fromUtf16(key.text), key.role);
    button->setObjectName(QString::fromLatin1(key.name));
    if (key.button == SafeButton(message.buttons)) {
      box.setEscapeButton(button);
      box.setDefaultButton(button);
    }
  }
  box.exec();
  const QAbstractButton* const pressed = box.clickedButton();
  for (const Key& key : kKeys) {
    if (pressed != nullptr && pressed->objectName() == QLatin1String(key.name)) return key.button;
  }
  return SafeButton(message.buttons);
}

}  // namespace orv::qt
