// Finds and presses what is on the screen, from the middle of whatever pumps events.
#pragma once

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QMessageBox>
#include <QPixmap>
#include <QProgressBar>
#include <QPushButton>
#include <QString>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <utility>

namespace orv::qt {

inline constexpr int kBetweenLooksMs = 5;
inline constexpr int kMostLooks = 4000;

/// The window of the dialog with that name, or nullptr.
inline QWidget* VisibleDialog(const QString& name) {
  for (QWidget* const widget : QApplication::topLevelWidgets()) {
    if (widget->isVisible() && widget->objectName() == name) return widget;
  }
  return nullptr;
}

inline QMessageBox* VisibleBox() {
  return qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
}

template <typename Widget>
Widget* Part(const QString& dialog, const QString& part) {
  QWidget* const window = VisibleDialog(dialog);
  return window == nullptr ? nullptr : window->findChild<Widget*>(part);
}

inline void Click(QPushButton* button) {
  QVERIFY2(button != nullptr, "there is no such button");
  QVERIFY(button->isVisible());
  QVERIFY(button->isEnabled());
  QTest::mouseClick(button, Qt::LeftButton);
}

inline void Click(const QString& dialog, const QString& part) {
  Click(Part<QPushButton>(dialog, part));
}

inline void ClickBox(const QString& button) {
  QMessageBox* const box = VisibleBox();
  QVERIFY2(box != nullptr, "there is no message box");
  Click(box->findChild<QPushButton*>(button));
}

/// Runs the action, once, as soon as the condition holds. It is looked at from the event loop, so
/// the action comes in the middle of whatever pumps events then: the work of a dialog, a message
/// box.
inline void When(std::function<bool()> condition, std::function<void()> action,
                 int looks = kMostLooks) {
  QTimer::singleShot(kBetweenLooksMs, qApp, [=] {
    if (condition()) {
      action();
    } else {
      QVERIFY2(looks > 0, "what the test waits for does not come");
      When(condition, action, looks - 1);
    }
  });
}

inline void WhenBox(std::function<void()> action) {
  When([] { return VisibleBox() != nullptr && VisibleBox()->isVisible(); }, std::move(action));
}

inline void WhenBarReaches(const QString& dialog, int value, std::function<void()> action) {
  When(
      [=] {
        const auto* const bar = Part<QProgressBar>(dialog, "bar");
        return bar != nullptr && bar->value() >= value;
      },
      std::move(action));
}

inline void WhenEnabled(const QString& dialog, const QString& part, std::function<void()> action) {
  When(
      [=] {
        const auto* const widget = Part<QWidget>(dialog, part);
        return widget != nullptr && widget->isEnabled();
      },
      std::move(action));
}

/// Saves the picture of a window and sees to it that something is painted on it.
inline void TakePicture(QWidget* window, const QString& name) {
  QVERIFY2(window != nullptr, "there is no window to take a picture of");
  const QDir folder(QString(ORV_TEST_BUILD_DIR) + "/screenshots");
  QVERIFY(folder.mkpath("."));
  const QImage picture = window->grab().toImage();
  int otherPixels = 0;
  for (int y = 0; y < picture.height(); y++) {
    for (int x = 0; x < picture.width(); x++) {
      otherPixels += picture.pixel(x, y) != picture.pixel(0, 0);
    }
  }
  QVERIFY2(otherPixels > 500, "the window is empty");
  QVERIFY(picture.save(folder.filePath(name + ".png")));
}

}  // namespace orv::qt
