// qt_host [TABLE]: a small desktop host of the engine.
#include <QApplication>

#include "orv/qt/dialogs.h"

#include "qt_host/main_window.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationDisplayName("ORV");
  orv::qt::InstallDialogs();

  qt_host::MainWindow window;
  window.show();
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() > 1) window.OpenTable(arguments[1]);
  return QApplication::exec();
}
