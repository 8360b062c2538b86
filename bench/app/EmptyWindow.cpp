/// An empty window of Qt: what every program of this kind costs.

#include <QApplication>
#include <QMainWindow>
#include <cstdlib>

#include "FirstFrame.h"

int main(int count, char** words) {
  const QApplication application(count, words);
  QMainWindow window;
  window.resize(940, 700);
  FirstFrame::endAfter(window);
  window.show();
  std::_Exit(QApplication::exec());
}
