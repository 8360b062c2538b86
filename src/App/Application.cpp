#include "App/Application.h"

#include <QApplication>
#include <QMainWindow>

namespace tarnwell {

int runApplication(int argc, char** argv) {
  const QApplication application(argc, argv);
  QMainWindow window;
  window.setWindowTitle("Tarnwell");
  window.show();
  return QApplication::exec();
}

}  // namespace tarnwell
